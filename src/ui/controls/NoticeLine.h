// One line that tells what was done, or why something was not, with a button where there is something to do about it.
// It goes by itself unless it is told to stay; not while the pointer is on it or its button has the keyboard. Screen
// readers read it as soon as it is told. Main thread only.
#pragma once

#include <QPointer>
#include <QString>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

namespace qm {

class ChipButton;

class NoticeLine : public QWidget {
    Q_OBJECT

public:
    explicit NoticeLine(QWidget* parent = nullptr);

    void tell(const QString& text, const QString& actText, bool stays);
    void bringBack(const QString& text, const QString& actText);  // shows a lasting notice again without announcing it
    void clear();
    void announce();  // to screen readers, what it says now

    QString text() const { return m_text; }  // empty while there is nothing to tell
    bool offersAct() const;
    void act();  // what the button does
    ChipButton* button() const { return m_button; }

    QSize sizeHint() const override;  // of the whole text and the button

signals:
    void changed();  // what is shown, and with it the size
    void gone();     // by itself, after its time
    void acted();    // the button was pressed; the line still stands

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override { layOut(); }

private:
    void put(const QString& text, const QString& actText);
    void leave();
    void end();
    bool isHeld() const;
    void layOut();

    ChipButton* m_button;
    QString m_text;
    QString m_shown;  // what of it has room
    QTimer m_rest{this};
    QVariantAnimation m_fade{this};
    QPointer<QWidget> m_focusBefore;  // who had the keyboard before the button
};

}  // namespace qm
