// The bar that finds tracks: a field, how many tracks match, and a button that closes it. It only tells
// what the user does. Main thread only.
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
    void chosen();    // Return: play the first match
    void left();      // closed by Esc or the button
    void goneDown();  // to the list, with the Down key

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    SearchField* m_field;
    TextLabel* m_count;
};

}  // namespace qm
