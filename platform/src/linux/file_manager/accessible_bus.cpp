// AT-SPI over plain D-Bus: no library between, whose cache could be stale.
#include "accessible_bus.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <memory>
#include <utility>

namespace brindlehum {
namespace {

const auto registry = QStringLiteral("org.a11y.atspi.Registry");
const auto rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const auto atspi = QStringLiteral("org.a11y.atspi.");
const auto busName = QStringLiteral("org.freedesktop.DBus");
const auto properties = QStringLiteral("org.freedesktop.DBus.Properties");

AccessibleRef readRef(const QDBusArgument& argument) {
    AccessibleRef ref;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> ref.bus >> path;
    argument.endStructure();
    ref.path = path.path();
    return ref;
}

QDBusMessage messageOf(const AccessibleCall& call) {
    const QString interface = !call.interface        ? properties
                              : *call.interface == 0 ? busName
                                                     : atspi + QLatin1String(call.interface);
    auto message = QDBusMessage::createMethodCall(call.target.bus, call.target.path, interface, call.method);
    message.setArguments(call.arguments);
    message.setAutoStartService(false);
    return message;
}

QVariant valueOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) { return {}; }
    const QVariant value = reply.arguments().front();
    if (value.metaType() == QMetaType::fromType<QDBusVariant>()) { return value.value<QDBusVariant>().variant(); }
    return value;
}

}  // namespace

bool AccessibleAnswer::has(AccessibleState state) const {
    const auto bit = uint32_t(state);
    const auto words = numbers();
    return words.size() > bit / 32 && (uint32_t(words[bit / 32]) >> (bit % 32) & 1) != 0;
}

AccessibleRef AccessibleAnswer::ref() const {
    if (!value_.canConvert<QDBusArgument>()) { return {}; }
    const auto argument = value_.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::StructureType) { return {}; }
    return readRef(argument);
}

std::vector<AccessibleRef> AccessibleAnswer::refs() const {
    std::vector<AccessibleRef> all;
    if (!value_.canConvert<QDBusArgument>()) { return all; }
    const auto argument = value_.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::ArrayType) { return all; }
    argument.beginArray();
    while (!argument.atEnd()) { all.push_back(readRef(argument)); }
    argument.endArray();
    return all;
}

std::vector<int> AccessibleAnswer::numbers() const {
    std::vector<int> all;
    if (!value_.canConvert<QDBusArgument>()) { return all; }
    const auto argument = value_.value<QDBusArgument>();
    if (argument.currentType() != QDBusArgument::ArrayType) { return all; }
    argument.beginArray();
    while (!argument.atEnd()) { all.push_back(argument.asVariant().toInt()); }
    argument.endArray();
    return all;
}

void AccessibleBus::connectSoon() {
    if (isConnected() || isLooking_) { return; }
    isLooking_ = true;
    const auto call = QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                                     QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        isLooking_ = false;
        const QString address = valueOf(watcher->reply()).toString();
        if (!address.isEmpty()) { connectTo(address); }
        hasFailed_ = !isConnected();
    });
}

void AccessibleBus::connectTo(const QString& address) {
    QDBusConnection::disconnectFromBus(name_);
    bus_ = QDBusConnection::connectToBus(address, name_);
    if (!program_.isEmpty()) { setHearing(true); }
}

void AccessibleBus::enable() {
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                               properties, QStringLiteral("Set"));
    call.setArguments(
        {QStringLiteral("org.a11y.Status"), QStringLiteral("IsEnabled"), QVariant::fromValue(QDBusVariant(true))});
    QDBusConnection::sessionBus().asyncCall(call);
    connectSoon();
}

