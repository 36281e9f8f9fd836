#include "ui/Preferences.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QSettings>
#include <QTimer>
#include <algorithm>
#include <tuple>

#include "support/widgets/PreferencesStage.h"

using namespace qm;

namespace {

const QColor kCyan(0, 255, 255), kWhite(255, 255, 255), kOrange(255, 128, 0), kGreen(0, 255, 0);

struct NamedLabel {
    QLabel* label;
    const char* name;
};

// The labels that take the chosen colour, in the order in which they take it.
std::vector<NamedLabel> colouredLabels(const Outlets& o) {
    return {{o.audioLevelLeft, "audioLevelLeft"},
            {o.audioLevelRight, "audioLevelRight"},
            {o.speedTitle, "speedTitle"},
            {o.speed_2, "speed_2"},
            {o.speed_1, "speed_1"},
            {o.speedMinDown, "speedMinDown"},
            {o.speedMinDotDown, "speedMinDotDown"},
            {o.speed0, "speed0"},
            {o.speedMinDotUp, "speedMinDotUp"},
            {o.speedMinUp, "speedMinUp"},
            {o.speed1, "speed1"},
            {o.speed2, "speed2"},
            {o.speedNormal, "speedNormal"},
            {o.pitchTitle, "pitchTitle"},
            {o.pitch_1200, "pitch_1200"},
            {o.pitch_100, "pitch_100"},
            {o.pitchMinDot, "pitchMinDot"},
            {o.pitch0, "pitch0"},
            {o.pitchMaxDot, "pitchMaxDot"},
            {o.pitch100, "pitch100"},
            {o.pitch1200, "pitch1200"}};
}

QColor colourOf(const QLabel* label) {
    return label->palette().color(QPalette::WindowText);
}

// Records which widgets are painted and which get a new colour, in order.
class Watch : public QObject {
public:
    explicit Watch(EventLog& log) : m_log(log) {}

    void add(QWidget* widget, const char* name, QEvent::Type type) {
        widget->installEventFilter(this);
        m_watched.push_back({widget, name, type});
    }

    bool eventFilter(QObject* object, QEvent* event) override {
        for (const Entry& entry : m_watched)
            if (entry.widget == object && entry.type == event->type()) m_log.add(entry.name);
        return false;
    }

private:
    struct Entry {
        QWidget* widget;
        const char* name;
        QEvent::Type type;
    };
    EventLog& m_log;
    std::vector<Entry> m_watched;
};

struct Preferenced : PreferencesStage {
    bool isOn(const char* key) const { return prefs.boolForKey(key); }
    bool allLabelsAre(const QColor& colour) const {
        const auto labels = colouredLabels(outlets);
        return std::all_of(labels.begin(), labels.end(),
                           [&](const NamedLabel& entry) { return colourOf(entry.label) == colour; });
    }
};

}  // namespace

TEST_CASE_FIXTURE(Preferenced, "a first run stores that the level indicators are on, and nothing else") {
    wakeUp();
    const QSettings store(fixture.home.path() + "/prefs.ini", QSettings::IniFormat);
    CHECK(store.allKeys() == QStringList{"AudioLevels"});
    CHECK(isOn("AudioLevels"));
}

TEST_CASE_FIXTURE(Preferenced, "a first run shows both boxes checked, and cyan chosen and worn") {
    wakeUp();
    controller.openPrefsWindow();
    CHECK(outlets.audioLevelsPref->isChecked());
    CHECK(outlets.autoCheckForUpdatesPref->isChecked());
    CHECK_FALSE(prefs.contains("SoftwareUpdateCheck"));
    CHECK(outlets.colorMatrix->selectedTag() == 0);
    CHECK(allLabelsAre(kCyan));
}

TEST_CASE_FIXTURE(Preferenced, "the preferences command opens the window and makes it key, and closes an open one") {
    wakeUp();
    controller.openPrefsWindow();
    CHECK(preferences.isVisible());
    CHECK(keyWindow() == &preferences);
    log.take();
    controller.openPrefsWindow();
    CHECK_FALSE(preferences.isVisible());
    CHECK(log.events() == Events{});
    controller.openPrefsWindow();
    CHECK(preferences.isVisible());
}

