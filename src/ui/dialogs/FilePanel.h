// What the program's file panels have in common beyond the toolkit's: a name is what stands in the field, also one with
// quotation marks, of which the toolkit takes only what is between them; and nothing on disk is removed, renamed or
// moved from a panel. The user's own folders stand at the side, a name that has no room is shown whole under the
// pointer, and the names that the field offers cover no button. Modal; main thread only.
#pragma once

#include <QFileDialog>
#include <QModelIndex>
#include <QStringList>
#include <QUrl>

class QAbstractButton;
class QHelpEvent;
class QLineEdit;

namespace qm {

class FilePanel : public QFileDialog {
    Q_OBJECT

public:
    FilePanel(QWidget* parent, const QString& title, const QString& folder, AcceptMode mode);
    ~FilePanel() override;

    // What was chosen, once the panel has been accepted; until then what would be.
    QStringList chosenFiles() const;

    void accept() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

    virtual bool mayReplace(const QString& path);  // a file that is there; asks

private:
    void leaveFilesAlone();
    void showUsersFolders();
    void placeNamesOverList();
    bool showWholeName(QWidget* viewport, const QHelpEvent& event);
    QList<QModelIndex> selectedEntries() const;
    bool hasQuotes() const;
    QStringList quotedNames() const;
    QString pathOf(const QString& name) const;
    bool goInto(const QString& path);
    void acceptQuoted();

    QLineEdit* m_field;
    QAbstractButton* m_button;   // Open or Save
    QWidget* m_names;            // that the field offers to complete what is typed
    QList<QUrl> m_addedFolders;  // at the side, for as long as the panel is open
};

}  // namespace qm
