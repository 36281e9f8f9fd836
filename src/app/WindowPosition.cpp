#include "app/WindowPosition.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QStringDecoder>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <array>

#include "app/state/SupportFolder.h"
#include "engine/api/Log.h"
#include "ui/controls/FlippedRect.h"
#include "ui/controls/Wayland.h"

namespace qm {

namespace {

constexpr int kFarthest = 1'000'000;  // pixels; beyond it a number is damage, not a place
constexpr qint64 kLongestFile = 4096;

qint64 area(const QRect& rect) {
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

QRect fittedInto(QRect frame, const QRect& screen) {
    frame.setSize(frame.size().boundedTo(screen.size()));
    frame.moveLeft(std::clamp(frame.x(), screen.x(), screen.x() + screen.width() - frame.width()));
    frame.moveTop(std::clamp(frame.y(), screen.y(), screen.y() + screen.height() - frame.height()));
    return frame;
}

std::optional<QString> readText(const QString& path) {
    if (!QFileInfo(path).isFile()) return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(file.read(kLongestFile));
    if (decoder.hasError()) return std::nullopt;
    return text;
}

bool isNormal(const QWidget& window) {
    return !window.isMaximized() && !window.isFullScreen() && !window.isMinimized();
}

// How far the desktop's frame reaches beyond the window at its left and top, as it was when the window was neither
// maximised nor minimised, which changes the frame; and the place that was restored, where the desktop tells none.
class FrameWatch : public QObject {
public:
    explicit FrameWatch(QWidget& window) : QObject(&window), m_window(window) {
        m_settled.setSingleShot(true);
        m_settled.setInterval(kSettleMs);
        connect(&m_settled, &QTimer::timeout, this, &FrameWatch::look);
        window.installEventFilter(this);
    }

    QPoint reach() const { return m_reach.value_or(reachNow()); }

    void setRestored(QPoint place) { m_restored = place; }
    std::optional<QPoint> restored() const { return m_restored; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        const auto type = event->type();
        if (type == QEvent::Show || type == QEvent::Move || type == QEvent::Resize || type == QEvent::WindowStateChange)
            m_settled.start();
        return false;
    }

private:
    // The desktop tells place and state one after the other, so neither is believed at once.
    static constexpr int kSettleMs = 200;

    QPoint reachNow() const { return m_window.geometry().topLeft() - m_window.pos(); }

    void look() {
        if (m_window.isVisible() && isNormal(m_window)) m_reach = reachNow();
    }

    QWidget& m_window;
    QTimer m_settled;
    std::optional<QPoint> m_reach;
    std::optional<QPoint> m_restored;
};

FrameWatch* watchOf(const QWidget& window) {
    for (QObject* child : window.children())
        if (auto* watch = dynamic_cast<FrameWatch*>(child)) return watch;
    return nullptr;
}

// The place of its frame and its inner size while it is neither maximised nor minimised, also when it is now. Wayland
// tells no place: there it is the one that was restored, so that it is there again on another desktop.
QRect placeOf(const QWidget& window) {
    const FrameWatch* watch = watchOf(window);
    if (isOnWayland() && watch && watch->restored())
        return {*watch->restored(), isNormal(window) ? window.size() : window.normalGeometry().size()};
    if (isNormal(window)) return {window.pos(), window.size()};
    return window.normalGeometry().translated(watch ? -watch->reach() : QPoint());
}

QList<QRect> availableScreens() {
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens()) screens.append(screen->availableGeometry());
    return screens;
}

}  // namespace

QString windowPositionPath() {
    const QString home = homeFolder();
    return home.isEmpty() ? QString() : home + u'/' + kSupportFolder + QStringLiteral("/windowposition");
}

QString savedFrameString(const QRect& window, const QRect& screen, const QRect& primary) {
    QString text;
    for (const QRect& rect : {flippedRect(window, primary), flippedRect(screen, primary)}) {
        text += QStringLiteral("%1 %2 %3 %4 ").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
    }
    return text;
}

std::optional<QRect> frameFromSavedString(const QString& text, QSize minimum, const QRect& primary,
                                          const QList<QRect>& screens) {
    const QStringList words = text.simplified().split(u' ');
    if (words.size() < 4 || screens.isEmpty()) return std::nullopt;
    std::array<int, 4> numbers;
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        numbers[i] = words[i].toInt(&ok);
        if (!ok || numbers[i] < -kFarthest || numbers[i] > kFarthest) return std::nullopt;
    }
    const QRect saved(numbers[0], numbers[1], numbers[2], numbers[3]);
    if (saved.isEmpty() || saved.width() < minimum.width() || saved.height() < minimum.height()) return std::nullopt;
    const QRect frame = flippedRect(saved, primary);
    const auto best = std::max_element(screens.begin(), screens.end(), [&frame](const QRect& a, const QRect& b) {
        return area(a.intersected(frame)) < area(b.intersected(frame));
    });
    return fittedInto(frame, *best);
}

void saveWindowPosition(const QWidget& window) {
    const QString path = windowPositionPath();
    if (path.isEmpty()) return;
    const QRect frame = placeOf(window);
    const QByteArray text =
        savedFrameString(frame, window.screen()->geometry(), QGuiApplication::primaryScreen()->geometry()).toUtf8();
    // Written in place: the file keeps its identity, links to it stay good.
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size() || !file.flush()) {
        qmLog("cleanupWhenClosing: cannot write " + QFile::encodeName(path).toStdString());
    }
}

void restoreWindowPosition(QWidget& window) {
    if (!watchOf(window)) new FrameWatch(window);
    const auto text = readText(windowPositionPath());
    if (!text) return;
    const auto frame = frameFromSavedString(*text, window.minimumSize().expandedTo(window.minimumSizeHint()),
                                            QGuiApplication::primaryScreen()->geometry(), availableScreens());
    if (!frame) return;
    watchOf(window)->setRestored(frame->topLeft());
    window.resize(frame->size());
    window.move(frame->topLeft());
}

}  // namespace qm
