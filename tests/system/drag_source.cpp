// drag_source X Y FILE...: a small window at that place of the screen, from which the files can be dragged with the
// mouse, as from a file manager. Ends after one drag, when the target has fetched what it wants.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

class DragSource : public QWidget {
public:
    explicit DragSource(const QStringList& files) {
        for (const QString& file : files) {
            m_urls << QUrl::fromLocalFile(file);
        }
    }

protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!event->buttons().testFlag(Qt::LeftButton)) {
            return;
        }
        auto* drag = new QDrag(this);
        auto* files = new QMimeData;
        files->setUrls(m_urls);
        drag->setMimeData(files);
        connect(drag, &QObject::destroyed, this, [] { QApplication::exit(0); });
        drag->exec(Qt::CopyAction);
    }

private:
    QList<QUrl> m_urls;
};

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    DragSource source(arguments.mid(3));
    source.setWindowTitle("drag source");
    source.setGeometry(arguments.value(1).toInt(), arguments.value(2).toInt(), 80, 60);
    source.show();
    return QApplication::exec();
}
