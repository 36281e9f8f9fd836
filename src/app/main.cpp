#include "app/Application.h"

int main(int argc, char** argv) {
    return qm::Application(argc, argv).run();
}
