#include "player/TransportImages.h"

#include "player/OutletSetters.h"

namespace qm {

namespace {

void showImages(const Outlets& outlets, const char* forward, const char* pause, const char* backward) {
    showImage(outlets.playForwardButton, QString::fromLatin1(forward));
    showImage(outlets.pauseButton, QString::fromLatin1(pause));
    showImage(outlets.playBackwardButton, QString::fromLatin1(backward));
}

}  // namespace

void showForwardImages(const Outlets& outlets) {
    showImages(outlets, "db_Play_F_on.png", "db_Pause_off.png", "db_Play_R_off.png");
}

void showBackwardImages(const Outlets& outlets) {
    showImages(outlets, "db_Play_F_off.png", "db_Pause_off.png", "db_Play_R_on.png");
}

void showPauseImages(const Outlets& outlets) {
    showImages(outlets, "db_Play_F_off.png", "db_Pause_on.png", "db_Play_R_off.png");
}

void showImagesForRate(const Outlets& outlets, float rate) {
    if (rate < 0) {
        showBackwardImages(outlets);
    } else {
        showForwardImages(outlets);
    }
}

}  // namespace qm
