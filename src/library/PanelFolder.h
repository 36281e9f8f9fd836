// The folder that the open panel shows first: where files were last chosen, also in an earlier run. It is kept in a
// file of its own below the home folder. Main thread only; a file that cannot be read or written is no folder, and a
// log line.
#pragma once

#include <QString>

namespace qm {

// "<home>/Library/Application Support/Quillmere/openfolder", empty without a home folder.
QString panelFolderPath();

class PanelFolder {
public:
    QString last();  // empty if files were never chosen; whether it is there is not looked at
    void remember(const QString& folder);

private:
    QString m_folder;
    bool m_isRead = false;
};

}  // namespace qm
