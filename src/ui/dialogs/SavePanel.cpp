#include "ui/dialogs/SavePanel.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QPushButton>

namespace qm {

namespace {

std::optional<QString> run(SavePanel& panel) {
    if (panel.exec() != QDialog::Accepted || panel.chosenFiles().isEmpty()) return std::nullopt;
    return panel.chosenFiles().first();
}

}  // namespace

SavePanel::SavePanel(QWidget* parent, const QString& folder, const QString& name)
    : FilePanel(parent, tr("Save"), QDir(folder).exists() ? folder : QDir::homePath(), AcceptSave) {
    setFileMode(AnyFile);
    selectFile(name);
}

void SavePanel::accept() {
    setOption(DontConfirmOverwrite, chosenFiles().value(0) == m_ownFile);
    FilePanel::accept();
}

bool SavePanel::mayReplace(const QString& path) {
    return path == m_ownFile || FilePanel::mayReplace(path);
}

std::optional<QString> runSavePanel(QWidget* parent, const QString& folder, const QString& name) {
    SavePanel panel(parent, folder, name);
    return run(panel);
}

std::optional<QString> runKeepPanel(QWidget* parent, const QString& folder, const QString& name, const QString& ownFile,
                                    AtDiscard atDiscard) {
    const bool deletes = atDiscard == AtDiscard::DeletesIt;
    SavePanel panel(parent, folder, name);
    panel.setOwnFile(ownFile);
    panel.setWindowTitle(SavePanel::tr("Keep the recording?"));
    panel.setLabelText(QFileDialog::Accept, SavePanel::tr("Keep"));
    panel.setLabelText(QFileDialog::Reject, deletes ? SavePanel::tr("Discard") : SavePanel::tr("Not Now"));
    panel.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->setProperty("destroys", deletes);
    return run(panel);
}

}  // namespace qm
