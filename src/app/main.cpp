#include "app/Application.h"

// There is no command line: not even the toolkit sees what stands behind the program's name.
int main(int, char** argv) {
    int count = 1;
    return qm::Application(count, argv).run();
}
