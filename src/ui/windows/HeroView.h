// The head of the main window: what is playing, where it is, the facts that are away from rest, of which speed and
// pitch stand large beside the time, what there is to tell, the waveform strip and the position slider. Main thread
// only.
#pragma once

#include <QLabel>
#include <QWidget>
#include <array>

#include "app/state/Outlets.h"
#include "ui/controls/Card.h"
#include "ui/controls/NoticeLine.h"

namespace qm {

class HeroView : public QWidget {
    Q_OBJECT

public:
    explicit HeroView(Outlets& outlets, QWidget* parent = nullptr);

    void showTrack(const QString& title, const QString& byLine, bool loaded);
    void showStates(const QStringList& texts);  // of speed, pitch, loop and gain; an empty text shows no tag
    void showLargeTags(const QString& speed, const QString& pitch);  // likewise
    void setRoomy(bool roomy);
    void keepClockInPlace();  // after a time's text may have changed in length

    QString title() const { return m_title->text(); }
    QString byLine() const { return m_byLine->text(); }
    QStringList stateTexts() const;
    QStringList largeTexts() const;
    NoticeLine& noticeLine() { return *m_status; }

protected:
    void resizeEvent(QResizeEvent*) override;

private:
    void applyFonts();
    void relayout();
    void layOutClock();
    int layOutLargeTags();
    int layOutTags(int top, int right);
    void layOutStatus(int tagsTop, int tagsEnd);
    int stripHeight() const;

    Outlets& m_outlets;
    TextLabel* m_title;
    TextLabel* m_byLine;
    std::array<StateTag*, 4> m_tags;
    std::array<StateTag*, 2> m_largeTags;  // of speed and pitch
    NoticeLine* m_status;
    QLabel* m_remainingWord;
    bool m_roomy = false;
};

}  // namespace qm
