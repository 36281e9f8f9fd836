#include "ui/SavePanel.h"

#include <QDir>

#include "ui/DialogStyle.h"

namespace qm {

SavePanel::SavePanel(QWidget* parent, const QString& folder, const QString& name)
    : QFileDialog(parent, tr("Save"), QDir(folder).exists() ? folder : QDir::homePath()) {
    setOption(DontUseNativeDialog);
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    selectFile(name);
    sizeFilePanel(*this);
}

void SavePanel::accept() {
    setOption(DontConfirmOverwrite, selectedFiles().value(0) == m_ownFile);
    QFileDialog::accept();
}

std::optional<QString> runSavePanel(QWidget* parent, const QString& folder, const QString& name,
                                    const QString& ownFile) {
    SavePanel panel(parent, folder, name);
    panel.setOwnFile(ownFile);
    if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) return std::nullopt;
    return panel.selectedFiles().first();
}

}  // namespace qm
