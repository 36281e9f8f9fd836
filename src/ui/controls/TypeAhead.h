// Typed letters lead to the next title that begins with them. Letters that follow one another quickly are one word; the
// same letter again and again goes through the titles that begin with it. Main thread only.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <functional>

namespace qm {

class TypeAhead {
public:
    using TitleOf = std::function<QString(int row)>;

    void type(const QString& letters);
    void takeBack();  // removes the last letter
    void forget() { m_typed.clear(); }
    bool isTyping() const;
    QString typed() const { return m_typed; }

    // The row that what was typed leads to from the selected one (-1: none is), going round; -1: none begins so.
    int find(int rows, int selected, const TitleOf& title) const;

private:
    QString m_typed;
    QElapsedTimer m_sinceLetter;
};

}  // namespace qm
