// The runner of the tests with windows: an application without a screen, in a home of its own.
#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <clocale>

#include "support/NotRun.h"
#include "ui/controls/ControlAccess.h"

int main(int argc, char** argv) {
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8() + "/.config");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qm::makeControlsAccessible();
    std::setlocale(LC_NUMERIC, "C");

    doctest::Context context;
    context.applyCommandLine(argc, argv);
    return qm::test::runCases(context);
}
