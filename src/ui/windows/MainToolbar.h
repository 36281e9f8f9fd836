// The strip of tools under the menu bar. Each tool is a row here and in the action table. Main thread only.
#pragma once

#include <QWidget>
#include <map>

#include "ui/ActionTable.h"
#include "ui/controls/ChipButton.h"

namespace qm {

class MainToolbar : public QWidget {
    Q_OBJECT

public:
    explicit MainToolbar(ActionTable& actions, QWidget* parent = nullptr);
    ToolButton* tool(ActionId id) const;  // null if there is none

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::map<ActionId, ToolButton*> m_tools;
};

}  // namespace qm
