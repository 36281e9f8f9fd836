#include "ui/windows/Decks.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>

#include "ui/controls/ChipButton.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/ImageButton.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kFacesHeight = 80;
constexpr int kRowHeight = 28;
constexpr int kSkipWidth = 34, kWideSkipWidth = 40, kUnitWidth = 22;
constexpr double kSkipText = 12.5;

ImageButton* makeFace(const char* name, const char* image, ActionId id, ActionTable& actions) {
    auto* button = new ImageButton(QString::fromLatin1(image));
    button->setObjectName(QString::fromLatin1(name));
    actions.bind(button, id);
    return button;
}

// A face that shows whether something is on, which it is not yet.
ImageButton* makeStateFace(const char* name, const char* image, ActionId id, ActionTable& actions) {
    ImageButton* button = makeFace(name, image, id, actions);
    button->showState(button->imageName(), false);
    return button;
}

TimeLabel* makeLoopTime(const char* name, const QString& accessibleName) {
    auto* label = new TimeLabel(QStringLiteral("00:00:00"));
    label->setObjectName(QString::fromLatin1(name));
    label->setAccessibleName(accessibleName);
    label->setTextFont(uiFont(18, 500), kRowHeight);
    label->setTextAlignment(Qt::AlignHCenter);
    return label;
}

void dimAll(const std::vector<FaceButton*>& buttons, bool dimmed) {
    for (FaceButton* button : buttons) button->setDimmed(dimmed);
}

}  // namespace

TransportDeck::TransportDeck(Outlets& outlets, ActionTable& actions, QWidget* parent) : Card(parent) {
    setAccessibleName(tr("Transport"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    column->addWidget(makeFaces(outlets, actions));
    column->addWidget(makeSkips(actions));
    column->addStretch();
}

QWidget* TransportDeck::makeFaces(Outlets& outlets, ActionTable& actions) {
    auto* faces = new QWidget;
    faces->setFixedHeight(kFacesHeight);
    auto* row = new QHBoxLayout(faces);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto* toStart = makeFace("goToStartButton", "qm_to_start.png", ActionId::goToStart, actions);
    outlets.playBackwardButton =
        makeStateFace("playBackwardButton", "db_Play_R_off.png", ActionId::playBackward, actions);
    outlets.pauseButton = makeStateFace("pauseButton", "db_Pause_off.png", ActionId::pause, actions);
    outlets.playForwardButton = makeStateFace("playForwardButton", "db_Play_F_off.png", ActionId::playForward, actions);
    row->addStretch();
    for (ImageButton* face : {toStart, outlets.playBackwardButton, outlets.pauseButton, outlets.playForwardButton})
        row->addWidget(face, 0, Qt::AlignVCenter);
    row->addStretch();
    m_dimming.insert(m_dimming.end(), {toStart, outlets.playBackwardButton, outlets.pauseButton});
    return faces;
}

QWidget* TransportDeck::makeSkips(ActionTable& actions) {
    struct Skip {
        const char* text;
        ActionId id;
    };
    static constexpr Skip kBack[] = {
        {"−60", ActionId::skip_60}, {"−10", ActionId::skip_10}, {"−1", ActionId::skipBack}};
    static constexpr Skip kAhead[] = {{"+1", ActionId::skip1},
                                      {"+10", ActionId::skip10},
                                      {"+30", ActionId::skip30},
                                      {"+60", ActionId::skip60},
                                      {"+300", ActionId::skip300}};
    auto* skips = new QWidget;
    skips->setFixedHeight(kRowHeight);
    auto* row = new QHBoxLayout(skips);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    const auto add = [&](const Skip& skip) {
        auto* chip = new ChipButton(QString::fromUtf8(skip.text));
        chip->setObjectName(actionName(skip.id));
        chip->setTextSize(kSkipText);
        chip->setFixedSize(skip.id == ActionId::skip300 ? kWideSkipWidth : kSkipWidth, kRowHeight);
        actions.bind(chip, skip.id);
        row->addWidget(chip);
        m_dimming.push_back(chip);
    };
    row->addStretch();
    for (const Skip& skip : kBack) add(skip);
    auto* unit = new TextLabel(tr("sec"), uiFont(11), tokens::kText3);
    unit->setFixedWidth(kUnitWidth);
    unit->setAlignment(Qt::AlignCenter);
    m_unit = unit;
    row->addWidget(unit);
    for (const Skip& skip : kAhead) add(skip);
    row->addStretch();
    return skips;
}

void TransportDeck::setDimmed(bool dimmed) {
    dimAll(m_dimming, dimmed);
    QColor unit = tokens::kText3;
    if (dimmed) unit.setAlphaF(static_cast<float>(tokens::kDimOpacity));
    setLabelColor(*m_unit, unit);
}

LoopDeck::LoopDeck(Outlets& outlets, ActionTable& actions, QWidget* parent) : Card(parent) {
    setAccessibleName(tr("Loop"));
    outlets.markAButton = makeStateFace("markAButton", "db_set_in_off.png", ActionId::markAUpdate, actions);
    outlets.loopButton = makeStateFace("loopButton", "db_loop_off.png", ActionId::loopSwitch, actions);
    outlets.markBButton = makeStateFace("markBButton", "db_set_out_off.png", ActionId::markBUpdate, actions);
    outlets.loopIn = makeLoopTime("loopIn", tr("Mark A"));
    outlets.loopOut = makeLoopTime("loopOut", tr("Mark B"));
    auto* reset = new ChipButton(tr("Reset"));
    reset->setObjectName(QStringLiteral("resetMarksButton"));
    reset->setFixedWidth(reset->sizeHint().width() + 9);
    actions.bind(reset, ActionId::resetMarks);
    outlets.resetMarksButton = reset;

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(7, 1, 7, 1);
    grid->setSpacing(0);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(2, 1);
    grid->setRowMinimumHeight(0, kFacesHeight);
    grid->setRowMinimumHeight(1, kRowHeight);
    grid->setRowStretch(2, 1);
    int column = 0;
    for (ImageButton* face : {outlets.markAButton, outlets.loopButton, outlets.markBButton})
        grid->addWidget(face, 0, column++, Qt::AlignCenter);
    grid->addWidget(outlets.loopIn, 1, 0, Qt::AlignCenter);
    grid->addWidget(reset, 1, 1, Qt::AlignCenter);
    grid->addWidget(outlets.loopOut, 1, 2, Qt::AlignCenter);
    m_dimming = {outlets.markAButton, outlets.loopButton, outlets.markBButton, reset};
}

void LoopDeck::setDimmed(bool dimmed) {
    dimAll(m_dimming, dimmed);
}

}  // namespace qm
