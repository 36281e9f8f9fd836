#include "app/Application.h"
#include "app/SuddenEnd.h"
#include "engine/api/StandardStreams.h"
#include "ui/controls/Fonts.h"

// There is no command line: not even the toolkit sees what stands behind the program's name.
int main(int, char** argv) {
    qm::openStandardStreams();
    qm::outliveBrokenPipes();
    qm::logToolkitMessages();
    qm::beginReadingFonts();
    int count = 1;
    return qm::Application(count, argv).run();
}
