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
    AccessibleRef frame;
    AccessibleRef view;                     // that is seen, the last of several
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
        if (window.id != knownWindow_) { return search(window, limit, done); }
        std::vector<AccessibleCall> calls{AccessibleCall::state(known_.frame), AccessibleCall::state(known_.view)};
        if (known_.rows) { calls.push_back(AccessibleCall::state(*known_.rows)); }
        bus_.ask(calls, [this, window, limit, done](const AccessibleAnswers& answers) {
            const bool isSame = answers[0].has(AccessibleState::active) && answers[1].has(AccessibleState::showing) &&
                                (answers.size() < 3 || answers[2].has(AccessibleState::focused));
            if (isSame) { return readParts(known_, limit, done); }
            search(window, limit, done);
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

    // The parts are looked for once, and again when another window, view or pane is used.
    void search(const FileManagerWindow& window, int limit, const Done& done) {
        knownWindow_ = 0;
        findParts(window, [this, id = window.id, limit, done](const ThunarParts& parts) {
            if (parts.views == 1) {
                known_ = parts;
                knownWindow_ = id;
            }
            readParts(parts, limit, done);
        });
    }

    void readParts(const ThunarParts& parts, int limit, const Done& done) {
        if (parts.views == 0) { return done({}); }  // no window is active while a key is taken from it
        const bool isClear = parts.views == 1 || (parts.views == 2 && parts.hasFocus);
        if (!parts.location || !isClear) { return done(std::vector<Path>()); }
        if (parts.rows) { return readRows(parts, limit, done); }
        if (parts.status) { return readStatus(parts, done); }
        done(std::vector<Path>());
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
                    if (node.isShowing) {
                        ++parts->views;
                        parts->view = node.ref;
                    }
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
                    if (node.role != AccessibleRole(23)) { return true; }
                    if (node.isActive) { parts->frame = node.ref; }
                    return node.isActive;
            }
        };
        TreeSearch::run(bus_, {window.program}, enter, [parts, done] { done(*parts); });
    }

    static AccessibleCall textOf(const AccessibleRef& widget) {
        return {widget, "Text", QStringLiteral("GetText"), {0, -1}};
    }

    // Empty for a place that is no folder.
    static Path folderIn(const AccessibleAnswer& answer) {
        const Path folder = answer.text().toStdString();
        return folder.is_absolute() ? folder : Path();
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
                             std::vector<AccessibleCall> last{textOf(*parts.location)};
                             for (const auto& label : labels) { last.push_back(AccessibleCall::name(label.ref())); }
                             bus_.ask(last, [done](const AccessibleAnswers& texts) { resolve(texts, done); });
                         });
                     });
                 });
    }

    // The folder, and the names in it.
    static void resolve(const AccessibleAnswers& texts, const Done& done) {
        const Path folder = folderIn(texts.front());
        std::vector<Path> paths;
        for (auto name = texts.begin() + 1; name != texts.end(); ++name) {
            if (const auto path = uniqueFile({folder}, name->text()); path && !folder.empty()) {
                paths.push_back(*path);
            }
        }
        done(paths);
    }

    void readStatus(const ThunarParts& parts, const Done& done) {
        bus_.ask({AccessibleCall::name(*parts.status), textOf(*parts.location)},
                 [done](const AccessibleAnswers& answers) {
                     const Path folder = folderIn(answers[1]);
                     std::vector<Path> paths;
                     for (const QString& name : namesIn(answers[0].text())) {
                         if (const auto path = uniqueFile({folder}, name); path && !folder.empty()) {
                             paths.push_back(*path);
                         }
                     }
                     if (paths.size() > 1) { paths.clear(); }  // the mark is in a name, and both files exist
                     done(paths);
                 });
    }

    AccessibleBus& bus_;
    ThunarParts known_;
    uint32_t knownWindow_ = 0;  // whose parts they are; 0 for none
};

}  // namespace

std::unique_ptr<SelectionReader> makeThunarReader(AccessibleBus& bus) {
    return std::make_unique<ThunarReader>(bus);
}

}  // namespace brindlehum
