// The peer of the start-up measurement: a window of the toolkit with nothing in it.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Empty"));
    window.resize(980, 650);
    window.show();
    return QApplication::exec();
}
