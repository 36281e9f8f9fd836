#include "ui/windows/SoundCards.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <algorithm>

#include "ui/ReadableForms.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/ImageView.h"
#include "ui/controls/ScaleView.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TitleButton.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kValueWidth = 126, kTightValueWidth = 66, kValueHeight = 26;
constexpr int kSide = 12, kScaleNarrower = 2;
constexpr int kTop = 10, kRoomyTop = 14;
constexpr int kHeadGap = 6, kButtonsGap = 7, kButtonSpacing = 6;
constexpr int kToneTitleWidth = 52;  // more in a wide typeface
constexpr double kOctaveTick = 5, kSemitoneTick = 3;
constexpr double kSlowest = 0.35;  // below this the slider's only value is 0

TitleButton* makeValue(const char* name, const char* title, ActionId id, int width, ActionTable& actions) {
    auto* button = new TitleButton(QString::fromLatin1(title));
    button->setObjectName(QString::fromLatin1(name));
    button->setFixedSize(width, kValueHeight);
    button->setTight(width == kTightValueWidth);
    actions.bind(button, id);
    return button;
}

Slider* makeSlider(const char* name, double minimum, double maximum, double value, double step, ActionId id,
                   ActionTable& actions) {
    auto* slider = new Slider;
    slider->setObjectName(QString::fromLatin1(name));
    slider->setRange(minimum, maximum);
    slider->setResetValue(value);
    slider->setValue(value);
    slider->setStep(step);
    actions.bind(slider, id);
    return slider;
}

ChipButton* makeChip(const QString& text, const char* icon, ActionId id, ActionTable& actions) {
    auto* chip = new ChipButton(text, QString::fromLatin1(icon));
    chip->setObjectName(actionName(id));
    actions.bind(chip, id);
    return chip;
}

QWidget* makeHead(QLabel** outlet, const char* name, const QString& title, TitleButton* value) {
    auto* head = new QWidget;
    head->setFixedHeight(kValueHeight);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    *outlet = new TextLabel(title, uiFont(13, 500), tokens::kScaleCyan);
    (*outlet)->setObjectName(QString::fromLatin1(name));
    row->addWidget(*outlet);
    row->addStretch();
    row->addWidget(value);
    return head;
}

QHBoxLayout* makeButtonRow(QWidget* buttons) {
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kButtonSpacing);
    return row;
}

// Chips of one row share its width in equal parts.
void addEvenly(QHBoxLayout* row, ChipButton* chip) {
    chip->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    row->addWidget(chip, 1);
}

}  // namespace

ScaleCard::ScaleCard(QWidget* parent) : Card(parent), m_column(new QVBoxLayout(this)) {
    m_column->setContentsMargins(kSide, kTop, kSide, kTop);
    m_column->setSpacing(0);
}

void ScaleCard::build(QWidget* head, QWidget* scale, QWidget* buttons) {
    auto* scaleRow = new QHBoxLayout;
    scaleRow->setContentsMargins(0, 0, kScaleNarrower, 0);
    scaleRow->addWidget(scale);
    m_column->addWidget(head);
    m_column->addSpacing(kHeadGap);
    m_column->addStretch();
    m_column->addLayout(scaleRow);
    m_column->addStretch();
    m_column->addSpacing(kButtonsGap);
    m_column->addWidget(buttons);
}

void ScaleCard::setRoomy(bool roomy) {
    const int top = roomy ? kRoomyTop : kTop;
    m_column->setContentsMargins(kSide, top, kSide, top);
}

SpeedCard::SpeedCard(Outlets& o, ActionTable& actions, QWidget* parent) : ScaleCard(parent) {
    setAccessibleName(tr("Speed"));
    o.speedResetButton = makeValue("speedResetButton", "1.0", ActionId::speedReset, kValueWidth, actions);
    QWidget* head = makeHead(&o.speedTitle, "speedTitle", tr("Speed"), o.speedResetButton);
    o.speedSlider = makeSlider("speedSlider", -2.5, 2.5, 1.0, 0.05, ActionId::speedUpdate, actions);
    o.speedSlider->setGap(kSlowest);
    o.speedSlider->setReadableForm(readableSpeed);
    o.speedSlider->setSpokenForm(spokenSpeed);
    SliderLook look;
    for (const double mark : {-2.0, -1.0, 0.0, 1.0, 2.0}) look.ticks.push_back({mark, kOctaveTick});
    o.speedSlider->setLook(look);
    auto* scale = new ScaleView(o.speedSlider, {{&o.speed_2, "speed_2", "−2", -2, 37},
                                                {&o.speed_1, "speed_1", "−1", -1, 37},
                                                {&o.speedMinDotDown, "speedMinDotDown", "•", -0.35, 37},
                                                {&o.speed0, "speed0", "0", 0, 37},
                                                {&o.speedMinDotUp, "speedMinDotUp", "•", 0.35, 37},
                                                {&o.speed1, "speed1", "1", 1, 37},
                                                {&o.speed2, "speed2", "2", 2, 37},
                                                {&o.speedMinDown, "speedMinDown", "−.35", -0.35, 50, Qt::AlignRight, 5},
                                                {&o.speedMinUp, "speedMinUp", ".35", 0.35, 50, Qt::AlignLeft, -5},
                                                {&o.speedNormal, "speedNormal", "normal", 1, 50, Qt::AlignLeft, -4}});
    build(head, scale, makeButtons(actions));
}

