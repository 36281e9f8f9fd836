// The pictures that are ready to be painted, and when which of them is due. A value. Times are seconds of the film.
#pragma once

#include <memory>
#include <vector>

#include "engine/api/VideoPicture.h"
#include "engine/video/VideoMoment.h"

namespace qm {

struct ReadyPicture {
    double begin = 0;
    double end = 0;                               // the same as the begin where it is not known yet
    std::int64_t madeOf = 0;                      // pixels of the decoded picture
    std::shared_ptr<const VideoPicture> picture;  // null if it cannot be painted
};

struct PictureSchedule {
    std::vector<ReadyPicture> pictures;  // in the order of play

    // The one to be shown now; null if it is not there. Forward, one that came too late is better than none.
    const ReadyPicture* at(const VideoMoment& moment) const;

    // Seconds of real time until another picture is due; endless while standing still, and without a picture.
    double secondsToChange(const VideoMoment& moment) const;
};

}  // namespace qm