TEST_CASE_FIXTURE(Preferenced, "the update box shows what is stored, and an absent key as on") {
    wakeUp();
    outlets.autoCheckForUpdatesPref->setState(false);
    controller.openPrefsWindow();
    CHECK(outlets.autoCheckForUpdatesPref->isChecked());
    for (const bool stored : {false, true}) {
        prefs.setBool("SoftwareUpdateCheck", stored);
        controller.openPrefsWindow();
        controller.openPrefsWindow();
        CHECK(outlets.autoCheckForUpdatesPref->isChecked() == stored);
    }
}

TEST_CASE_FIXTURE(Preferenced, "the level box shows what is stored") {
    wakeUp();
    for (const bool stored : {false, true}) {
        prefs.setBool("AudioLevels", stored);
        preferences.hide();
        controller.openPrefsWindow();
        CHECK(outlets.audioLevelsPref->isChecked() == stored);
    }
}

TEST_CASE_FIXTURE(Preferenced, "the level box shows on when the key is absent") {
    struct NoLevels : LoggingPrefs {
        using LoggingPrefs::LoggingPrefs;
        bool contains(const QString& key) const override {
            return key != u"AudioLevels" && LoggingPrefs::contains(key);
        }
    };
    wakeUp();
    NoLevels store(fixture.home.path() + "/other.ini", log);
    QMController other(fixture.engine, fixture.engine.movies, fixture.capture, store,
                       [](const QString&) { return QImage(28, 28, QImage::Format_ARGB32); });
    awakeWith(other, outlets);
    store.setBool("AudioLevels", false);
    outlets.audioLevelsPref->setState(false);
    other.openPrefsWindow();
    CHECK(outlets.audioLevelsPref->isChecked());
}

TEST_CASE_FIXTURE(Preferenced,
                  "each colour has its tile; a colour that has none is green on the labels, cyan on the tiles") {
    const std::tuple<int, int, QColor> cases[] = {{0, 0, kCyan},  {1, 1, kWhite}, {2, 2, kOrange},
                                                  {3, 3, kGreen}, {7, 0, kGreen}, {-1, 0, kGreen}};
    for (const auto& [stored, tag, colour] : cases) {
        CAPTURE(stored);
        prefs.setInteger("TextColor", stored);
        wakeUp();
        preferences.hide();
        controller.openPrefsWindow();
        CHECK(outlets.colorMatrix->selectedTag() == tag);
        CHECK(allLabelsAre(colour));
    }
}

TEST_CASE_FIXTURE(Preferenced,
                  "switching the level indicators off stores it and stops the meters, with or without a track") {
    wakeUp();
    SUBCASE("no track") {}
    SUBCASE("a track") {
        loadTrack();
    }
    controller.switchAudioLevels(true);
    log.take();
    outlets.audioLevelsPref->click();
    CHECK(log.events() == Events{"store AudioLevels false"});
    CHECK_FALSE(outlets.audioLevelsPref->isChecked());
    CHECK_FALSE(controller.audioLevelIndicatorsState);
    CHECK(controller.mTimer == nullptr);
}

TEST_CASE_FIXTURE(Preferenced, "switching the level indicators on without a track stores it and starts no meters") {
    prefs.setBool("AudioLevels", false);
    wakeUp();
    controller.toggleAudioLevelsPref();
    CHECK(log.events() == Events{"store AudioLevels true"});
    CHECK(outlets.audioLevelsPref->isChecked());
    CHECK_FALSE(controller.audioLevelIndicatorsState);
    CHECK(controller.mTimer == nullptr);
}

TEST_CASE_FIXTURE(Preferenced, "switching the level indicators on with a track starts the meters") {
    prefs.setBool("AudioLevels", false);
    wakeUp();
    loadTrack();
    REQUIRE_FALSE(controller.audioLevelIndicatorsState);
    controller.toggleAudioLevelsPref();
    CHECK(isOn("AudioLevels"));
    CHECK(controller.audioLevelIndicatorsState);
    CHECK(controller.mTimer != nullptr);
}

