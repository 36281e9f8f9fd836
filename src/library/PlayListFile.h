// The play list's file: read once at start-up, written when the main window closes and when the program quits, whole or
// not at all. Main thread only. Nothing is shown to the user: a file that is damaged or cannot be written leaves a log
// line. A damaged file gives the tracks before the damage and is kept beside the new one by the next save.
#pragma once

#include <QString>
#include <functional>

#include "library/PlayListArrays.h"
#include "ui/controls/Outlets.h"

namespace qm {

class PlayListFile {
public:
    // `home` answers the home folder, empty if there is none.
    PlayListFile(PlayListArrays& list, const Outlets& outlets, std::function<QString()> home = {});

    void loadPlayList();
    void savePlayList();

    QString path() const;  // of the file; empty without a home folder

private:
    bool readFile(const QString& path);
    QString keepDamagedFile(const QString& path) const;
    void writeFile(const QString& path);

    PlayListArrays& m_list;
    const Outlets& m_outlets;
    std::function<QString()> m_home;
    bool m_fileIsDamaged = false;  // the file on disk holds more than could be read from it
};

}  // namespace qm
