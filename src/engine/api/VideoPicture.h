// One picture of a film, ready to be painted: upright, opaque, four bytes a pixel. Never changes once it is handed out,
// so any thread may hold one for as long as it likes.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace qm {

struct VideoPicture {
    int width = 0;  // pixels
    int height = 0;
    double aspect = 1;   // width over height as it is to be shown; the pixels themselves need not be square
    double seconds = 0;  // of the movie, from which on the picture is shown
    std::vector<std::uint32_t> pixels;  // 0xffRRGGBB, row after row
};

// Somebody who watches the pictures of a movie.
struct PictureViewer {
    int width = 0;  // pixels of the place where they are shown; larger pictures come made to fit into it
    int height = 0;

    // Another picture is due now. Called on a thread of the engine: it must not wait, and not call the movie.
    std::function<void()> changed;
};

}  // namespace qm
