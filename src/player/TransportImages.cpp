#include "player/TransportImages.h"

#include "player/OutletSetters.h"

namespace qm {

namespace {

enum class Lit { Forward, Pause, Backward };

void light(const TransportButtons& buttons, Lit lit) {
    const auto show = [](ImageButton* button, const char* onImage, const char* offImage, bool on) {
        showState(button, QString::fromLatin1(on ? onImage : offImage), on);
    };
    show(buttons.playForwardButton, "db_Play_F_on.png", "db_Play_F_off.png", lit == Lit::Forward);
    show(buttons.pauseButton, "db_Pause_on.png", "db_Pause_off.png", lit == Lit::Pause);
    show(buttons.playBackwardButton, "db_Play_R_on.png", "db_Play_R_off.png", lit == Lit::Backward);
}

}  // namespace

void showForwardImages(const TransportButtons& buttons) {
    light(buttons, Lit::Forward);
}

void showBackwardImages(const TransportButtons& buttons) {
    light(buttons, Lit::Backward);
}

void showPauseImages(const TransportButtons& buttons) {
    light(buttons, Lit::Pause);
}

void showImagesForRate(const TransportButtons& buttons, float rate) {
    light(buttons, rate < 0 ? Lit::Backward : Lit::Forward);
}

}  // namespace qm
