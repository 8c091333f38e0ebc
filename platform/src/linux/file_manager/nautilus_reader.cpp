// Nautilus: names from its view's selected cells, folders from its list of open windows on the session bus.
#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
#include <QPointer>
#include <QUrl>
#include <algorithm>
#include <array>
#include <map>

#include "selection_reader.h"
#include "tree_search.h"

namespace brindlehum {
namespace {

using Path = std::filesystem::path;

const QStringList views{QStringLiteral("GtkGridView"), QStringLiteral("GtkColumnListView")};
// Names of cells that stand for their class, not for a file.
const QStringList cells{QStringLiteral("NautilusGridCell"), QStringLiteral("NautilusNameCell"),
                        QStringLiteral("GtkColumnViewCell"), QStringLiteral("NautilusLabelCell")};
constexpr int cellDepth = 4;
constexpr int vainPauseMs = 1000;  // after a search in vain, so that a folder being opened isn't slowed down

// A file:// address of this machine, by its bytes; nothing for another place, as a search or the trash.
std::optional<Path> localFolder(const QString& address) {
    const QByteArray encoded = address.toUtf8();
    if (!encoded.startsWith("file:///")) { return {}; }
    return Path(QByteArray::fromPercentEncoding(encoded.mid(7)).toStdString());
}

class NautilusReader : public QObject, public SelectionReader {
public:
    explicit NautilusReader(AccessibleBus& bus) : bus_(bus) {}

    QStringList events() const override {
        return {QStringLiteral("object:selection-changed"), QStringLiteral("object:state-changed:focused")};
    }

    void read(const FileManagerWindow& window, int limit, Done done) override {
        window_ = window;
        if (views_.contains(window.id)) { return readView(views_[window.id], window, limit, done); }
        if (sinceVain_.isValid() && sinceVain_.elapsed() < vainPauseMs) { return done({}); }
        findView(window, [this, window, limit, done](const std::optional<AccessibleRef>& view) {
            if (!view) {
                sinceVain_.start();
                return done({});
            }
            views_[window.id] = *view;
            readView(*view, window, limit, done);
        });
    }

    // A single file that is selected has the focus as a rule, so its name is asked for along with the selection.
    void focused(const AccessibleRef& widget) override { likely_ = widget; }

    // A focused cell leads to the view of the tab that is shown.
    void focusMoved(const AccessibleRef& widget, std::function<void(bool)> done) override {
        bus_.ask({AccessibleCall::role(widget), AccessibleCall::name(widget), AccessibleCall::parent(widget)},
                 [this, widget, done](const AccessibleAnswers& answers) {
                     if (views.contains(answers[1].text())) { return keep(widget, done); }
                     if (isTextField(answers[0].role())) { return done(true); }
                     const AccessibleRef parent = answers[2].ref();
                     bus_.ask({AccessibleCall::name(parent)}, [this, parent, done](const AccessibleAnswers& name) {
                         if (views.contains(name[0].text())) { return keep(parent, done); }
                         done(true);
                     });
                 });
    }

private:
    void keep(const AccessibleRef& view, const std::function<void(bool)>& done) {
        views_[window_.id] = view;
        done(false);
    }

    // None with several tabs, of which nobody says which is shown: the next move of the focus does.
    void findView(const FileManagerWindow& window,
                  const std::function<void(const std::optional<AccessibleRef>&)>& done) {
        const auto found = std::make_shared<std::vector<AccessibleRef>>();
        const auto enter = [found](const AccessibleNode& node) {
            switch (node.role) {
                case AccessibleRole::toolBar:
                case AccessibleRole::button:
                case AccessibleRole::scrollBar:
                case AccessibleRole::image:
                case AccessibleRole::label:
                case AccessibleRole::list:
                case AccessibleRole::table:
                    if (views.contains(node.name)) { found->push_back(node.ref); }
                    return false;
                default:
                    break;
            }
            const bool isWindow = node.role == AccessibleRole(23);
            return node.name != QLatin1String("AdwTabBar") && (!isWindow || node.isActive);
        };
        TreeSearch::run(bus_, {window.program}, enter,
                        [found, done] { done(found->size() == 1 ? std::optional(found->front()) : std::nullopt); });
    }

