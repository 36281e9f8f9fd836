// What the program's file panels have in common beyond the toolkit's: a name is what stands in the field, also one with
// quotation marks, of which the toolkit takes only what is between them; and nothing on disk is removed, renamed or
// moved from a panel. Modal; main thread only.
#pragma once

#include <QFileDialog>
#include <QModelIndex>
#include <QStringList>

class QAbstractButton;
class QLineEdit;

namespace qm {

class FilePanel : public QFileDialog {
    Q_OBJECT

public:
    FilePanel(QWidget* parent, const QString& title, const QString& folder, AcceptMode mode);

    // What was chosen, once the panel has been accepted; until then what would be.
    QStringList chosenFiles() const;

    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

    virtual bool mayReplace(const QString& path);  // a file that is there; asks

private:
    void leaveFilesAlone();
    QList<QModelIndex> selectedEntries() const;
    bool hasQuotes() const;
    QStringList quotedNames() const;
    QString pathOf(const QString& name) const;
    bool goInto(const QString& path);
    void acceptQuoted();

    QLineEdit* m_field;
    QAbstractButton* m_button;  // Open or Save
};

}  // namespace qm
