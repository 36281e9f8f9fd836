// The outlets of the update panel: pointers to its controls, each named after its control's object name. Null until the
// panel has been made.
#pragma once

class QAbstractButton;
class QLabel;
class QWidget;

namespace qm {

class FadingWindow;
class ProgressIndicator;

struct UpdateOutlets {
    FadingWindow* mainWindow = nullptr;
    QWidget* softwareUpdatePanel = nullptr;
    QLabel* updateMsg = nullptr;
    ProgressIndicator* updateProgress = nullptr;
    QAbstractButton* softwareUpdateDownloadButton = nullptr;
    QAbstractButton* softwareUpdateVisitHalvixButton = nullptr;
    QAbstractButton* closeButton = nullptr;
};

}  // namespace qm