QWidget* SpeedCard::makeButtons(ActionTable& actions) {
    auto* buttons = new QWidget;
    auto* row = makeButtonRow(buttons);
    addEvenly(row, makeChip({}, "qm_remove.png", ActionId::speedDown, actions));
    row->addSpacing(kButtonSpacing);
    struct Entry {
        const char* text;
        ActionId id;
        float rate;
    };
    for (const Entry& entry : {Entry{"0.5", ActionId::speed05, 0.5f}, Entry{"0.75", ActionId::speed075, 0.75f},
                               Entry{"1.5", ActionId::speed150, 1.5f}, Entry{"2.0", ActionId::speed20, 2.0f}}) {
        ChipButton* chip = makeChip(QString::fromLatin1(entry.text), "", entry.id, actions);
        m_presets.push_back({chip, entry.rate});
        addEvenly(row, chip);
    }
    row->addSpacing(kButtonSpacing);
    addEvenly(row, makeChip({}, "qm_add.png", ActionId::speedUp, actions));
    return buttons;
}

void SpeedCard::showRate(float rate) {
    for (const Preset& preset : m_presets) preset.chip->setLit(preset.rate == rate);
}

PitchCard::PitchCard(Outlets& o, ActionTable& actions, QWidget* parent) : ScaleCard(parent) {
    setAccessibleName(tr("Pitch"));
    o.pitchResetButton = makeValue("pitchResetButton", "0", ActionId::pitchReset, kValueWidth, actions);
    QWidget* head = makeHead(&o.pitchTitle, "pitchTitle", tr("Pitch"), o.pitchResetButton);
    o.pitchSlider = makeSlider("pitchSlider", -1200, 1200, 0, 100, ActionId::pitchUpdate, actions);
    o.pitchSlider->setReadableForm(readablePitch);
    o.pitchSlider->setSpokenForm(spokenPitch);
    SliderLook look;
    for (int semitone = -12; semitone <= 12; ++semitone) {
        const bool octave = semitone % 12 == 0;
        look.ticks.push_back({semitone * 100.0, octave ? kOctaveTick : kSemitoneTick, octave ? 0.5 : 0.28});
    }
    o.pitchSlider->setLook(look);
    auto* scale = new ScaleView(o.pitchSlider, {{&o.pitch_1200, "pitch_1200", "−1200", -1200, 37, Qt::AlignLeft, -10},
                                                {&o.pitchMinDot, "pitchMinDot", "•", -100, 37},
                                                {&o.pitch0, "pitch0", "0", 0, 37},
                                                {&o.pitchMaxDot, "pitchMaxDot", "•", 100, 37},
                                                {&o.pitch1200, "pitch1200", "1200", 1200, 37, Qt::AlignRight, 10},
                                                {&o.pitch_100, "pitch_100", "−100", -100, 50, Qt::AlignRight, 6},
                                                {&o.pitch100, "pitch100", "100", 100, 50, Qt::AlignLeft, -6}});
    auto* buttons = new QWidget;
    auto* row = makeButtonRow(buttons);
    addEvenly(row, makeChip(tr("Semitone"), "qm_flat.png", ActionId::semiToneDown, actions));
    addEvenly(row, makeChip(tr("Semitone"), "qm_sharp.png", ActionId::semiToneUp, actions));
    build(head, scale, buttons);
}

