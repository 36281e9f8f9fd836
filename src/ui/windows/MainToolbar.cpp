#include "ui/windows/MainToolbar.h"

#include <QBoxLayout>
#include <QPainter>
#include <cmath>

#include "ui/controls/Tokens.h"

namespace qm {

namespace {

enum class Place { Tool, Line, Space };

struct Tool {
    ActionId id;
    const char* text;
    const char* icon;
    Place before = Place::Tool;  // what stands before it: another tool, a line or the free space
};

constexpr Tool kTools[] = {{ActionId::openFile, "Open…", "qm_open.png"},
                           {ActionId::clearList, "Clear List", "qm_clear.png"},
                           {ActionId::displayInfo, "Info", "qm_info.png", Place::Line},
                           {ActionId::exportMovie, "Export…", "qm_export.png"},
                           {ActionId::displayLevels, "Meters", "qm_meters.png", Place::Line},
                           {ActionId::audioRecordOpen, "Recording…", "qm_record.png"},
                           {ActionId::openPrefsWindow, "Preferences", "qm_prefs.png", Place::Space}};

constexpr int kHeight = 42, kSide = 12, kSpacing = 2, kSeparatorWidth = 17;

class Separator : public QWidget {
public:
    Separator() { setFixedSize(kSeparatorWidth, 20); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(QRect(8, 0, 1, height()), tokens::kLineStrong); }
};

}  // namespace

MainToolbar::MainToolbar(ActionTable& actions, QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("toolbar"));
    setFixedHeight(kHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(kSide, 1, kSide, 0);
    row->setSpacing(kSpacing);
    double left = kSide;  // edges are rounded, not widths, whose errors would add up
    for (const Tool& tool : kTools) {
        if (tool.before == Place::Line) {
            row->addWidget(new Separator);
            left += kSeparatorWidth + kSpacing;
        }
        if (tool.before == Place::Space) row->addStretch();
        auto* button = new ToolButton(tr(tool.text), QString::fromLatin1(tool.icon));
        button->setObjectName(actionName(tool.id));
        actions.bind(button, tool.id);
        const double right = left + button->exactWidth();
        button->setFixedWidth(static_cast<int>(std::lround(right) - std::lround(left)));
        left = right + kSpacing;
        m_tools.emplace(tool.id, button);
        row->addWidget(button);
    }
}

ToolButton* MainToolbar::tool(ActionId id) const {
    const auto found = m_tools.find(id);
    return found == m_tools.end() ? nullptr : found->second;
}

void MainToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), tokens::kBar);
    painter.fillRect(QRect(0, height() - 1, width(), 1), tokens::kLine);
}

}  // namespace qm
