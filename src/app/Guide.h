// The guide, which lies beside the program as web pages: shown by whatever the desktop shows such pages with. The user
// is told where nothing does. Nobody waits for the viewer. Main thread only.
#pragma once

#include <QObject>
#include <QString>

namespace qm {

class Notices;

class Guide : public QObject {
    Q_OBJECT

public:
    // `opener` is the desktop's command that opens a file with the program for it.
    explicit Guide(Notices& notices, QString page = installedPage(), QString opener = QStringLiteral("xdg-open"));

    void open();

    static QString installedPage();  // the first page of this program's guide

private:
    void openByToolkit();
    void tellThatNothingShowsIt();

    Notices& m_notices;
    QString m_page;
    QString m_opener;
};

}  // namespace qm
