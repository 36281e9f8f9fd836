// Actions by their names, as a person or another program calls them.
#pragma once

#include <doctest/doctest.h>

#include "ui/ActionId.h"

namespace qm {

inline ActionId idOf(const QString& name) {
    const auto id = actionNamed(name);
    REQUIRE_MESSAGE(id.has_value(), name.toStdString());
    return *id;
}

inline ActionId idOf(const char* name) {
    return idOf(QString::fromLatin1(name));
}

}  // namespace qm