namespace {

struct ToneRow {
    const char* title;
    ActionId lessAction;
    const char* lessText;  // "" for the icon
    ActionId moreAction;
    const char* moreText;
    Slider** slider;
    const char* sliderName;
    double minimum, maximum, value, fillFrom, step;
    ActionId sliderAction;
    TitleButton** button;
    const char* buttonName;
    const char* buttonTitle;
    ActionId buttonAction;
    QString (*readable)(double);
    QString (*spoken)(double);
};

ChipButton* makeExtreme(const char* text, const char* icon, ActionId id, ActionTable& actions) {
    auto* chip = makeChip(QString::fromLatin1(text), *text ? "" : icon, id, actions);
    chip->setQuiet(true);
    chip->setTextSize(12);
    chip->setInk(tokens::kText2, 600);
    chip->setFixedSize(24, 28);
    return chip;
}

void addToneRow(QGridLayout* grid, int line, const ToneRow& row, ActionTable& actions) {
    auto* title = new TextLabel(QString::fromLatin1(row.title), uiFont(13, 500), tokens::kRowText);
    title->setFixedWidth(std::max(kToneTitleWidth, title->sizeHint().width()));
    Slider* slider =
        makeSlider(row.sliderName, row.minimum, row.maximum, row.value, row.step, row.sliderAction, actions);
    slider->setResetValue(row.fillFrom);
    slider->setDoubleClickValue(row.value);
    slider->setReadableForm(row.readable);
    slider->setSpokenForm(row.spoken);
    SliderLook look;
    look.knobRadius = 9;
    look.grooveHeight = 4;
    look.neutralFill = true;
    slider->setLook(look);
    slider->setFixedHeight(20);
    *row.slider = slider;
    *row.button = makeValue(row.buttonName, row.buttonTitle, row.buttonAction, kTightValueWidth, actions);
    grid->addWidget(title, line, 0, Qt::AlignVCenter);
    grid->addWidget(makeExtreme(row.lessText, "qm_min.png", row.lessAction, actions), line, 1, Qt::AlignCenter);
    grid->addWidget(slider, line, 2, Qt::AlignVCenter);
    grid->addWidget(makeExtreme(row.moreText, "qm_max.png", row.moreAction, actions), line, 3, Qt::AlignCenter);
    grid->addWidget(*row.button, line, 4, Qt::AlignVCenter);
    grid->setRowStretch(line, 1);
}

}  // namespace

ToneCard::ToneCard(Outlets& o, ActionTable& actions, QWidget* parent) : Card(parent) {
    setAccessibleName(tr("Volume and tone"));
    const ToneRow rows[] = {{"Gain", ActionId::volumeMin, "", ActionId::volumeMax, "", &o.gainSlider, "gainSlider", 0,
                             1, 0.5, 0, 0.02, ActionId::gainUpdate, &o.gainResetButton, "gainResetButton", "0.5",
                             ActionId::gainReset, readableGain, spokenGain},
                            {"Balance", ActionId::balanceLeftMax, "L", ActionId::balanceRightMax, "R", &o.balanceSlider,
                             "balanceSlider", -1, 1, 0, 0, 0.05, ActionId::balanceUpdate, &o.balanceResetButton,
                             "balanceResetButton", "0", ActionId::balanceReset, readableBalance, spokenBalance},
                            {"Bass", ActionId::bassMin, "", ActionId::bassMax, "", &o.bassSlider, "bassSlider", 0, 256,
                             128, 128, 8, ActionId::bassUpdate, &o.bassResetButton, "bassResetButton", "128",
                             ActionId::bassReset, readableTone, spokenTone},
                            {"Treble", ActionId::trebleMin, "", ActionId::trebleMax, "", &o.trebleSlider,
                             "trebleSlider", 0, 256, 128, 128, 8, ActionId::trebleUpdate, &o.trebleResetButton,
                             "trebleResetButton", "128", ActionId::trebleReset, readableTone, spokenTone}};
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(12, 9, 12, 9);
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(0);
    grid->setColumnStretch(2, 1);
    int line = 0;
    for (const ToneRow& row : rows) addToneRow(grid, line++, row, actions);
}

RecordBar::RecordBar(Outlets& o, ActionTable& actions, QWidget* parent) : Card(parent) {
    setAccessibleName(tr("Whole sound and recording"));
    o.audioRecordStatus = new ImageView(QStringLiteral("db_rec_ind_off.png"));
    o.audioRecordStatus->setObjectName(QStringLiteral("audioRecordStatus"));
    o.audioRecordStatus->setAccessibleName(tr("Recording light"));
    o.audioRecordButton = new ImageButton(QStringLiteral("db_start_recording_off.png"));
    o.audioRecordButton->setObjectName(QStringLiteral("audioRecordButton"));
    actions.bind(o.audioRecordButton, ActionId::audioStartRecord);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(13, 0, 11, 0);
    row->setSpacing(6);
    row->addWidget(makeChip(tr("Reset All"), "qm_reset.png", ActionId::resetAudio, actions));
    row->addStretch();
    row->addWidget(o.audioRecordStatus);
    row->addWidget(new TextLabel(tr("Record"), uiFont(12.5), tokens::kText2));
    row->addSpacing(6);
    row->addWidget(o.audioRecordButton);
}

}  // namespace qm
