// The peer of the start-up measurement: a window of the toolkit with nothing in it, that ends once it is painted.
#include <QApplication>
#include <QPaintEvent>
#include <QTimer>
#include <QWidget>

namespace {

class EmptyWindow : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override { QTimer::singleShot(0, qApp, &QApplication::quit); }
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    EmptyWindow window;
    window.setWindowTitle(QStringLiteral("Empty"));
    window.resize(980, 650);
    window.show();
    return QApplication::exec();
}
