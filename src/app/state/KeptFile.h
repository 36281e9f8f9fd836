// Further names for a file that must not be lost. Any thread. What cannot be done answers false or an empty name.
#pragma once

#include <QString>

namespace qm {

// Keeps a copy of the file beside it as "Name (word).xml", or "Name (word 2).xml" and so on where that is taken by
// another content. What is no file, but a folder or a pipe, is moved there. Answers the whole path of what is kept.
QString keepAside(const QString& path, const QString& word);

// The file itself is found under `name` too, for the time when another takes its place; what was there before is there
// until that moment. Where the file system has no second names it is a copy.
bool keepAs(const QString& path, const QString& name);

}  // namespace qm