    // Each round takes Nautilus some 40 ms, so the folders and the first cell are asked for along with the count.
    void readView(const AccessibleRef& view, const FileManagerWindow& window, int limit, const Done& done) {
        const auto child = [view](int index) {
            return AccessibleCall{view, "Selection", QStringLiteral("GetSelectedChild"), {index}};
        };
        const QDBusPendingCall locations = askLocations(window);
        std::vector<AccessibleCall> first{
            AccessibleCall::property(view, "Selection", QStringLiteral("NSelectedChildren")), child(0)};
        for (const AccessibleCall& each : nameCalls(likely_)) { first.push_back(each); }
        bus_.ask(first,
                 [this, child, window, limit, locations, done, likely = likely_](const AccessibleAnswers& answers) {
                     if (!answers[0].isValid()) {  // the view has gone
                         views_.erase(window.id);
                         return done({});
                     }
                     const auto end = [this, window, locations, done](const std::vector<QString>& names) {
                         resolve(window, locations, names, done);
                     };
                     const auto finish = [this, end](const std::vector<AccessibleRef>& selected) {
                         readNames(selected, std::vector<QString>(selected.size()), cellDepth, end);
                     };
                     const int count = std::min(answers[0].number(), limit);
                     if (count == 1 && answers[1].ref() == likely) {
                         return takeNames({answers[2], answers[3]}, {QString()}, cellDepth, end);
                     }
                     if (count == 1) { return finish({answers[1].ref()}); }
                     std::vector<AccessibleCall> calls;
                     for (int i = 0; i < count; ++i) { calls.push_back(child(i)); }
                     bus_.ask(calls, [finish](const AccessibleAnswers& children) {
                         std::vector<AccessibleRef> selected;
                         for (const auto& each : children) { selected.push_back(each.ref()); }
                         finish(selected);
                     });
                 });
    }

    static QDBusPendingCall askLocations(const FileManagerWindow& window) {
        auto call =
            QDBusMessage::createMethodCall(window.busName, QStringLiteral("/org/freedesktop/FileManager1"),
                                           QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        call.setArguments({QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("OpenWindowsWithLocations")});
        return QDBusConnection::sessionBus().asyncCall(call, AccessibleBus::limitMs);
    }

    // The first name below each cell that isn't the cell's class.
    void readNames(const std::vector<AccessibleRef>& refs, const std::vector<QString>& names, int depth,
                   const std::function<void(const std::vector<QString>&)>& done) {
        if (refs.empty() || depth == 0) { return done(names); }
        std::vector<AccessibleCall> calls;
        for (const auto& ref : refs) {
            for (const AccessibleCall& each : nameCalls(ref)) { calls.push_back(each); }
        }
        bus_.ask(calls, [this, names, depth, done](const AccessibleAnswers& answers) {
            takeNames(answers, names, depth, done);
        });
    }

    static std::array<AccessibleCall, 2> nameCalls(const AccessibleRef& ref) {
        return {AccessibleCall::name(ref), AccessibleCall::child(ref, 0)};
    }

    void takeNames(const AccessibleAnswers& answers, std::vector<QString> names, int depth,
                   const std::function<void(const std::vector<QString>&)>& done) {
        std::vector<AccessibleRef> deeper;
        bool isComplete = true;
        for (size_t i = 0; i < names.size(); ++i) {
            const QString name = answers[2 * i].text();
            if (names[i].isEmpty() && !cells.contains(name)) { names[i] = name; }
            isComplete = isComplete && !names[i].isEmpty();
            deeper.push_back(answers[2 * i + 1].ref());
        }
        if (isComplete) { return done(names); }
        readNames(deeper, names, depth - 1, done);
    }

    void resolve(const FileManagerWindow& window, const QDBusPendingCall& asked, const std::vector<QString>& names,
                 const Done& done) {
        if (names.empty()) { return done(std::vector<Path>()); }
        auto* watcher = new QDBusPendingCallWatcher(asked, this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, window, names, done] {
            watcher->deleteLater();
            const auto reply = watcher->reply();
            if (reply.type() != QDBusMessage::ReplyMessage) { return done({}); }
            QMap<QString, QStringList> locations;
            reply.arguments().value(0).value<QDBusVariant>().variant().value<QDBusArgument>() >> locations;
            QStringList addresses = locations.value(window.objectPath);
            if (window.objectPath.isEmpty()) {  // nobody says which of its windows this is
                for (const QStringList& each : locations) { addresses += each; }
            }
            std::vector<Path> folders;
            for (const QString& address : addresses) {
                const auto folder = localFolder(address);
                if (!folder) { return done(std::vector<Path>()); }  // a search may be shown: its names say no folder
                if (std::ranges::find(folders, *folder) == folders.end()) { folders.push_back(*folder); }
            }
            std::vector<Path> paths;
            for (const QString& name : names) {
                if (const auto path = uniqueFile(folders, name)) { paths.push_back(*path); }
            }
            done(paths);
        });
    }

    AccessibleBus& bus_;
    FileManagerWindow window_;                 // read last
    AccessibleRef likely_;                     // the focused cell
    QElapsedTimer sinceVain_;                  // a search without a result
    std::map<uint32_t, AccessibleRef> views_;  // of each window, as last seen
};

}  // namespace

std::unique_ptr<SelectionReader> makeNautilusReader(AccessibleBus& bus) {
    return std::make_unique<NautilusReader>(bus);
}

std::optional<Path> uniqueFile(const std::vector<Path>& folders, const QString& name) {
    const std::string bytes = name.toStdString();
    if (bytes.empty() || bytes.find('/') != std::string::npos || bytes == "." || bytes == "..") { return {}; }
    std::optional<Path> found;
    for (const Path& folder : folders) {
        std::error_code error;
        const Path path = folder / bytes;
        if (!std::filesystem::exists(std::filesystem::symlink_status(path, error))) { continue; }
        if (found) { return {}; }
        found = path;
    }
    return found;
}

}  // namespace brindlehum
