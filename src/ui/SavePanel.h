// The panel that asks where to keep a file. Modal; main thread only.
#pragma once

#include <QFileDialog>
#include <optional>

namespace qm {

class SavePanel : public QFileDialog {
    Q_OBJECT

public:
    // Opens in the folder, or in the home folder if that does not exist, with the name filled in.
    SavePanel(QWidget* parent, const QString& folder, const QString& name);

    // A file that is about to be replaced anyway: choosing its name asks nothing.
    void setOwnFile(const QString& path) { m_ownFile = path; }

    void accept() override;

private:
    QString m_ownFile;
};

// The chosen path as it was typed, or none if the panel was cancelled. A name that is taken has to be confirmed, unless
// it is that of `ownFile`.
std::optional<QString> runSavePanel(QWidget* parent, const QString& folder, const QString& name,
                                    const QString& ownFile = {});

}  // namespace qm
