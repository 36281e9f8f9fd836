#include "app/WindowPosition.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QStringDecoder>
#include <QWidget>
#include <algorithm>
#include <array>

#include "engine/api/Log.h"
#include "library/SupportFolder.h"
#include "ui/controls/FlippedRect.h"

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
    const bool special = window.isMaximized() || window.isFullScreen() || window.isMinimized();
    const QRect frame = special ? window.normalGeometry() : QRect(window.pos(), window.size());
    const QByteArray text =
        savedFrameString(frame, window.screen()->geometry(), QGuiApplication::primaryScreen()->geometry()).toUtf8();
    // Written in place: the file keeps its identity, links to it stay good.
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size() || !file.flush()) {
        qmLog("cleanupWhenClosing: cannot write " + QFile::encodeName(path).toStdString());
    }
}

void restoreWindowPosition(QWidget& window) {
    const auto text = readText(windowPositionPath());
    if (!text) return;
    const auto frame = frameFromSavedString(*text, window.minimumSize().expandedTo(window.minimumSizeHint()),
                                            QGuiApplication::primaryScreen()->geometry(), availableScreens());
    if (!frame) return;
    window.resize(frame->size());
    window.move(frame->topLeft());
}

}  // namespace qm
