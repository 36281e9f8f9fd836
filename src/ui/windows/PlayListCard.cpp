#include "ui/windows/PlayListCard.h"

#include <QBoxLayout>
#include <QPainter>

#include "ui/controls/Fonts.h"
#include "ui/controls/PlayListView.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr int kFooterHeight = 32;
constexpr double kFooterText = 12;

class Footer : public QWidget {
public:
    Footer() { setFixedHeight(kFooterHeight); }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(QRect(0, 0, width(), 1), tokens::kLine); }
};

}  // namespace

PlayListCard::PlayListCard(Outlets& outlets, ActionTable& actions, QWidget* parent) : Card(parent) {
    setAccessibleName(tr("Tracks"));
    outlets.playList = new PlayListView;
    outlets.playList->setObjectName(QStringLiteral("playList"));
    outlets.playList->setAccessibleName(tr("Play list"));
    m_empty = new EmptyListView;
    outlets.playList->setEmptyState(m_empty);
    actions.bind(m_empty->openButton(), ActionId::openFile);
    actions.bind(m_empty->keysButton(), ActionId::displayShortcuts);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    column->addWidget(outlets.playList, 1);
    column->addWidget(makeFooter(outlets, actions));
}

QWidget* PlayListCard::makeFooter(Outlets& outlets, ActionTable& actions) {
    const auto makeTool = [&](const char* icon, ActionId id) {
        auto* chip = new ChipButton(QString(), QString::fromLatin1(icon));
        chip->setQuiet(true);
        chip->setFixedSize(26, 24);
        chip->setObjectName(actionName(id));
        actions.bind(chip, id);
        return chip;
    };
    auto* footer = new Footer;
    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(6, 1, 12, 0);
    row->setSpacing(4);
    row->addWidget(makeTool("qm_add.png", ActionId::openFile));
    m_remove = makeTool("qm_remove.png", ActionId::removeListEntry);
    row->addWidget(m_remove);
    row->addSpacing(4);
    outlets.trackTotal = new TextLabel(QStringLiteral("0 items"), uiFont(kFooterText), tokens::kText);
    outlets.trackTotal->setObjectName(QStringLiteral("trackTotal"));
    row->addWidget(outlets.trackTotal);
    outlets.trackTotal->setAccessibleName(tr("Tracks in the list"));
    auto* format = new TextLabel(QString(), uiFont(kFooterText), tokens::kText2);
    format->setObjectName(QStringLiteral("format"));
    format->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    format->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    format->setAccessibleName(tr("Track format"));
    outlets.format = format;
    row->addWidget(format, 1);
    return footer;
}

FindBar& PlayListCard::findBar() {
    if (!m_findBar) {
        m_findBar = new FindBar;
        m_findBar->hide();
        static_cast<QVBoxLayout*>(layout())->insertWidget(1, m_findBar);
    }
    return *m_findBar;
}

void PlayListCard::pulseDropArea() {
    if (m_empty->isVisible()) m_empty->pulse();
}

}  // namespace qm
