#include "app/Guide.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <utility>

#include "app/state/Notices.h"

namespace qm {

QString Guide::installedPage() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../" QUILLMERE_GUIDE_FOLDER "/index.html"));
}

Guide::Guide(Notices& notices, QString page, QString opener)
    : m_notices(notices), m_page(std::move(page)), m_opener(std::move(opener)) {}

// The desktop's own command first, because it answers: the toolkit takes it for done when that command has begun.
void Guide::open() {
    if (!QFileInfo::exists(m_page)) return m_notices.tell(tr("The guide is not installed"));
    m_notices.tell(tr("The guide opens in another window"));
    auto* opening = new QProcess(this);
    opening->setStandardInputFile(QProcess::nullDevice());
    opening->setStandardOutputFile(QProcess::nullDevice());
    opening->setStandardErrorFile(QProcess::nullDevice());
    connect(opening, &QProcess::errorOccurred, this, [this, opening](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) return;
        opening->deleteLater();
        openByToolkit();
    });
    connect(opening, &QProcess::finished, this, [this, opening](int status) {
        opening->deleteLater();
        if (status != 0) tellThatNothingShowsIt();
    });
    opening->start(m_opener, {QUrl::fromLocalFile(m_page).toString(QUrl::FullyEncoded)});
}

void Guide::openByToolkit() {
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(m_page))) tellThatNothingShowsIt();
}

void Guide::tellThatNothingShowsIt() {
    m_notices.tell(tr("Nothing here shows web pages; the guide is %1").arg(QDir::toNativeSeparators(m_page)));
}

}  // namespace qm
