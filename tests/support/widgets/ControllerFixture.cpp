#include "support/widgets/ControllerFixture.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>
#include <QTimerEvent>
#include <QToolBar>
#include <cmath>

#include "engine/api/Log.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/MeterView.h"
#include "ui/controls/MovieView.h"
#include "ui/controls/ProgressBar.h"
#include "ui/controls/RoundedBox.h"
#include "ui/controls/WaveformStrip.h"

namespace qm {

namespace {

Slider* makeSlider(QWidget* parent, double minimum, double maximum, double value) {
    auto* slider = new Slider(parent);
    slider->setRange(minimum, maximum);
    slider->setValue(value);
    slider->resize(200, 24);
    return slider;
}

QImage imageByName(EventLog& log, const QString& name) {
    log.add("image " + name.toStdString());
    QImage image(1, 1, QImage::Format_ARGB32);
    image.setText(QStringLiteral("name"), name);
    return image;
}

}  // namespace

TestHome::TestHome(EventLog& log) : m_formerHome(qgetenv("HOME")) {
    qputenv("HOME", m_folder.path().toUtf8());
    setLogSink([&log](std::string_view line) { log.add("log " + std::string(line)); });
}

TestHome::~TestHome() {
    setLogSink({});
    qputenv("HOME", m_formerHome);
}

ControllerFixture::ControllerFixture() : m_window(std::make_unique<FadingWindow>()) {
    m_window->resize(960, 640);
    auto* content = new QWidget(m_window.get());
    m_window->setCentralWidget(content);
    outlets.mainWindow = m_window.get();
    auto* bar = new QToolBar(m_window.get());
    m_window->addToolBar(bar);
    outlets.toolbar = bar;
    buildTransport(content);
    buildSound(content);
    buildLabels(content);
}

ControllerFixture::~ControllerFixture() = default;

void ControllerFixture::buildTransport(QWidget* parent) {
    outlets.playForwardButton = new ImageButton(QStringLiteral("db_Play_F_off.png"), parent);
    outlets.pauseButton = new ImageButton(QStringLiteral("db_Pause_off.png"), parent);
    outlets.playBackwardButton = new ImageButton(QStringLiteral("db_Play_R_off.png"), parent);
    outlets.cueSlider = makeSlider(parent, 0, 1, 0);
    outlets.timecode = new TimeLabel(QStringLiteral("0:00:00.00"), parent);
    outlets.timeRemaining = new TimeLabel(QStringLiteral("00:00:00"), parent);
    outlets.waveformStrip = new WaveformStrip(parent);
    outlets.loopButton = new ImageButton(QStringLiteral("db_loop_off.png"), parent);
    outlets.markAButton = new ImageButton(QStringLiteral("db_set_in_off.png"), parent);
    outlets.markBButton = new ImageButton(QStringLiteral("db_set_out_off.png"), parent);
    outlets.resetMarksButton = new QWidget(parent);
    outlets.loopIn = new TimeLabel(QStringLiteral("00:00:00"), parent);
    outlets.loopOut = new TimeLabel(QStringLiteral("00:00:00"), parent);
    outlets.playList = new PlayListView(parent);
    outlets.trackTotal = new QLabel(parent);
    m_videoPanel = std::make_unique<QWidget>();
    outlets.videoPanel = m_videoPanel.get();
    outlets.movieView = new MovieView(m_videoPanel.get());
    outlets.audioRecordButton = new ImageButton(QStringLiteral("db_start_recording_off.png"), parent);
    outlets.audioRecordStatus = new ImageView(QStringLiteral("db_rec_ind_off.png"), parent);
    m_recordingWindow = std::make_unique<QWidget>();
    outlets.audioRecordingWindow = m_recordingWindow.get();
    outlets.audioRecordingTime = new TimeLabel(QStringLiteral("00:00:00"), m_recordingWindow.get());
    m_levelsPanel = std::make_unique<QWidget>();
    outlets.audioLevelsPanel = m_levelsPanel.get();
    outlets.levelsBox = new RoundedBox(m_levelsPanel.get());
    outlets.meterView1 = new MeterView(outlets.levelsBox);
    outlets.meterView2 = new MeterView(outlets.levelsBox);
    m_exportPanel = std::make_unique<QWidget>();
    outlets.exportPanel = m_exportPanel.get();
    outlets.exportName = new QLabel(m_exportPanel.get());
    outlets.exportProgress = new ProgressBar(m_exportPanel.get());
}

void ControllerFixture::buildSound(QWidget* parent) {
    outlets.speedSlider = makeSlider(parent, -2.5, 2.5, 1);
    outlets.speedResetButton = new TitleButton(QStringLiteral("1.0"), parent);
    outlets.pitchSlider = makeSlider(parent, -1200, 1200, 0);
    outlets.pitchResetButton = new TitleButton(QStringLiteral("0"), parent);
    outlets.gainSlider = makeSlider(parent, 0, 1, 0.5);
    outlets.gainResetButton = new TitleButton(QStringLiteral("as laid out"), parent);
    outlets.balanceSlider = makeSlider(parent, -1, 1, 0);
    outlets.balanceResetButton = new TitleButton(QStringLiteral("0"), parent);
    outlets.bassSlider = makeSlider(parent, 0, 256, 128);
    outlets.bassResetButton = new TitleButton(QStringLiteral("128"), parent);
    outlets.trebleSlider = makeSlider(parent, 0, 256, 128);
    outlets.trebleResetButton = new TitleButton(QStringLiteral("128"), parent);
}

void ControllerFixture::buildLabels(QWidget* parent) {
    for (QLabel** label :
         {&outlets.audioLevelLeft, &outlets.audioLevelRight, &outlets.speedTitle,      &outlets.speed_2,
          &outlets.speed_1,        &outlets.speedMinDown,    &outlets.speedMinDotDown, &outlets.speed0,
          &outlets.speedMinDotUp,  &outlets.speedMinUp,      &outlets.speed1,          &outlets.speed2,
          &outlets.speedNormal,    &outlets.pitchTitle,      &outlets.pitch_1200,      &outlets.pitch_100,
          &outlets.pitchMinDot,    &outlets.pitch0,          &outlets.pitchMaxDot,     &outlets.pitch100,
          &outlets.pitch1200,      &outlets.copyright,       &outlets.formatInInfo,    &outlets.duration,
          &outlets.movieName,      &outlets.movieSize}) {
        *label = new QLabel(QStringLiteral("as laid out"), parent);
    }
}

QMController& ControllerFixture::init() {
    controller = std::make_unique<QMController>(engine, engine.movies, capture, prefs,
                                                [this](const QString& name) { return imageByName(log, name); });
    controller->setExit([this](int status) { log.add("exit " + std::to_string(status)); });
    connectDialogs();
    return *controller;
}

void ControllerFixture::connectDialogs() {
    controller->playListTable().setRunAlert(
        [this](const QString& message, const QStringList& buttons) { return dialogs.alert(message, buttons); });
    controller->playerAlert().setRunAlert(
        [this](const QString& message, const QString& information, const QString& button) {
            dialogs.playerAlert(message, information, button);
        });
    controller->trackExport().setRunPanel(
        [this](const QString& folder, const QString& name) { return dialogs.savePanel(folder, name); });
    controller->trackLoader().setRunPanel([this](FilePanel&) { return dialogs.openPanel(); });
    controller->mainRecorder().setRunSavePanel(
        [this](QWidget*, const QString& folder, const QString& name) { return dialogs.savePanel(folder, name); });
}

QMController& ControllerFixture::start() {
    init();
    awakeWith(*controller, outlets);
    return *controller;
}

QMController& ControllerFixture::startWithRows(const QStringList& paths) {
    start();
    for (const QString& path : paths) addRow(path);
    log.take();
    return *controller;
}

QMController& ControllerFixture::startWithLoadedTrack() {
    startWithRows({QStringLiteral("/music/one.wav"), QStringLiteral("/music/two.wav")});
    outlets.playList->selectRowIndex(0);
    controller->selectTrack();
    log.take();
    return *controller;
}

void ControllerFixture::addRow(const QString& path, std::int64_t duration, std::int32_t timescale) {
    PlayListEntry entry;
    entry.track = path;
    entry.displayName = path;
    entry.artist = entry.album = QStringLiteral(" ");
    entry.duration = entry.markB = duration;
    entry.timescale = timescale;
    controller->insertEntry(controller->count(), entry);
    outlets.playList->reloadData();
}

void ControllerFixture::drag(Slider* slider, double value, void (QMController::*action)(double)) {
    slider->setValue(value);
    (controller.get()->*action)(slider->value());
}

Events ControllerFixture::transportImages() const {
    return {outlets.playForwardButton->imageName().toStdString(), outlets.pauseButton->imageName().toStdString(),
            outlets.playBackwardButton->imageName().toStdString()};
}

Events ControllerFixture::everything() const {
    Events all = transportImages();
    for (const ImageButton* button : {outlets.loopButton, outlets.markAButton, outlets.markBButton}) {
        all.push_back(button->imageName().toStdString());
    }
    for (const TimeLabel* label : {outlets.timecode, outlets.timeRemaining, outlets.loopIn, outlets.loopOut}) {
        all.push_back(label->text().toStdString());
    }
    for (const Slider* slider : {outlets.cueSlider, outlets.speedSlider, outlets.pitchSlider, outlets.gainSlider,
                                 outlets.balanceSlider, outlets.bassSlider, outlets.trebleSlider}) {
        all.push_back(std::to_string(slider->value()));
    }
    for (const TitleButton* button : {outlets.speedResetButton, outlets.pitchResetButton, outlets.gainResetButton,
                                      outlets.balanceResetButton, outlets.bassResetButton, outlets.trebleResetButton}) {
        all.push_back(button->title().toStdString());
    }
    const QMController& c = *controller;
    for (const double field : {double(c.isPlaying), double(c.isLooping), double(c.markBset), double(c.rate),
                               double(c.pitch), double(c.gain), double(c.balance), double(c.bass), double(c.treble),
                               double(c.mostRecentlySelected), double(c.movieTimer != nullptr)}) {
        all.push_back(std::to_string(field));
    }
    for (int row = 0; row < c.count(); ++row) {
        all.push_back(std::to_string(c.markAarray[row]) + " " + std::to_string(c.markBarray[row]));
    }
    return all;
}

void awakeWith(QMController& controller, const Outlets& outlets) {
    static_cast<Outlets&>(controller) = outlets;
    controller.awakeFromNib();
}

void fire(QTimer* timer) {
    QTimerEvent event(timer->timerId());
    QApplication::sendEvent(timer, &event);
}

namespace {

void sendMouse(Slider* slider, QEvent::Type type) {
    const QPointF knob(slider->xOfValue(slider->value()), slider->look().knobCentreY);
    QMouseEvent event(type, knob, slider->mapToGlobal(knob), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(slider, &event);
}

}  // namespace

void pressKnob(Slider* slider) {
    sendMouse(slider, QEvent::MouseButtonPress);
}

void releaseKnob(Slider* slider) {
    sendMouse(slider, QEvent::MouseButtonRelease);
}

}  // namespace qm
