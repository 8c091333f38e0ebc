// Thunar: names from its list's rows or from its status bar, the folder from its location bar.
#include <QObject>
#include <algorithm>
#include <map>

#include "selection_reader.h"
#include "tree_search.h"

namespace brindlehum {
namespace {

using Path = std::filesystem::path;

// What a window shows, as far as it matters.
struct ThunarParts {
    std::optional<AccessibleRef> location;  // the only text that is ever asked for
    std::optional<AccessibleRef> status;
    std::optional<AccessibleRef> rows;  // of the list view
    int views = 0;                      // that are seen: two in a split window
    bool hasFocus = false;              // `rows` has
};

// A single selection is in the status bar, in quotes before the first column. A name may hold such a mark itself.
std::vector<QString> namesIn(const QString& status) {
    const auto mark = QStringLiteral("\"  |  ");
    std::vector<QString> names;
    if (!status.startsWith('"')) { return names; }
    for (qsizetype end = status.indexOf(mark, 1); end >= 0; end = status.indexOf(mark, end + 1)) {
        names.push_back(status.mid(1, end - 1));
    }
    return names;
}

class ThunarReader : public SelectionReader {
public:
    explicit ThunarReader(AccessibleBus& bus) : bus_(bus) {}

    QStringList events() const override {
        return {QStringLiteral("object:selection-changed"), QStringLiteral("object:state-changed:focused"),
                QStringLiteral("object:property-change:accessible-name")};
    }

    void read(const FileManagerWindow& window, int limit, Done done) override {
        findParts(window, [this, limit, done](const ThunarParts& parts) {
            if (parts.views == 0) { return done({}); }  // no window is active while a key is taken from it
            const bool isClear = parts.views == 1 || (parts.views == 2 && parts.hasFocus);
            if (!parts.location || !isClear) { return done(std::vector<Path>()); }
            if (parts.rows) { return readRows(parts, limit, done); }
            if (parts.status) { return readStatus(parts, done); }
            done(std::vector<Path>());
        });
    }

    // The icon view and the list view's table are children of the directory; cells lie in the table, up to two deep.
    void focusMoved(const AccessibleRef& widget, std::function<void(bool)> done) override {
        constexpr int levels = 4;
        climb(widget, levels, std::move(done));
    }

private:
    void climb(const AccessibleRef& widget, int levels, std::function<void(bool)> done) {
        if (levels == 0) { return done(true); }
        bus_.ask({AccessibleCall::role(widget), AccessibleCall::parent(widget)},
                 [this, levels, done = std::move(done)](const AccessibleAnswers& answers) {
                     const AccessibleRole role = answers[0].role();
                     if (role == AccessibleRole::directory) { return done(false); }
                     if (isTextField(role) || role == AccessibleRole::none) { return done(true); }
                     climb(answers[1].ref(), levels - 1, done);
                 });
    }

    void findParts(const FileManagerWindow& window, const std::function<void(const ThunarParts&)>& done) {
        const auto parts = std::make_shared<ThunarParts>();
        const auto seen = std::make_shared<std::vector<AccessibleRef>>();
        const auto enter = [parts](const AccessibleNode& node) {
            switch (node.role) {
                case AccessibleRole::text:
                    parts->location = node.ref;
                    return false;
                case AccessibleRole::statusBar:
                    if (node.isShowing) { parts->status = node.ref; }
                    return false;
                case AccessibleRole::directory:
                    if (node.isShowing) { ++parts->views; }
                    return node.isShowing;
                case AccessibleRole::table:
                    if (parts->views > 0 && node.isShowing && (!parts->rows || node.isFocused)) {
                        parts->rows = node.ref;
                        parts->hasFocus = node.isFocused;
                    }
                    return false;
                case AccessibleRole::menu:
                case AccessibleRole::menuBar:
                case AccessibleRole::menuItem:
                case AccessibleRole::checkMenuItem:
                case AccessibleRole::scrollBar:
                case AccessibleRole::button:
                case AccessibleRole::icon:
                case AccessibleRole::infoBar:
                    return false;
                default:
                    return node.role != AccessibleRole(23) || node.isActive;
            }
        };
        TreeSearch::run(bus_, {window.program}, enter, [parts, done] { done(*parts); });
    }

    void askFolder(const ThunarParts& parts, const std::function<void(const Path&)>& done) {
        bus_.ask({{*parts.location, "Text", QStringLiteral("GetText"), {0, -1}}},
                 [done](const AccessibleAnswers& answers) {
                     const Path folder = answers[0].text().toStdString();
                     done(folder.is_absolute() ? folder : Path());
                 });
    }

    void readRows(const ThunarParts& parts, int limit, const Done& done) {
        const AccessibleRef table = *parts.rows;
        bus_.ask({{table, "Table", QStringLiteral("GetSelectedRows")}},
                 [this, parts, table, limit, done](const AccessibleAnswers& answers) {
                     if (!answers[0].isValid()) { return done({}); }
                     std::vector<AccessibleCall> calls;
                     for (const int row : answers[0].numbers()) {
                         if (int(calls.size()) == limit) { break; }
                         calls.push_back({table, "Table", QStringLiteral("GetAccessibleAt"), {row, 0}});
                     }
                     bus_.ask(calls, [this, parts, done](const AccessibleAnswers& cells) {
                         std::vector<AccessibleCall> inner;  // the name stands behind the icon
                         for (const auto& cell : cells) { inner.push_back(AccessibleCall::child(cell.ref(), 1)); }
                         bus_.ask(inner, [this, parts, done](const AccessibleAnswers& labels) {
                             std::vector<AccessibleCall> names;
                             for (const auto& label : labels) { names.push_back(AccessibleCall::name(label.ref())); }
                             bus_.ask(names, [this, parts, done](const AccessibleAnswers& texts) {
                                 resolve(parts, texts, done);
                             });
                         });
                     });
                 });
    }

    void resolve(const ThunarParts& parts, const AccessibleAnswers& names, const Done& done) {
        if (names.empty()) { return done(std::vector<Path>()); }
        askFolder(parts, [names, done](const Path& folder) {
            std::vector<Path> paths;
            for (const auto& name : names) {
                if (const auto path = uniqueFile({folder}, name.text()); path && !folder.empty()) {
                    paths.push_back(*path);
                }
            }
            done(paths);
        });
    }

    void readStatus(const ThunarParts& parts, const Done& done) {
        bus_.ask({AccessibleCall::name(*parts.status)}, [this, parts, done](const AccessibleAnswers& answers) {
            const auto names = namesIn(answers[0].text());
            if (names.empty()) { return done(std::vector<Path>()); }
            askFolder(parts, [names, done](const Path& folder) {
                std::vector<Path> paths;
                for (const QString& name : names) {
                    if (const auto path = uniqueFile({folder}, name); path && !folder.empty()) {
                        paths.push_back(*path);
                    }
                }
                if (paths.size() > 1) { paths.clear(); }  // the mark is in a name, and both files exist
                done(paths);
            });
        });
    }

    AccessibleBus& bus_;
};

}  // namespace

std::unique_ptr<SelectionReader> makeThunarReader(AccessibleBus& bus) {
    return std::make_unique<ThunarReader>(bus);
}

}  // namespace brindlehum
