#include "app/Application.h"
#include "app/OnlyProgram.h"
#include "app/SuddenEnd.h"
#include "engine/api/Log.h"
#include "engine/api/StandardStreams.h"
#include "library/SupportFolder.h"

// There is no command line: arguments are not even handed to the toolkit.
int main(int, char** argv) {
    qm::openStandardStreams();
    qm::outliveBrokenPipes();
    qm::logToolkitMessages();
    qm::OnlyProgram only(qm::homeFolder());
    switch (only.start()) {
        case qm::OnlyProgram::Start::First:
            break;
        case qm::OnlyProgram::Start::HandedOver:
            return 0;
        case qm::OnlyProgram::Start::NoAnswer:
            qm::qmLog("Quillmere is running already, and does not answer.");
            return 1;
    }
    int count = 1;
    return qm::Application(count, argv, only).run();
}