TEST_CASE_FIXTURE(Preferenced, "what is stored decides about the level indicators, not what the box shows") {
    wakeUp();
    controller.openPrefsWindow();
    prefs.setBool("AudioLevels", false);  // behind the box, which still shows on
    outlets.audioLevelsPref->click();
    CHECK(isOn("AudioLevels"));
    CHECK(outlets.audioLevelsPref->isChecked());
}

TEST_CASE_FIXTURE(Preferenced, "the level indicators' preference shows or hides the panel at the start only") {
    wakeUp();
    REQUIRE(levels.isVisible());
    controller.toggleAudioLevelsPref();
    CHECK(levels.isVisible());
    controller.toggleAudioLevelsPref();
    CHECK(levels.isVisible());
    levels.hide();
    controller.toggleAudioLevelsPref();
    controller.toggleAudioLevelsPref();
    CHECK_FALSE(levels.isVisible());
}

TEST_CASE_FIXTURE(Preferenced, "the first click switches a check for updates off that was never set, the second on") {
    wakeUp();
    controller.openPrefsWindow();
    outlets.autoCheckForUpdatesPref->click();
    CHECK(prefs.contains("SoftwareUpdateCheck"));
    CHECK_FALSE(isOn("SoftwareUpdateCheck"));
    CHECK_FALSE(outlets.autoCheckForUpdatesPref->isChecked());
    outlets.autoCheckForUpdatesPref->click();
    CHECK(isOn("SoftwareUpdateCheck"));
    CHECK(outlets.autoCheckForUpdatesPref->isChecked());
    outlets.autoCheckForUpdatesPref->click();
    CHECK_FALSE(isOn("SoftwareUpdateCheck"));
    CHECK_FALSE(outlets.autoCheckForUpdatesPref->isChecked());
}

TEST_CASE_FIXTURE(Preferenced, "what is stored decides about the check for updates, not what the box shows") {
    prefs.setBool("SoftwareUpdateCheck", false);
    wakeUp();
    outlets.autoCheckForUpdatesPref->setState(true);
    controller.toggleSoftwareUpdateCheck();
    CHECK(isOn("SoftwareUpdateCheck"));
    CHECK(outlets.autoCheckForUpdatesPref->isChecked());
}

TEST_CASE_FIXTURE(Preferenced,
                  "a chosen colour is stored, then four value titles are drawn, then the labels coloured in order") {
    wakeUp();
    window.show();
    QCoreApplication::processEvents();
    Watch watch(log);
    watch.add(outlets.bassResetButton, "draw bass", QEvent::Paint);
    watch.add(outlets.trebleResetButton, "draw treble", QEvent::Paint);
    watch.add(outlets.balanceResetButton, "draw balance", QEvent::Paint);
    watch.add(outlets.gainResetButton, "draw gain", QEvent::Paint);
    watch.add(outlets.speedResetButton, "draw speed", QEvent::Paint);
    watch.add(outlets.pitchResetButton, "draw pitch", QEvent::Paint);
    const auto labels = colouredLabels(outlets);
    for (const NamedLabel& entry : labels) watch.add(entry.label, entry.name, QEvent::PaletteChange);
    log.take();
    choose(2);
    Events expected = {"store TextColor 2", "draw bass", "draw treble", "draw balance", "draw gain"};
    for (const NamedLabel& entry : labels) expected.push_back(entry.name);
    REQUIRE(expected.size() == 26);
    CHECK(log.events() == expected);
}

TEST_CASE_FIXTURE(Preferenced,
                  "each tile stores its number and gives its colour to the labels, not to the value titles") {
    wakeUp();
    controller.speedUpdate(outlets.speedSlider->value());
    controller.pitchUpdate(outlets.pitchSlider->value());
    controller.gainUpdate(outlets.gainSlider->value());
    controller.balanceUpdate(outlets.balanceSlider->value());
    controller.bassUpdate(outlets.bassSlider->value());
    controller.trebleUpdate(outlets.trebleSlider->value());
    const std::tuple<int, QColor> cases[] = {{3, kGreen}, {2, kOrange}, {1, kWhite}, {0, kCyan}};
    for (const auto& [tag, colour] : cases) {
        CAPTURE(tag);
        choose(tag);
        CHECK(prefs.integerForKey("TextColor") == tag);
        CHECK(outlets.colorMatrix->selectedTag() == tag);
        CHECK(allLabelsAre(colour));
        for (const QLabel* label : preferences.findChildren<QLabel*>())
            if (label->text() == u"Speed") CHECK(colourOf(label) == colour);
        for (const TitleButton* button :
             {outlets.speedResetButton, outlets.pitchResetButton, outlets.gainResetButton, outlets.balanceResetButton,
              outlets.bassResetButton, outlets.trebleResetButton}) {
            REQUIRE(button->titleAttributes());
            CHECK(button->titleAttributes()->color == kWhite);
        }
    }
}

