// The panels that ask where to keep a file. They make folders and nothing else. Modal; main thread only.
#pragma once

#include <optional>

#include "ui/dialogs/FilePanel.h"

namespace qm {

class SavePanel : public FilePanel {
    Q_OBJECT

public:
    // Opens in the folder, or in the home folder if that does not exist, with the name filled in.
    SavePanel(QWidget* parent, const QString& folder, const QString& name);

    // A file that is about to be replaced anyway: choosing its name asks nothing.
    void setOwnFile(const QString& path) { m_ownFile = path; }

    void accept() override;

protected:
    bool mayReplace(const QString& path) override;

private:
    QString m_ownFile;
};

// The chosen path as it was typed, or none if the panel was cancelled. A name that is taken has to be confirmed.
std::optional<QString> runSavePanel(QWidget* parent, const QString& folder, const QString& name);

enum class AtDiscard { DeletesIt, KeepsIt };  // what becomes of a recording that is given no name

// The same for a recording, of which the user is asked whether to keep it. The name of `ownFile` need not be confirmed.
std::optional<QString> runKeepPanel(QWidget* parent, const QString& folder, const QString& name,
                                    const QString& ownFile = {}, AtDiscard atDiscard = AtDiscard::DeletesIt);

}  // namespace qm
