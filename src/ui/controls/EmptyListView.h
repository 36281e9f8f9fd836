// What the play list shows while it is empty: where to drop files, how to open them, and the keys worth knowing.
// Main thread only.
#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include "ui/controls/ChipButton.h"

namespace qm {

class EmptyListView : public QWidget {
    Q_OBJECT

public:
    explicit EmptyListView(QWidget* parent = nullptr);

    PushButton* openButton() const { return m_open; }
    ChipButton* keysButton() const { return m_keys; }
    void pulse();  // twice, to say that there is nothing to play yet; still when the system asks for no motion

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;

private:
    QWidget* makeHeadline();
    QWidget* makeOpenRow();
    QWidget* makeKeyHints();
    void placeKeysButton();

    PushButton* m_open = nullptr;
    ChipButton* m_keys = nullptr;
    QWidget* m_column = nullptr;
    QVariantAnimation m_pulse{this};
};

}  // namespace qm
