#include "ui/windows/VideoPanel.h"

#include "ui/controls/MovieView.h"

namespace qm {

namespace {

constexpr QSize kSize{560, 315}, kMinimumSize{240, 135};

}  // namespace

VideoPanel::VideoPanel(Outlets& outlets, QWidget* mainWindow)
    : ToolPanel(tr("Video"), mainWindow), m_view(new MovieView(this)) {
    setObjectName(QStringLiteral("videoPanel"));
    setMinimumSize(kMinimumSize);
    resize(kSize);
    m_view->setObjectName(QStringLiteral("movieView"));
    m_view->setAccessibleName(tr("Video"));
    outlets.videoPanel = this;
    outlets.movieView = m_view;
}

void VideoPanel::resizeEvent(QResizeEvent*) {
    m_view->setGeometry(rect());
}

}  // namespace qm