TEST_CASE_FIXTURE(Preferenced, "a tag that no colour has, and no tag at all, are green") {
    wakeUp();
    RadioTiles tiles;
    outlets.colorMatrix = &tiles;
    controller.colorMatrix = &tiles;
    SUBCASE("none") {}
    SUBCASE("another") {
        tiles.addTile("Violet", Qt::magenta, 9)->setChecked(true);
    }
    controller.toggleTextColor();
    CHECK(prefs.integerForKey("TextColor") == 3);
    CHECK(allLabelsAre(kGreen));
}

TEST_CASE_FIXTURE(Preferenced, "the gain that the slider shows is kept for the next start, not the gain itself") {
    wakeUp();
    outlets.gainSlider->setValue(0.75);
    preferences.ensureBuilt();
    preferences.findChild<QAbstractButton*>("updateDefaultAudioPref")->click();
    CHECK(log.events() == Events{"store DefaultAudioLevel 0.75"});
    controller.volumeMax();
    REQUIRE(controller.gain == 1.0f);
    controller.gainReset();
    REQUIRE(controller.gain == 1.0f);
    controller.updateDefaultAudioPref();
    CHECK(prefs.floatForKey("DefaultAudioLevel") == 0.5f);
}

TEST_CASE_FIXTURE(Preferenced, "a kept gain comes back at the next start with its title; a kept zero is a half") {
    prefs.setFloat("DefaultAudioLevel", 0.75f);
    wakeUp();
    CHECK(controller.gain == 0.75f);
    CHECK(outlets.gainSlider->value() == 0.75);
    CHECK(outlets.gainResetButton->title() == "0.75");
    CHECK(outlets.gainResetButton->titleAttributes() == controller.controlColorAttributes);
    controller.volumeMin();
    controller.updateDefaultAudioPref();
    CHECK(prefs.contains("DefaultAudioLevel"));
    awakeWith(fixture.init(), outlets);
    CHECK(fixture.controller->gain == 0.5f);
    CHECK(outlets.gainSlider->value() == 0.5);
}

TEST_CASE_FIXTURE(Preferenced, "the volume pane shows the gain as it is, also while it changes") {
    wakeUp();
    outlets.gainSlider->setValue(0.62);
    controller.openPrefsWindow();
    auto* gain = preferences.findChild<QLabel*>("gainNow");
    REQUIRE(gain);
    CHECK(gain->text() == "0.62");
    outlets.gainSlider->setValue(1);
    fire(preferences.findChild<QTimer*>("gainTimer"));
    CHECK(gain->text() == "1.00");
}

TEST_CASE_FIXTURE(Preferenced, "closing the preferences window, by its frame or its keys, ends nothing") {
    wakeUp();
    controller.openPrefsWindow();
    preferences.close();
    controller.windowWillClose(&preferences);
    CHECK_FALSE(preferences.isVisible());
    CHECK(log.count("exit") == 0);
}

TEST_CASE_FIXTURE(Preferenced, "the preferences tool is lit and the menu item checked while the window is open") {
    wakeUp();
    QAction* item = window.actions().action(ActionId::openPrefsWindow);
    REQUIRE(item);
    CHECK(item->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_Comma));
    CHECK(preferences.actions().contains(item));
    item->trigger();
    CHECK(preferences.isVisible());
    CHECK(item->isChecked());
    item->trigger();
    CHECK_FALSE(preferences.isVisible());
    CHECK_FALSE(item->isChecked());
}
