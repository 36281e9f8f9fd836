#include "ui/controls/TypeAhead.h"

#include <algorithm>

#include "ui/controls/FoldedText.h"

namespace qm {

namespace {

constexpr int kPauseMs = 1200;  // after which a letter begins a new word

}  // namespace

bool TypeAhead::isTyping() const {
    return !m_typed.isEmpty() && m_sinceLetter.isValid() && m_sinceLetter.elapsed() < kPauseMs;
}

void TypeAhead::type(const QString& letters) {
    if (!isTyping()) m_typed.clear();
    m_typed += letters;
    m_sinceLetter.start();
}

void TypeAhead::takeBack() {
    if (!isTyping()) return;
    m_typed.chop(1);
    m_sinceLetter.start();
}

int TypeAhead::find(int rows, int selected, const TitleOf& title) const {
    QString wanted = folded(m_typed);
    if (wanted.isEmpty() || rows <= 0) return -1;
    const bool again = wanted.size() > 1 && wanted.count(wanted[0]) == wanted.size();
    if (again) wanted.truncate(1);
    const bool moves = again || m_typed.size() == 1;
    const int first = selected < 0 ? 0 : selected + (moves ? 1 : 0);
    QString text;
    for (int step = 0; step < rows; ++step) {
        const int row = (first + step) % rows;
        foldInto(text, title(row));
        if (QStringView(text).trimmed().startsWith(wanted)) return row;
    }
    return -1;
}

}  // namespace qm
