#include "engine/api/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace qm {

// The lowest free descriptor is the one that is opened.
void openStandardStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) >= 0) continue;
        if (::open("/dev/null", O_RDWR) < 0) return;
    }
}

void outliveBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace qm
