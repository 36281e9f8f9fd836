// The end of writing a file that takes another one's place. Any thread.
#pragma once

#include <QSaveFile>

namespace qm {

// False if not everything could be written; the former file stays then. QSaveFile::commit() alone does not notice that
// its last 16 KB found no room, and puts the shorter file in the former one's place.
inline bool commitWhole(QSaveFile& file) {
    return file.flush() && file.commit();
}

}  // namespace qm
