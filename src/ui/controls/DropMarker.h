// What lies over the play list while files are dragged over the window: a frame that takes them, or another one that
// does not, with the reason in words. The drop goes to the list below it. Main thread only.
#pragma once

#include <QString>
#include <QWidget>

namespace qm {

class DropMarker : public QWidget {
    Q_OBJECT

public:
    explicit DropMarker(QWidget* parent);

    void begin();                                    // shown as taking, until more is known
    void judge(const QString& words, bool refuses);  // no words: taken without a comment

    QString words() const { return m_words; }
    bool refuses() const { return m_refuses; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void paintWords(QPainter& painter) const;

    QString m_words;
    bool m_refuses = false;
};

}  // namespace qm
