#include "ui/windows/AboutPanel.h"

#include <QBoxLayout>
#include <QHideEvent>
#include <QPainter>
#include <QStackedWidget>

#include "ui/controls/Card.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/LinkButton.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/TextBlock.h"
#include "ui/controls/Tokens.h"
#include "update/CurrentVersion.h"

namespace qm {

namespace {

constexpr int kWidth = 360, kHeight = 374;
constexpr int kIconTop = 36, kIcon = 120, kNameGap = 20, kNameLine = 32, kVersionGap = 2, kMottoGap = 18;
constexpr int kLine = 18, kLinkBottom = 22, kSide = 36;

class ApplicationIcon : public QWidget {
public:
    ApplicationIcon() { setFixedSize(kIcon, kIcon); }

protected:
    void paintEvent(QPaintEvent*) override {
        const double ratio = devicePixelRatioF();
        if (m_icon.isNull() || m_icon.devicePixelRatio() != ratio) {
            const int pixels = qRound(kIcon * ratio);
            m_icon = QPixmap::fromImage(namedImage(QStringLiteral("app_quillmere_512.png"))
                                            .scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation));
            m_icon.setDevicePixelRatio(ratio);
        }
        QPainter(this).drawPixmap(0, 0, m_icon);
    }

private:
    QPixmap m_icon;
};

QVBoxLayout* makeColumn(QWidget* page) {
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(kSide, kIconTop, kSide, kLinkBottom);
    column->setSpacing(0);
    return column;
}

void addLine(QVBoxLayout* column, const QString& text, const QFont& font, const QColor& color, int height) {
    auto* line = new TextLabel(text, font, color);
    line->setAlignment(Qt::AlignHCenter);
    line->setFixedHeight(height);
    column->addWidget(line);
}

LinkButton* addLink(QVBoxLayout* column, const QString& text) {
    auto* link = new LinkButton(text);
    column->addStretch();
    column->addWidget(link, 0, Qt::AlignHCenter);
    return link;
}

}  // namespace

AboutPanel::AboutPanel(Outlets& outlets, QWidget* mainWindow)
    : ToolPanel(tr("About Quillmere"), mainWindow, Keys::Own) {
    setObjectName(QStringLiteral("aboutPanel"));
    setFixedSize(kWidth, kHeight);
    outlets.aboutPanel = this;
}

void AboutPanel::build() {
    m_pages = new QStackedWidget(this);
    m_pages->setGeometry(rect());
    m_pages->addWidget(makeFirstPage());
    m_pages->addWidget(makeAcknowledgements());
    new FocusRing(this, tokens::kLink);
}

QWidget* AboutPanel::makeFirstPage() {
    auto* page = new QWidget;
    QVBoxLayout* column = makeColumn(page);
    column->addWidget(new ApplicationIcon, 0, Qt::AlignHCenter);
    column->addSpacing(kNameGap);
    addLine(column, QStringLiteral("Quillmere"), uiFont(26, 600, -0.02), tokens::kPaperText, kNameLine);
    column->addSpacing(kVersionGap);
    addLine(column, tr("Version %1").arg(currentVersionText()), uiFont(13), tokens::kPaperText2, kLine);
    column->addSpacing(kMottoGap);
    addLine(column, tr("Slow it down. Loop it. Learn it by ear."), uiFont(14), tokens::kPaperText3, kLine);
    LinkButton* link = addLink(column, tr("Acknowledgements"));
    connect(link, &QAbstractButton::clicked, this, [this] { m_pages->setCurrentIndex(1); });
    return page;
}

QWidget* AboutPanel::makeAcknowledgements() {
    auto* page = new QWidget;
    QVBoxLayout* column = makeColumn(page);
    addLine(column, tr("Acknowledgements"), uiFont(17, 600, -0.01), tokens::kPaperText, 22);
    column->addSpacing(16);
    const auto add = [column](const QString& text) {
        column->addWidget(new TextBlock(text, uiFont(13), tokens::kPaperText3, kLine));
        column->addSpacing(10);
    };
    add(tr("Rubber Band stretches time and shifts pitch."));
    add(tr("FFmpeg reads the files and writes them."));
    add(tr("cubeb speaks with the sound card."));
    add(tr("Qt draws the windows, in the typeface Inter where it is installed."));
    add(
        tr("Quillmere is free software under the GNU General Public License, version 3 or later. It comes without any "
           "warranty."));
    LinkButton* link = addLink(column, tr("Back"));
    connect(link, &QAbstractButton::clicked, this, [this] { m_pages->setCurrentIndex(0); });
    return page;
}

void AboutPanel::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) m_pages->setCurrentIndex(0);
    ToolPanel::hideEvent(event);
}

}  // namespace qm
