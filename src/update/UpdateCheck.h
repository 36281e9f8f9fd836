// What the update server says of the latest release, and the rule by which that release counts as newer. Pure
// functions, any thread.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>
#include <cstdint>

#include "engine/api/Result.h"

namespace qm {

// The dictionary of an update description. Strings, numbers and booleans are held as such, all other values as null.
using UpdateDescription = QHash<QString, QVariant>;

// Reads an XML property list whose root is a dictionary; anything else is an error.
Result<UpdateDescription> readUpdateDescription(const QByteArray& document);

struct VersionNumbers {
    std::int32_t major = 0;
    std::int32_t minor = 0;
    std::int32_t build = 0;
};

// The integer value: of a text the number it begins with, of a real its whole part; saturated; 0 for anything else.
std::int32_t versionNumber(const QVariant& value);

// Each number is compared with its own kind alone, so a higher minor number counts under a lower major one, too.
bool isNewerRelease(const VersionNumbers& latest, const VersionNumbers& current);

}  // namespace qm
