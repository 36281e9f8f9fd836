#include "ui/DialogStyle.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QIconEngine>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionButton>
#include <algorithm>

#include "ui/controls/FocusRing.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/PushFace.h"
#include "ui/controls/Tokens.h"

namespace qm {

namespace {

constexpr QMargins kAlertMargins(20, 20, 20, 16);
constexpr int kAlertGap = 2;  // of the columns, between which the toolkit adds some more
const QColor kDisabledIcon(0x6B, 0x72, 0x7A);

// A line icon of the program at whatever size and sharpness is wanted.
class LineIcon : public QIconEngine {
public:
    LineIcon(const QString& name, const QColor& color) : m_name(name), m_color(color) {}

    QIconEngine* clone() const override { return new LineIcon(*this); }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return lineIcon(m_name, std::min(size.width(), size.height()),
                        mode == QIcon::Disabled ? kDisabledIcon : m_color, 1);
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double scale = painter->device()->devicePixelRatioF();
        QPixmap drawn = pixmap(rect.size() * scale, mode, state);
        drawn.setDevicePixelRatio(scale);
        painter->drawPixmap(rect.topLeft(), drawn);
    }

private:
    QString m_name;
    QColor m_color;
};

QIcon makeIcon(const char* name, const QColor& color = tokens::kIcon) {
    return QIcon(new LineIcon(QString::fromLatin1(name), color));
}

void dressAlert(QMessageBox& alert) {
    auto* grid = qobject_cast<QGridLayout*>(alert.layout());
    if (!grid) return;
    grid->setContentsMargins(kAlertMargins);
    grid->setHorizontalSpacing(kAlertGap);
    grid->setRowStretch(grid->rowCount() - 1, 1);  // that of the buttons, which stand at its bottom
    if (auto* buttons = alert.findChild<QDialogButtonBox*>()) grid->setAlignment(buttons, Qt::AlignBottom);
}

// What destroys is edged red: it says so itself, or is the answer that a file may be replaced.
PushFace::Kind kindOf(const QWidget* button) {
    const auto* box = button ? qobject_cast<const QDialogButtonBox*>(button->parentWidget()) : nullptr;
    if (!box) return PushFace::Kind::Plain;
    const auto role = box->buttonRole(qobject_cast<QAbstractButton*>(const_cast<QWidget*>(button)));
    if (button->property("destroys").toBool() || role == QDialogButtonBox::YesRole) return PushFace::Kind::Destroying;
    const bool accepts = role == QDialogButtonBox::AcceptRole && qobject_cast<const QFileDialog*>(box->parentWidget());
    return accepts ? PushFace::Kind::Primary : PushFace::Kind::Plain;
}

QString plainText(const QStyleOptionButton& option) {
    return QString(option.text).remove(u'&');
}

}  // namespace

QString dialogSheet() {
    return QStringLiteral(R"(
QMessageBox { background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 #141516, stop: 1 #2B2C2E); }
QMessageBox QLabel { color: #F3F5F7; }
QMessageBox QLabel#qt_msgbox_label { font-size: 15px; font-weight: 600; min-width: 320px; min-height: 40px;
  padding-left: 1px; }
QMessageBox QLabel#qt_msgbox_informativelabel { color: #B9C0C8; font-size: 13px; min-width: 320px; padding-left: 1px; }
)");
}

void dressDialog(QDialog& dialog) {
    if (auto* alert = qobject_cast<QMessageBox*>(&dialog)) dressAlert(*alert);
    new FocusRing(&dialog);
}

QIcon dialogIcon(QStyle::StandardPixmap icon) {
    switch (icon) {
        case QStyle::SP_MessageBoxWarning:
            return makeIcon("qm_warning.png", tokens::kText);
        case QStyle::SP_ArrowBack:
        case QStyle::SP_ArrowLeft:
        case QStyle::SP_FileDialogBack:
            return makeIcon("qm_back.png");
        case QStyle::SP_ArrowForward:
        case QStyle::SP_ArrowRight:
            return makeIcon("qm_forward.png");
        case QStyle::SP_FileDialogToParent:
            return makeIcon("qm_parent.png");
        case QStyle::SP_FileDialogNewFolder:
            return makeIcon("qm_open.png");
        case QStyle::SP_FileDialogListView:
            return makeIcon("qm_tiles.png");
        case QStyle::SP_FileDialogDetailedView:
            return makeIcon("qm_lines.png");
        default:
            return {};
    }
}

QSize dialogButtonSize(const QStyleOptionButton& option, const QWidget* button) {
    return pushFaceSize(kindOf(button), plainText(option));
}

void paintDialogButton(QPainter& painter, const QStyleOptionButton& option, const QWidget* button) {
    const auto is = [&](QStyle::StateFlag flag) { return option.state.testFlag(flag); };
    const PushFace face{kindOf(button), is(QStyle::State_MouseOver), is(QStyle::State_Sunken),
                        !is(QStyle::State_Enabled)};
    painter.save();
    paintPushFace(painter, option.rect, face, plainText(option));
    painter.restore();
}

}  // namespace qm
