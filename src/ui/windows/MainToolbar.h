// The strip of tools under the menu bar. Each tool is a row here and in the action table. Main thread only.
#pragma once

#include <QHash>
#include <QWidget>

#include "ui/ActionTable.h"
#include "ui/controls/ChipButton.h"

namespace qm {

class MainToolbar : public QWidget {
    Q_OBJECT

public:
    explicit MainToolbar(ActionTable& actions, QWidget* parent = nullptr);
    ToolButton* tool(const QString& slot) const { return m_tools.value(slot); }  // null if there is none

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QHash<QString, ToolButton*> m_tools;
};

}  // namespace qm
