// Looks at the program through the accessibility bus, as a screen reader does, and acts through it.
//   accessible_tree list               every accessible of the program: depth, role, name, description, value, states
//   accessible_tree check              exit status 1 when a control has no name or is not reached by the keyboard, or a
//                                      slider has no value in words
//   accessible_tree press NAME         presses the button of that name
//   accessible_tree set NAME NUMBER    moves the slider of that name
//   accessible_tree type NAME TEXT     has this text in the field of that name
//   accessible_tree where NAME         the middle of it on the screen: "240 80"
//   accessible_tree say NAME           its description, or its text where it has none
//   accessible_tree is NAME STATE      exit status 0 when it has the state
//   accessible_tree watch              until it is ended, what a screen reader is told: what comes into view and what
//                                      gets the focus, one line each: "showing notification "A at 1 second""
#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QMap>
#include <QRect>
#include <QRegularExpression>
#include <QSet>
#include <QTextStream>
#include <functional>
#include <optional>

namespace {

const QString kAccessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr int kDeepest = 40;

QTextStream out(stdout);
QTextStream complaints(stderr);

QDBusConnection accessibilityBus() {
    const QDBusMessage answer = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                       QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    return QDBusConnection::connectToBus(answer.arguments().value(0).toString(), QStringLiteral("accessibility"));
}

// The numbers of the states on the bus.
const QMap<QString, int> kStates = {{"checkable", 41}, {"checked", 4},  {"enabled", 8},
                                    {"focusable", 11}, {"focused", 12}, {"showing", 25}};

// One accessible of the program.
class Node {
public:
    Node(const QDBusConnection& bus, const QString& service, const QString& path)
        : m_bus(bus), m_service(service), m_path(path) {}

    QVariant call(const QString& interface, const char* method, const QVariantList& arguments = {}) const {
        QDBusMessage message =
            QDBusMessage::createMethodCall(m_service, m_path, interface, QString::fromLatin1(method));
        message.setArguments(arguments);
        return m_bus.call(message).arguments().value(0);
    }

    QVariant property(const QString& interface, const char* name) const {
        return call(kProperties, "Get", {interface, QString::fromLatin1(name)}).value<QDBusVariant>().variant();
    }

    QString path() const { return m_service + m_path; }
    QString role() const { return call(kAccessible, "GetRoleName").toString(); }
    QString name() const { return property(kAccessible, "Name").toString(); }
    QString description() const { return property(kAccessible, "Description").toString(); }
    QStringList interfaces() const { return call(kAccessible, "GetInterfaces").toStringList(); }

    QVector<Node> children() const {
        QVector<Node> found;
        const auto list = call(kAccessible, "GetChildren").value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            QString service;
            QDBusObjectPath path;
            list.beginStructure();
            list >> service >> path;
            list.endStructure();
            found.append(Node(m_bus, service, path.path()));
        }
        list.endArray();
        return found;
    }

    QStringList states() const {
        const auto bits = qdbus_cast<QList<uint>>(call(kAccessible, "GetState").value<QDBusArgument>());
        QStringList names;
        for (auto state = kStates.begin(); state != kStates.end(); ++state)
            if (state.value() / 32 < bits.size() && (bits[state.value() / 32] >> (state.value() % 32) & 1))
                names << state.key();
        return names;
    }

    std::optional<double> value() const {
        if (!interfaces().contains(valueInterface())) return std::nullopt;
        return property(valueInterface(), "CurrentValue").toDouble();
    }

    void setValue(double value) const {
        call(kProperties, "Set",
             {valueInterface(), QStringLiteral("CurrentValue"), QVariant::fromValue(QDBusVariant(value))});
    }

    void setText(const QString& text) const {
        call(QStringLiteral("org.a11y.atspi.EditableText"), "SetTextContents", {text});
    }

    QRect place() const {
        constexpr uint kOnScreen = 0;
        int x = 0, y = 0, width = 0, height = 0;
        const auto extents =
            call(QStringLiteral("org.a11y.atspi.Component"), "GetExtents", {kOnScreen}).value<QDBusArgument>();
        extents.beginStructure();
        extents >> x >> y >> width >> height;
        extents.endStructure();
        return {x, y, width, height};
    }

    // What opens a dialog answers when that is closed, which nobody waits for.
    void press() const {
        constexpr int kLongestMilliseconds = 1000;
        QDBusMessage message = QDBusMessage::createMethodCall(
            m_service, m_path, QStringLiteral("org.a11y.atspi.Action"), QStringLiteral("DoAction"));
        message.setArguments({0});
        m_bus.call(message, QDBus::Block, kLongestMilliseconds);
    }

private:
    static QString valueInterface() { return QStringLiteral("org.a11y.atspi.Value"); }

    QDBusConnection m_bus;
    QString m_service;
    QString m_path;
};

// What holds, parts or decorates, and is never spoken by itself.
bool isSilent(const QString& role) {
    static const QSet<QString> silent = {"filler",      "separator",  "unknown", "layered pane", "scroll pane",
                                         "application", "popup menu", "panel",   "scroll bar",   "redundant object"};
    return silent.contains(role);
}

