// The play list's file: read once at start-up, written when the main window closes and when the program quits, whole or
// not at all. The list that it held before is kept beside it. A damaged file gives the tracks before the damage and is
// kept, too. Main thread only. What goes wrong is told and logged, and asks nothing.
#pragma once

#include <QString>
#include <functional>

#include "library/PlayListArrays.h"
#include "player/Notices.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PlayListFile {
public:
    // `home` answers the home folder, empty if there is none.
    PlayListFile(PlayListArrays& list, const PlayListOutlet& outlets, Notices& notices,
                 std::function<QString()> home = {});

    void loadPlayList();
    bool savePlayList();  // false if the list is not in the file now

    QString path() const;                                              // of the file; empty without a home folder
    QString pathBeside(const QString& word) const;                     // of another list of ours; empty likewise
    const PlayListArrays& rowsInFile() const { return m_rowsInFile; }  // as they were last read or written

private:
    bool readFile(const QString& path);
    bool writeFile(const QString& path);
    void tellDamage() const;
    bool failed(const QString& why);

    PlayListArrays& m_list;
    const PlayListOutlet& m_outlets;
    Notices& m_notices;
    std::function<QString()> m_home;
    PlayListArrays m_rowsInFile;
    bool m_fileIsDamaged = false;  // the file on disk holds more than could be read from it
    QString m_keptFile;            // where that is kept
};

}  // namespace qm
