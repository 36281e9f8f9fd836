#include "ui/dialogs/Style.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QIcon>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolTip>
#include <algorithm>

#include "ui/controls/ControlAccess.h"
#include "ui/controls/Fonts.h"
#include "ui/controls/Motion.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/Tokens.h"
#include "ui/dialogs/DialogStyle.h"

namespace qm {

namespace {

constexpr double kMenuText = 12.5;
constexpr int kTipMargin = 5;
const QColor kTipFrame(0x3A, 0x3C, 0x3F);
constexpr int kScrollBarExtent = 11, kScrollBarMargin = 2, kShortestHandle = 28, kHandleRadius = 4;
const QColor kHandle(0x56, 0x5B, 0x61), kHandleHovered(0x73, 0x79, 0x81);
constexpr int kDialogButtonGap = 8;
constexpr int kMenuHeight = 26, kMenuSide = 9, kMenuBarSide = 8;

QString menuSheet() {
    return QStringLiteral(R"(
QMenu { background: #1B1C1E; color: #F3F5F7; border: 1px solid #3C3E41; padding: 5px; }
QMenu::item { padding: 5px 26px 5px 14px; border-radius: 6px; margin: 0; }
QMenu::item:selected { background: rgba(63, 210, 226, 51); color: #FFFFFF; }
QMenu::item:disabled { color: #6B727A; }
QMenu::separator { height: 1px; background: #37393C; margin: 5px 8px; }
QMenu::right-arrow { width: 10px; height: 10px; }
QMenu::indicator { width: 14px; height: 14px; margin-left: 4px; }
)");
}

// The desktop's own style never shows through.
class QuietStyle : public QProxyStyle {
public:
    QuietStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override {
        const QIcon own = dialogIcon(icon);
        return own.isNull() ? QProxyStyle::standardIcon(icon, option, widget) : own;
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
            case PM_MessageBoxIconSize:
                return kWarningSize;
            case PM_LayoutHorizontalSpacing:
            case PM_LayoutVerticalSpacing:
                if (qobject_cast<const QDialogButtonBox*>(widget)) return kDialogButtonGap;
                break;
            case PM_MenuBarHMargin:
                return kMenuBarSide;
            case PM_MenuBarVMargin:
            case PM_MenuBarItemSpacing:
            case PM_MenuBarPanelWidth:
                return 0;
            case PM_ToolTipLabelFrameWidth:
                return kTipMargin;
            case PM_ScrollBarExtent:
                return kScrollBarExtent;
            default:
                break;
        }
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        if (type == CT_PushButton && button) return dialogButtonSize(*button, widget);
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuBarItem || !item) return QProxyStyle::sizeFromContents(type, option, size, widget);
        return {menuTitleWidth(*item, widget), kMenuHeight};
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element != PE_PanelTipLabel) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        painter->fillRect(option->rect, kTipFrame);
        painter->fillRect(option->rect.adjusted(1, 1, -1, -1), Qt::black);
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_MenuBarEmptyArea) {
            painter->fillRect(option->rect, tokens::kBar);
            return;
        }
        const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element == CE_PushButton && button)
            paintDialogButton(*painter, *button, widget);
        else if (element == CE_MenuBarItem && item)
            drawMenuTitle(*painter, *item);
        else
            QProxyStyle::drawControl(element, option, painter, widget);
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override {
        const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control != CC_ScrollBar || !bar) return QProxyStyle::subControlRect(control, option, part, widget);
        return scrollBarPart(*bar, part);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (control == CC_ScrollBar && bar)
            drawHandle(*painter, *bar);
        else
            QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    using QProxyStyle::polish;
    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        if (qobject_cast<QScrollBar*>(widget)) widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
        if (const auto* menu = qobject_cast<QMenu*>(widget))
            QObject::connect(menu, &QMenu::aboutToShow, menu, [widget] { useSheet(widget, menuSheet()); });
        if (qobject_cast<QPushButton*>(widget)) widget->setCursor(Qt::PointingHandCursor);
        if (qobject_cast<QMessageBox*>(widget) || qobject_cast<QFileDialog*>(widget)) {
            if (!widget->styleSheet().isEmpty()) return;
            useSheet(widget, dialogSheet());
            dressDialog(*static_cast<QDialog*>(widget));
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        // A drag on a menu bar or an Alt press must not take the player's keys away.
        if (hint == SH_MenuBar_AltKeyNavigation) return 0;
        if (hint == SH_ToolTip_WakeUpDelay) return 600;
        if ((hint == SH_Widget_Animate || hint == SH_Widget_Animation_Duration) && !motionIsWanted()) return 0;
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
#ifdef Q_OS_LINUX
        if (hint == SH_DialogButtonLayout) return QDialogButtonBox::GnomeLayout;
#endif
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    // Only where it is needed, and not before: a sheet for the whole program would cost every widget time.
    static void useSheet(QWidget* widget, const QString& sheet) {
        if (!widget->styleSheet().isEmpty()) return;
        widget->setStyleSheet(sheet);
        widget->style()->polish(widget);  // which is the sheet's now
    }

    // No arrows; the handle in the middle of the groove, which has no look of its own.
    static QRect scrollBarPart(const QStyleOptionSlider& bar, SubControl part) {
        const bool vertical = bar.orientation == Qt::Vertical;
        const QRect groove = bar.rect.adjusted(vertical ? 0 : kScrollBarMargin, vertical ? kScrollBarMargin : 0,
                                               -kScrollBarMargin, -kScrollBarMargin);
        const auto piece = [&](int from, int to) {
            return vertical ? QRect(groove.left(), groove.top() + from, groove.width(), to - from)
                            : QRect(groove.left() + from, groove.top(), to - from, groove.height());
        };
        const int length = vertical ? groove.height() : groove.width();
        const double whole = static_cast<double>(bar.maximum) - bar.minimum + bar.pageStep;
        const int shown = whole > 0 ? static_cast<int>(length * (bar.pageStep / whole)) : length;
        const int handle = std::clamp(shown, std::min(kShortestHandle, length), length);
        const int start =
            sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, length - handle, bar.upsideDown);
        switch (part) {
            case SC_ScrollBarGroove:
                return groove;
            case SC_ScrollBarSlider:
                return piece(start, start + handle);
            case SC_ScrollBarSubPage:
                return piece(0, start);
            case SC_ScrollBarAddPage:
                return piece(start + handle, length);
            default:
                return {};
        }
    }

    static void drawHandle(QPainter& painter, const QStyleOptionSlider& bar) {
        const bool hovered = bar.state & State_MouseOver && bar.activeSubControls & SC_ScrollBarSlider;
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(hovered ? kHandleHovered : kHandle);
        painter.drawRoundedRect(scrollBarPart(bar, SC_ScrollBarSlider), kHandleRadius, kHandleRadius);
        painter.restore();
    }

    static QString plainText(QString text) {
        return text.remove(u'&');
    }

    // Edges are rounded, not widths: title by title that would add up.
    static int menuTitleWidth(const QStyleOptionMenuItem& item, const QWidget* bar) {
        const auto exact = [](const QString& text) {
            return textWidth(uiFont(kMenuText), plainText(text)) + 2 * kMenuSide;
        };
        double left = 0;
        for (const QAction* action : bar ? bar->actions() : QList<QAction*>()) {
            if (action->text() == item.text) break;
            left += exact(action->text());
        }
        return qRound(left + exact(item.text)) - qRound(left);
    }

    static void drawMenuTitle(QPainter& painter, const QStyleOptionMenuItem& item) {
        painter.save();
        painter.fillRect(item.rect, tokens::kBar);
        const bool open = item.state & State_Sunken, hovered = item.state & State_Selected;
        if (open || hovered) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(open ? QColor(63, 210, 226, 51) : tokens::kChipHover);
            painter.drawRoundedRect(QRectF(item.rect).adjusted(0, 2, 0, -2), tokens::kChipRadius, tokens::kChipRadius);
        }
        painter.setFont(uiFont(kMenuText));
        painter.setPen(open ? tokens::kWhite : tokens::kMenuText);
        drawLine(painter, item.rect, Qt::AlignHCenter, plainText(item.text));
        painter.restore();
    }
};

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, tokens::kPanel);
    palette.setColor(QPalette::WindowText, tokens::kText);
    palette.setColor(QPalette::Base, tokens::kBar);
    palette.setColor(QPalette::AlternateBase, tokens::kPanel);
    palette.setColor(QPalette::Text, tokens::kText);
    palette.setColor(QPalette::PlaceholderText, tokens::kText3);
    palette.setColor(QPalette::Button, tokens::kPanelHigh);
    palette.setColor(QPalette::ButtonText, tokens::kText);
    palette.setColor(QPalette::BrightText, tokens::kWhite);
    palette.setColor(QPalette::ToolTipBase, Qt::black);
    palette.setColor(QPalette::ToolTipText, tokens::kText);
    palette.setColor(QPalette::Highlight, tokens::kAquaLow);
    palette.setColor(QPalette::HighlightedText, tokens::kAquaInk);
    palette.setColor(QPalette::Link, tokens::kAqua);
    palette.setColor(QPalette::Light, QColor(0x3C, 0x41, 0x47));
    palette.setColor(QPalette::Midlight, QColor(0x33, 0x36, 0x3A));
    palette.setColor(QPalette::Mid, QColor(0x22, 0x24, 0x26));
    palette.setColor(QPalette::Dark, QColor(0x10, 0x11, 0x12));
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x6B, 0x72, 0x7A));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(0x3C, 0x41, 0x47));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, tokens::kText);
    return palette;
}

}  // namespace

std::unique_ptr<QStyle> makeStyle() {
    return std::make_unique<QuietStyle>();
}

void applyStyle() {
    makeControlsAccessible();
    QApplication::setStyle(makeStyle().release());
    QApplication::setPalette(darkPalette());
    QApplication::setFont(uiFont(13));
    for (const char* widget : {"QMenuBar", "QMenu"}) QApplication::setFont(uiFont(13), widget);
    QToolTip::setPalette(darkPalette());
}

void applyWindowIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(QPixmap::fromImage(namedImage(QStringLiteral("app_quillmere_%1.png").arg(size))));
    QApplication::setWindowIcon(icon);
}

}  // namespace qm