// What the user presses, moves or types into, and the keyboard has to reach. Of several choices it reaches the chosen
// one, and the arrow keys the others.
bool isUsed(const QString& role) {
    static const QSet<QString> used = {"push button", "toggle button", "check box",     "slider", "combo box",
                                       "text",        "spin button",   "page tab list", "table"};
    return used.contains(role);
}

using Visit = std::function<void(const Node&, int depth)>;

void walk(const Node& node, int depth, const Visit& visit) {
    visit(node, depth);
    if (depth < kDeepest)
        for (const Node& child : node.children()) walk(child, depth + 1, visit);
}

// Every program that the registry knows: on the stage of a test there is one.
void walkAll(const Visit& visit) {
    const Node registry(accessibilityBus(), QStringLiteral("org.a11y.atspi.Registry"),
                        QStringLiteral("/org/a11y/atspi/accessible/root"));
    for (const Node& program : registry.children()) walk(program, 0, visit);
}

// What can be chosen, besides what is used.
bool isChosen(const QString& role) {
    static const QSet<QString> chosen = {"menu", "menu item", "check menu item", "tree item"};
    return chosen.contains(role);
}

// The first control of that name that is in sight, or the first one.
std::optional<Node> nodeNamed(const QString& name) {
    std::optional<Node> found;
    bool isSeen = false;
    walkAll([&](const Node& node, int) {
        if (isSeen || node.name() != name || !(isUsed(node.role()) || isChosen(node.role()))) return;
        isSeen = node.states().contains(QStringLiteral("showing"));
        if (isSeen || !found) found = node;
    });
    return found;
}

int list() {
    walkAll([](const Node& node, int depth) {
        out << QString(2 * depth, u' ') << node.role() << " \"" << node.name() << "\" \"" << node.description() << "\"";
        if (const auto value = node.value()) out << " = " << *value;
        out << " (" << node.states().join(u' ') << ")\n";
    });
    return 0;
}

int check() {
    int visited = 0, sliders = 0, offences = 0;
    // Words with a number, or a word alone; never the number alone.
    static const QRegularExpression readable(QStringLiteral("^(centre|.*[0-9].*[a-z].*|[a-z]+ [0-9].*)$"));
    walkAll([&](const Node& node, int) {
        ++visited;
        const QString role = node.role(), name = node.name();
        const QStringList states = node.states();
        const bool shows = role != u"label" || states.contains(QStringLiteral("showing"));
        if (!isSilent(role) && shows && name.trimmed().isEmpty()) {
            ++offences;
            complaints << "a " << role << " without a name: " << node.path() << " \"" << node.description() << "\"\n";
        }
        if (isUsed(role) && states.contains(QStringLiteral("enabled")) &&
            !states.contains(QStringLiteral("focusable"))) {
            ++offences;
            complaints << "the keyboard does not reach the " << role << " " << name << "\n";
        }
        if (role != u"slider") return;
        ++sliders;
        if (!node.value() || !readable.match(node.description()).hasMatch()) {
            ++offences;
            complaints << "the slider " << name << " says \"" << node.description() << "\"\n";
        }
    });
    out << visited << " accessibles, " << sliders << " sliders, " << offences << " offences\n";
    return visited > 0 && sliders > 0 && offences == 0 ? 0 : 1;
}

class Watcher : public QObject {
    Q_OBJECT

public:
    Watcher() : m_bus(accessibilityBus()) {
        for (const char* event : {"object:state-changed:showing", "object:state-changed:focused"}) {
            QDBusMessage ask = QDBusMessage::createMethodCall(
                QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/registry"),
                QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("RegisterEvent"));
            ask.setArguments({QString::fromLatin1(event)});
            m_bus.call(ask);
        }
        m_bus.connect(QString(), QString(), QStringLiteral("org.a11y.atspi.Event.Object"),
                      QStringLiteral("StateChanged"), this, SLOT(print(QDBusMessage)));
        out << "watching" << Qt::endl;
    }

private slots:
    void print(const QDBusMessage& event) {
        const QVariantList arguments = event.arguments();
        if (arguments.value(1).toInt() != 1) return;
        const Node source(m_bus, event.service(), event.path());
        out << arguments.value(0).toString() << " " << source.role() << " \"" << source.name() << "\"" << Qt::endl;
    }

private:
    QDBusConnection m_bus;
};

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(1);
    if (command == u"list") return list();
    if (command == u"check") return check();
    if (command == u"watch") {
        const Watcher watcher;
        return QCoreApplication::exec();
    }
    const auto node = nodeNamed(arguments.value(2));
    if (!node) {
        complaints << "nothing is called " << arguments.value(2) << "\n";
        return 1;
    }
    if (command == u"press") return node->press(), 0;
    if (command == u"set") return node->setValue(arguments.value(3).toDouble()), 0;
    if (command == u"type") return node->setText(arguments.value(3)), 0;
    if (command == u"where") {
        const QPoint middle = node->place().center();
        return out << middle.x() << " " << middle.y() << "\n", 0;
    }
    if (command == u"say") return out << node->description() << "\n", 0;
    if (command == u"is") return node->states().contains(arguments.value(3)) ? 0 : 1;
    complaints << "unknown command " << command << "\n";
    return 1;
}

#include "accessible_tree.moc"
