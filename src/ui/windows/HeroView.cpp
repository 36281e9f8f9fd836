#include "ui/windows/HeroView.h"

#include <algorithm>
#include <cmath>

#include "ui/controls/Fonts.h"
#include "ui/controls/Slider.h"
#include "ui/controls/TimeLabel.h"
#include "ui/controls/Tokens.h"
#include "ui/controls/WaveformStrip.h"

namespace qm {

namespace {

// The two sizes of the head, in pixels.
struct Measures {
    int head, titleText, titleLine, byText, byLine, timeText, strip, tagText, tag;
};
constexpr Measures kNormal = {63, 20, 26, 13, 18, 44, 56, 22, 34};
constexpr Measures kRoomy = {75, 24, 30, 14, 20, 56, 92, 28, 44};
constexpr int kTagGap = 3, kTagSpacing = 6, kTagHeight = 18;
constexpr int kRemainingGap = 2, kRemainingLine = 18;
constexpr int kClockGap = 16;
constexpr int kStatusGap = 10, kStatusHeight = 20;
constexpr int kStripGap = 10, kCueGap = 4, kCueHeight = 24, kBottom = 11;

const Measures& measures(bool roomy) {
    return roomy ? kRoomy : kNormal;
}

template <typename Control>
Control* named(Control* control, const char* name) {
    control->setObjectName(QString::fromLatin1(name));
    return control;
}

}  // namespace

HeroView::HeroView(Outlets& outlets, QWidget* parent)
    : QWidget(parent),
      m_outlets(outlets),
      m_title(new TextLabel(QString(), uiFont(kNormal.titleText, 600, -0.01), tokens::kText, this)),
      m_byLine(new TextLabel(QString(), uiFont(kNormal.byText), tokens::kText2, this)),
      m_tags{new StateTag(false, this), new StateTag(false, this), new StateTag(true, this), new StateTag(false, this)},
      m_largeTags{new StateTag(false, this), new StateTag(false, this)},
      m_status(new NoticeLine(this)),
      m_remainingWord(new TextLabel(tr("remaining"), uiFont(13), tokens::kText2, this)) {
    m_outlets.timecode = named(new TimeLabel(QStringLiteral("0:00:00.00"), this), "timecode");
    m_outlets.timeRemaining = named(new TimeLabel(QStringLiteral("00:00:00"), this), "timeRemaining");
    m_outlets.timecode->setTextAlignment(Qt::AlignRight);
    m_outlets.timeRemaining->setTextAlignment(Qt::AlignRight);
    m_remainingWord->setAlignment(Qt::AlignRight);
    m_outlets.timeRemaining->setTextFont(uiFont(13, 500), kRemainingLine);
    m_outlets.timecode->setAccessibleName(tr("Elapsed time"));
    m_outlets.timeRemaining->setAccessibleName(tr("Remaining time"));
    m_outlets.waveformStrip = named(new WaveformStrip(this), "waveformStrip");
    m_outlets.waveformStrip->setAccessibleName(tr("Picture of the position slider"));
    m_outlets.cueSlider = named(new Slider(this), "cueSlider");
    SliderLook look;
    look.grooveHeight = 6;
    look.knobCentreY = kCueHeight / 2.0;
    m_outlets.cueSlider->setLook(look);
    m_outlets.cueSlider->setRange(0, 1);
    connect(m_status, &NoticeLine::changed, this, &HeroView::relayout);
    applyFonts();
}

void HeroView::applyFonts() {
    const Measures& m = measures(m_roomy);
    m_title->setFont(uiFont(m.titleText, 600, -0.01));
    m_byLine->setFont(uiFont(m.byText));
    m_outlets.timecode->setTextFont(uiFont(m.timeText, 400, -0.03), m.timeText);
    for (StateTag* tag : m_largeTags) tag->setMeasures(m.tagText, m.tag);
}

void HeroView::setRoomy(bool roomy) {
    if (m_roomy == roomy) return;
    m_roomy = roomy;
    applyFonts();
    relayout();
}

void HeroView::showTrack(const QString& title, const QString& byLine, bool loaded) {
    if (m_title->text() != title) m_title->setText(title);
    if (m_byLine->text() != byLine) m_byLine->setText(byLine);
    setLabelColor(*m_title, loaded ? tokens::kText : tokens::kText2);
    m_outlets.timecode->setTextColor(loaded ? tokens::kText : tokens::kText3);
}

void HeroView::showStates(const QStringList& texts) {
    if (stateTexts() == texts) return;
    for (std::size_t i = 0; i < m_tags.size(); ++i) m_tags[i]->setText(texts.value(static_cast<qsizetype>(i)));
    relayout();
}

void HeroView::showLargeTags(const QString& speed, const QString& pitch) {
    if (largeTexts() == QStringList{speed, pitch}) return;
    m_largeTags[0]->setText(speed);
    m_largeTags[1]->setText(pitch);
    relayout();
}

QStringList HeroView::largeTexts() const {
    return {m_largeTags[0]->text(), m_largeTags[1]->text()};
}

QStringList HeroView::stateTexts() const {
    QStringList texts;
    for (const StateTag* tag : m_tags) texts << tag->text();
    return texts;
}

void HeroView::keepClockInPlace() {
    if (m_outlets.timecode->width() != m_outlets.timecode->sizeHint().width() ||
        m_outlets.timeRemaining->width() != m_outlets.timeRemaining->sizeHint().width())
        relayout();
}

void HeroView::resizeEvent(QResizeEvent*) {
    relayout();
}

void HeroView::relayout() {
    const Measures& m = measures(m_roomy);
    layOutClock();
    const int right = layOutLargeTags() - kClockGap;
    m_title->setGeometry(0, 0, right, m.titleLine);
    m_byLine->setGeometry(0, m.titleLine, right, m.byLine);
    const int tagsTop = m.titleLine + m.byLine + kTagGap;
    layOutStatus(tagsTop, layOutTags(tagsTop, right));
    const int stripTop = m.head + kStripGap;
    const int strip = stripHeight();
    m_outlets.waveformStrip->setGeometry(0, stripTop, width(), strip);
    m_outlets.cueSlider->setGeometry(0, stripTop + strip + kCueGap, width(), kCueHeight);
}

// What is higher than usual is for the strip.
int HeroView::stripHeight() const {
    const Measures& m = measures(m_roomy);
    return std::max(m.strip, height() - m.head - kStripGap - kCueGap - kCueHeight - kBottom);
}

// From the clock to the left; answers where they begin, or the clock.
int HeroView::layOutLargeTags() {
    const Measures& m = measures(m_roomy);
    int left = m_outlets.timecode->x(), gap = kClockGap;
    for (auto tag = m_largeTags.rbegin(); tag != m_largeTags.rend(); ++tag) {
        if ((*tag)->text().isEmpty()) continue;
        const int width = (*tag)->sizeHint().width();
        left -= gap + width;
        (*tag)->setGeometry(left, (m.timeText - m.tag) / 2, width, m.tag);
        gap = kTagSpacing;
    }
    return left;
}

void HeroView::layOutClock() {
    const Measures& m = measures(m_roomy);
    const QSize time = m_outlets.timecode->sizeHint();
    m_outlets.timecode->setGeometry(width() - time.width(), 0, time.width(), m.timeText);
    const int top = m.timeText + kRemainingGap;
    const QFont font = m_remainingWord->font();
    const int word = m_remainingWord->sizeHint().width();
    m_remainingWord->setGeometry(width() - word, top, word, kRemainingLine);
    const double after = textWidth(font, QStringLiteral(" ") + m_remainingWord->text());
    const int right = width() - static_cast<int>(std::lround(after));
    const int remaining = m_outlets.timeRemaining->sizeHint().width();
    m_outlets.timeRemaining->setGeometry(right - remaining, top, remaining, kRemainingLine);
}

// Answers where the last tag ends.
int HeroView::layOutTags(int top, int right) {
    int x = 0, end = 0;
    for (StateTag* tag : m_tags) {
        if (tag->text().isEmpty()) continue;
        const int width = std::min(tag->sizeHint().width(), std::max(0, right - x));
        tag->setGeometry(x, top, width, kTagHeight);
        end = x + width;
        x = end + kTagSpacing;
    }
    return end;
}

// In the row of the tags, as far as the clock; what is too long for that stands in the artist's place, where that has
// more room, for as long as it is shown.
void HeroView::layOutStatus(int tagsTop, int tagsEnd) {
    const int left = tagsEnd > 0 ? tagsEnd + kStatusGap : 0;
    const int besideTop = tagsTop - (kStatusHeight - kTagHeight) / 2;
    const bool isBelowClock = besideTop > m_outlets.timecode->geometry().bottom();
    const QWidget* next = isBelowClock ? m_outlets.timeRemaining : m_outlets.timecode;
    const int beside = next->x() - kClockGap - left;
    const int wanted = m_status->sizeHint().width();
    const bool isBeside = wanted <= beside || beside >= m_byLine->width();
    const int x = isBeside ? left : 0;
    const int y = isBeside ? besideTop : m_byLine->y();
    m_status->setGeometry(x, y, std::min(wanted, isBeside ? beside : m_byLine->width()), kStatusHeight);
    m_byLine->setVisible(isBeside || m_status->text().isEmpty());
}

}  // namespace qm
