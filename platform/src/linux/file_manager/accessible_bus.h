// AccessibleBus: questions over the desktop's accessibility bus (AT-SPI), without waiting for the answers.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>
#include <functional>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace brindlehum {

// A widget of a program, as it presents itself to assistive tools.
struct AccessibleRef {
    QString bus;  // unique name of its program
    QString path;
    bool operator==(const AccessibleRef&) const = default;
    bool operator<(const AccessibleRef& other) const { return std::tie(bus, path) < std::tie(other.bus, other.path); }
};

// Roles and states as AT-SPI numbers them.
enum class AccessibleRole : uint32_t {
    none = 0,
    checkMenuItem = 8,
    icon = 26,
    image = 27,
    label = 29,
    list = 31,
    menu = 33,
    menuBar = 34,
    menuItem = 35,
    password = 40,
    button = 43,
    scrollBar = 48,
    statusBar = 54,
    table = 55,
    text = 61,
    toolBar = 63,
    entry = 79,
    infoBar = 102,
    directory = 17,  // Thunar's view of a folder
};
enum class AccessibleState : uint32_t { active = 1, focused = 12, showing = 25 };

struct AccessibleCall {
    static constexpr const char* ofProperty = nullptr;
    static constexpr const char* ofBus = "";  // a question to the bus itself

    AccessibleRef target;
    const char* interface;  // after "org.a11y.atspi.", or one of the two
    QString method;
    QVariantList arguments = {};

    static AccessibleCall role(const AccessibleRef& of) { return {of, "Accessible", QStringLiteral("GetRole")}; }
    static AccessibleCall state(const AccessibleRef& of) { return {of, "Accessible", QStringLiteral("GetState")}; }
    static AccessibleCall children(const AccessibleRef& of) {
        return {of, "Accessible", QStringLiteral("GetChildren")};
    }
    static AccessibleCall child(const AccessibleRef& of, int index) {
        return {of, "Accessible", QStringLiteral("GetChildAtIndex"), {index}};
    }
    static AccessibleCall property(const AccessibleRef& of, const char* interface, const QString& name) {
        return {of, ofProperty, QStringLiteral("Get"), {"org.a11y.atspi." + QLatin1String(interface), name}};
    }
    static AccessibleCall parent(const AccessibleRef& of) {
        return property(of, "Accessible", QStringLiteral("Parent"));
    }
    static AccessibleCall name(const AccessibleRef& of) { return property(of, "Accessible", QStringLiteral("Name")); }
};

// An answer; reads as nothing when there was none in time.
class AccessibleAnswer {
public:
    AccessibleAnswer() = default;
    explicit AccessibleAnswer(QVariant value) : value_(std::move(value)) {}
    bool isValid() const { return value_.isValid(); }
    QString text() const { return value_.toString(); }
    int number() const { return value_.toInt(); }
    AccessibleRole role() const { return AccessibleRole(value_.toUInt()); }
    bool has(AccessibleState state) const;
    AccessibleRef ref() const;
    std::vector<AccessibleRef> refs() const;
    std::vector<int> numbers() const;

private:
    QVariant value_;
};
using AccessibleAnswers = std::vector<AccessibleAnswer>;

// Main thread.
class AccessibleBus : public QObject {
    Q_OBJECT
public:
    static constexpr int limitMs = 300;  // for an answer

    // `name`: of the connection within this process.
    explicit AccessibleBus(QString name = QStringLiteral("brindlehum-accessibility")) : name_(std::move(name)) {}

    // "SelectionChanged", "StateChanged" with the state's name, "PropertyChange" with the property's name and its
    // value.
    struct Event {
        QString kind;
        QString detail;
        bool on;
        AccessibleRef source;
        QString value;
    };
    std::function<void(const Event&)> onEvent;

    bool isConnected() const { return bus_ && bus_->isConnected(); }
    // The last look for the bus found none.
    bool hasFailed() const { return hasFailed_; }
    // Looks for the bus, unless it is connected or being looked for.
    void connectSoon();
    // Lets all programs of the desktop present themselves.
    void enable();
    // All calls are sent at once; those to another program than the one that is heard aren't, and get no answer.
    // `done` gets the answers in their order. Not called after `this` has gone.
    void ask(const std::vector<AccessibleCall>& calls, std::function<void(const AccessibleAnswers&)> done);
    // The program with this process; none if it isn't on the bus. Asks nobody but the bus itself.
    void find(uint32_t pid, const std::function<void(const std::optional<AccessibleRef>&)>& done);
    // Hears these events of this program, and no others. An empty name: none.
    void hear(const QString& program, const QStringList& events);

private Q_SLOTS:
    void take(const QDBusMessage& message);

private:
    void connectTo(const QString& address);
    bool mayAsk(const AccessibleRef& target) const;
    void setHearing(bool on);

    const QString name_;
    std::optional<QDBusConnection> bus_;
    bool isLooking_ = false;
    bool hasFailed_ = false;
    QString program_;
    QStringList events_;
};

}  // namespace brindlehum
