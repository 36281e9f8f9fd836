#include "ui/windows/MainToolbar.h"

#include <QBoxLayout>
#include <QPainter>
#include <cmath>

#include "ui/controls/Tokens.h"

namespace qm {

namespace {

struct Tool {
    const char* slot;  // "" for a line between tools, "-" for the free space
    const char* text;
    const char* icon;
};

constexpr Tool kTools[] = {{"openFile", "Open…", "qm_open.png"},
                           {"clearList", "Clear List", "qm_clear.png"},
                           {"", "", ""},
                           {"displayInfo", "Info", "qm_info.png"},
                           {"exportMovie", "Export…", "qm_export.png"},
                           {"", "", ""},
                           {"displayLevels", "Meters", "qm_meters.png"},
                           {"audioRecordOpen", "Recording…", "qm_record.png"},
                           {"-", "", ""},
                           {"openPrefsWindow", "Preferences", "qm_prefs.png"}};

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
        if (*tool.slot == '\0') {
            row->addWidget(new Separator);
            left += kSeparatorWidth + kSpacing;
            continue;
        }
        if (*tool.slot == '-') {
            row->addStretch();
            continue;
        }
        const QString slot = QString::fromLatin1(tool.slot);
        auto* button = new ToolButton(tr(tool.text), QString::fromLatin1(tool.icon));
        button->setObjectName(slot);
        actions.bind(button, slot);
        const double right = left + button->exactWidth();
        button->setFixedWidth(static_cast<int>(std::lround(right) - std::lround(left)));
        left = right + kSpacing;
        m_tools.insert(slot, button);
        row->addWidget(button);
    }
}

void MainToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), tokens::kBar);
    painter.fillRect(QRect(0, height() - 1, width(), 1), tokens::kLine);
}

}  // namespace qm
