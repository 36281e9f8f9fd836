// The panel that shows every key of the program, made from the action table and grouped as the menus are, and a line to
// look for one. It scrolls where the screen is too small for it. Main thread only.
#pragma once

#include <QString>
#include <utility>
#include <vector>

#include "ui/windows/ToolPanel.h"

class QScrollArea;
class QVBoxLayout;

namespace qm {

class SearchField;
class TextLabel;
struct KeyGroup;

class ShortcutsPanel : public ToolPanel {
    Q_OBJECT

public:
    explicit ShortcutsPanel(QWidget* mainWindow);

    void showOnly(const QString& typed);  // the keys in whose words or caps all of these words are

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Group {
        QWidget* heading;
        QWidget* gap;                                    // above it; none at the top of a column
        std::vector<std::pair<QWidget*, QString>> rows;  // and all that they say
    };

    QWidget* makeContent();
    QWidget* makeSearchLine();
    void addGroup(QVBoxLayout* column, const KeyGroup& group);

    std::vector<Group> m_groups;
    SearchField* m_field;
    TextLabel* m_none;
    QScrollArea* m_scroll;
};

}  // namespace qm
