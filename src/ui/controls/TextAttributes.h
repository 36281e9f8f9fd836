// Font and colour of an attributed title.
#pragma once

#include <QColor>
#include <QFont>

namespace qm {

struct TextAttributes {
    QFont font;
    QColor color;

    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

}  // namespace qm