void AccessibleBus::ask(const std::vector<AccessibleCall>& calls, std::function<void(const AccessibleAnswers&)> done) {
    struct Batch {
        AccessibleAnswers answers;
        size_t missing;
        std::function<void(const AccessibleAnswers&)> done;
    };
    if (!isConnected() || calls.empty()) { return done(AccessibleAnswers(calls.size())); }
    const auto batch = std::make_shared<Batch>(Batch{AccessibleAnswers(calls.size()), calls.size(), std::move(done)});
    for (size_t i = 0; i < calls.size(); ++i) {
        if (!mayAsk(calls[i].target)) {
            if (--batch->missing == 0) { batch->done(batch->answers); }
            continue;
        }
        auto* watcher = new QDBusPendingCallWatcher(bus_->asyncCall(messageOf(calls[i]), limitMs), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, batch, i] {
            watcher->deleteLater();
            batch->answers[i] = AccessibleAnswer(valueOf(watcher->reply()));
            if (--batch->missing == 0) { batch->done(batch->answers); }
        });
    }
}

// Not a widget that an answer before didn't give; nor any program once it isn't heard any more, so that a search that
// is under way ends.
bool AccessibleBus::mayAsk(const AccessibleRef& target) const {
    return !target.path.isEmpty() && (target.bus == program_ || target.bus == registry || target.bus == busName);
}

void AccessibleBus::find(uint32_t pid, const std::function<void(const std::optional<AccessibleRef>&)>& done) {
    ask({AccessibleCall::children({registry, rootPath})}, [this, pid, done](const AccessibleAnswers& answers) {
        const auto programs = answers.front().refs();
        std::vector<AccessibleCall> calls;
        for (const auto& program : programs) {
            calls.push_back({{busName, QStringLiteral("/org/freedesktop/DBus")},
                             AccessibleCall::ofBus,
                             QStringLiteral("GetConnectionUnixProcessID"),
                             {program.bus}});
        }
        ask(calls, [pid, programs, done](const AccessibleAnswers& pids) {
            for (size_t i = 0; i < programs.size(); ++i) {
                if (pids[i].isValid() && uint32_t(pids[i].number()) == pid) { return done(programs[i]); }
            }
            done({});
        });
    });
}

void AccessibleBus::hear(const QString& program, const QStringList& events) {
    if (program == program_ && events == events_) { return; }
    if (isConnected() && !program_.isEmpty()) { setHearing(false); }
    program_ = program;
    events_ = events;
    if (isConnected() && !program_.isEmpty()) { setHearing(true); }
}

// Programs send only what somebody has registered for; the bus delivers only what we match.
void AccessibleBus::setHearing(bool on) {
    for (const QString& event : events_) {
        auto call =
            QDBusMessage::createMethodCall(registry, QStringLiteral("/org/a11y/atspi/registry"), registry,
                                           on ? QStringLiteral("RegisterEvent") : QStringLiteral("DeregisterEvent"));
        call.setArguments(on ? QVariantList{event, QStringList(), program_} : QVariantList{event});
        bus_->asyncCall(call, limitMs);
    }
    const auto interface = QStringLiteral("org.a11y.atspi.Event.Object");
    // Many programs send more than was registered for, so the bus drops the rest.
    const auto state = QStringLiteral("object:state-changed:");
    const QStringList states = events_.filter(state);
    const std::pair<const char*, QStringList> heard[] = {{"SelectionChanged", {}},
                                                         {"StateChanged", {states.value(0).mid(state.size())}},
                                                         {"PropertyChange", {QStringLiteral("accessible-name")}}};
    for (const auto& [member, detail] : heard) {
        const auto name = QString::fromLatin1(member);
        if (on) {
            bus_->connect(program_, {}, interface, name, detail, {}, this, SLOT(take(QDBusMessage)));
        } else {
            bus_->disconnect(program_, {}, interface, name, detail, {}, this, SLOT(take(QDBusMessage)));
        }
    }
}

void AccessibleBus::take(const QDBusMessage& message) {
    if (!onEvent || message.service() != program_) { return; }
    const auto arguments = message.arguments();
    onEvent({message.member(),
             arguments.value(0).toString(),
             arguments.value(1).toInt() == 1,
             {message.service(), message.path()},
             arguments.value(3).value<QDBusVariant>().variant().toString()});
}

}  // namespace brindlehum
