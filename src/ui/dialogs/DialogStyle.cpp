#include "ui/dialogs/DialogStyle.h"
#include "app/state/FilePath.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QGridLayout>
#include <QHeaderView>
#include <QIconEngine>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStyleOptionButton>
#include <QToolButton>
#include <QTreeView>
#include <algorithm>

#include "app/state/PlayListCells.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/NamedImage.h"
#include "ui/controls/PushFace.h"
#include "ui/controls/Tokens.h"
#include "ui/dialogs/FileAcceptance.h"

namespace qm {

namespace {

constexpr QMargins kAlertMargins(20, 20, 20, 16);
constexpr int kAlertGap = 2;  // of the columns, between which the toolkit adds some more
constexpr QMargins kPanelMargins(16, 16, 16, 16);
constexpr int kPanelGap = 8;
constexpr QSize kPanelSize(940, 560), kPanelIcon(18, 18);
constexpr QSize kPanelFrame(16, 48);  // more than most desktops draw round a window
constexpr int kTypeColumn = 2;
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

// Files as in the play list, folders as on the button that opens them.
class PanelIcons : public QFileIconProvider {
public:
    QIcon icon(IconType type) const override {
        switch (type) {
            case Computer:
            case Drive:
            case Network:
                return makeIcon("qm_computer.png");
            case File:
                return makeIcon("qm_file.png");
            default:
                return makeIcon("qm_folder.png");
        }
    }

    QIcon icon(const QFileInfo& file) const override {
        if (file.isRoot()) return icon(Drive);
        if (file.isDir()) return icon(Folder);
        if (!openPanelTypes().contains(pathExtension(file.fileName()))) return icon(File);
        switch (iconForTrack(file.fileName())) {
            case TrackIcon::Video:
                return makeIcon("type_VIDEO", tokens::kText2);
            case TrackIcon::M4a:
                return makeIcon("type_aiff.png", tokens::kText2);
            default:
                return makeIcon("type_AAC.png", tokens::kText2);
        }
    }
};

void dressAlert(QMessageBox& alert) {
    auto* grid = qobject_cast<QGridLayout*>(alert.layout());
    if (!grid) return;
    grid->setContentsMargins(kAlertMargins);
    grid->setHorizontalSpacing(kAlertGap);
    grid->setRowStretch(grid->rowCount() - 1, 1);  // that of the buttons, which stand at its bottom
    if (auto* buttons = alert.findChild<QDialogButtonBox*>()) grid->setAlignment(buttons, Qt::AlignBottom);
}

// The names take what the other columns leave. What kind a file is its icon and its name say.
void layOutColumns(QHeaderView& header) {
    header.setStretchLastSection(false);
    header.setSectionHidden(kTypeColumn, true);
    for (int column = 0; column < header.count(); ++column)
        header.setSectionResizeMode(column, column == 0 ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
}

void dressPanel(QFileDialog& panel) {
    static PanelIcons icons;
    panel.setIconProvider(&icons);
    for (auto* tool : panel.findChildren<QToolButton*>()) tool->setIconSize(kPanelIcon);
    for (auto* list : panel.findChildren<QAbstractItemView*>()) list->setIconSize(kPanelIcon);
    for (auto* splitter : panel.findChildren<QSplitter*>()) splitter->setHandleWidth(kPanelGap);
    if (auto* tree = panel.findChild<QTreeView*>()) layOutColumns(*tree->header());
    auto* grid = qobject_cast<QGridLayout*>(panel.layout());
    if (!grid) return;
    grid->setContentsMargins(kPanelMargins);
    grid->setSpacing(kPanelGap);
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
QMessageBox, QFileDialog { background: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1, stop: 0 #141516, stop: 1 #2B2C2E); }
QMessageBox QLabel { color: #F3F5F7; }
QMessageBox QLabel#qt_msgbox_label { font-size: 15px; font-weight: 600; min-width: 320px; min-height: 40px;
  padding-left: 1px; }
QMessageBox QLabel#qt_msgbox_informativelabel { color: #B9C0C8; font-size: 13px; min-width: 320px; padding-left: 1px; }
QFileDialog QLabel { color: #B9C0C8; }
QFileDialog QLineEdit, QFileDialog QComboBox { background: rgba(0, 0, 0, 97); color: #F3F5F7;
  border: 1px solid rgba(255, 255, 255, 41); border-radius: 6px; padding: 5px 8px; min-height: 20px;
  selection-background-color: #24B3C5; selection-color: #04262B; }
QFileDialog QLineEdit:focus, QFileDialog QComboBox:focus { border: 2px solid #BDF6FC; padding: 4px 7px; }
QFileDialog QComboBox::drop-down { border: none; width: 24px; }
QFileDialog QComboBox::down-arrow { image: url(:/images/qm_down.png); width: 14px; height: 14px; }
QFileDialog QComboBox QAbstractItemView { background: #1B1C1E; border: 1px solid #3C3E41; padding: 4px; }
QFileDialog QToolButton { background: transparent; border: none; border-radius: 6px; padding: 6px; }
QFileDialog QToolButton:hover { background: rgba(255, 255, 255, 38); }
QFileDialog QToolButton:pressed { background: rgba(63, 210, 226, 51); }
QFileDialog QToolButton:focus { border: 2px solid #BDF6FC; padding: 4px; }
QFileDialog QSplitter::handle { background: transparent; image: none; }
QFileDialog QAbstractItemView { background: rgba(0, 0, 0, 117); border: 1px solid rgba(255, 255, 255, 23);
  border-radius: 10px; padding: 3px; color: #E2E6EA; outline: none; }
QFileDialog QAbstractItemView:focus { border-color: #BDF6FC; }
QFileDialog QAbstractItemView::item { min-height: 25px; border: none; border-radius: 0; }
QFileDialog QAbstractItemView::item:hover { background: rgba(255, 255, 255, 15); }
QFileDialog QAbstractItemView::item:selected { background: rgba(63, 210, 226, 51); color: #FFFFFF; }
QFileDialog QTreeView::branch { background: transparent; image: none; }
QFileDialog QHeaderView { background: transparent; border: none; padding: 0; border-radius: 0; }
QFileDialog QHeaderView::section { background: transparent; color: #B9C0C8; border: none;
  border-bottom: 1px solid rgba(255, 255, 255, 23); padding: 4px 6px; }
QFileDialog QHeaderView::down-arrow { image: url(:/images/qm_down.png); width: 12px; height: 12px; }
QFileDialog QHeaderView::up-arrow { image: url(:/images/qm_up.png); width: 12px; height: 12px; }
QFileDialog QSizeGrip { image: none; }
)");
}

QString offeredNamesSheet() {
    return QStringLiteral("QAbstractItemView { background: #1B1C1E; border: 1px solid #3C3E41; padding: 4px; }");
}

void sizeFilePanel(QFileDialog& panel) {
    panel.ensurePolished();
    panel.resize(kPanelSize.boundedTo(panel.screen()->availableSize() - kPanelFrame));
}

void dressDialog(QDialog& dialog) {
    if (auto* alert = qobject_cast<QMessageBox*>(&dialog)) dressAlert(*alert);
    if (auto* panel = qobject_cast<QFileDialog*>(&dialog)) dressPanel(*panel);
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
