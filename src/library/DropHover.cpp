#include "library/DropHover.h"

#include <chrono>

#include "engine/api/Aside.h"
#include "ui/controls/DropMarker.h"
#include "ui/controls/PlayListView.h"
#include "ui/dialogs/FileAcceptance.h"

namespace qm {

namespace {

constexpr int kLookMilliseconds = 20;

}  // namespace

DropHover::DropHover(PlayListView& view) : QObject(&view), m_view(view) {
    m_timer.setInterval(kLookMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &DropHover::look);
    connect(&view, &PlayListView::filesHover, this, &DropHover::begin);
    connect(&view, &PlayListView::hoverEnded, this, &DropHover::end);
}

void DropHover::begin(const QList<QUrl>& files) {
    m_paths = droppedFiles(files);
    if (m_paths.isEmpty()) return judge(addressRefusal(files.value(0)));
    m_answer = aside([path = m_paths.first()] { return dropRefusal(path); });
    m_timer.start();
}

void DropHover::end() {
    m_timer.stop();
    m_answer = {};
}

void DropHover::look() {
    if (m_answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return;
    m_timer.stop();
    judge(m_answer.get());
}

void DropHover::judge(const Refusal& refusal) {
    if (!refusal.text.isEmpty()) return m_view.dropMarker().judge(refusal.text, true);
    if (m_paths.size() > 1) m_view.dropMarker().judge(firstWillBeAddedWords(m_paths), false);
}

}  // namespace qm
