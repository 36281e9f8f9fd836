// The line in which a track is looked for: the field, how many there are of how many, and the way out. It only tells
// what its user does. Main thread only.
#pragma once

#include <QWidget>

namespace qm {

class ChipButton;
class SearchField;
class TextLabel;

class FindBar : public QWidget {
    Q_OBJECT

public:
    explicit FindBar(QWidget* parent = nullptr);

    void begin();  // shown, with the keyboard in the field
    void showCount(int found, int all);
    QString text() const;
    QString countText() const;
    SearchField* field() const { return m_field; }

signals:
    void typed(const QString& text);
    void chosen();    // Return: the first that was found
    void left();      // Esc, or the button: no more of it
    void goneDown();  // to the list, with the Down key

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    SearchField* m_field;
    TextLabel* m_count;
};

}  // namespace qm
