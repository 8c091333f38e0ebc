// Builds the sidebar's rows and its footer's texts.
#include "ui/sidebar/sidebar_rows.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

#include "ui/look/path_text.h"

namespace brindlehum::SidebarRows {
namespace {

namespace fs = std::filesystem;

QString number(int64_t value) {
    return QLocale().toString(static_cast<qlonglong>(value));
}

QString lastPart(const fs::path& path) {
    const fs::path normal = path.lexically_normal();
    const fs::path name = normal.has_filename() ? normal.filename() : normal.parent_path().filename();
    return name.empty() ? pathText(path) : pathText(name);
}

SidebarRow folderRow(SidebarRow::Kind kind, const fs::path& path, const QString& icon, const Snapshot& now) {
    SidebarRow row;
    row.kind = kind;
    row.text = lastPart(path);
    row.icon = iconOf(path, icon);
    row.value = path.native();
    row.selected = now.folder && *now.folder == path;
    return row;
}

std::vector<SidebarRow> facets(SidebarRow::Kind kind, const Catalog::Counts& counts,
                               const std::optional<std::string>& chosen) {
    std::vector<SidebarRow> rows;
    const auto add = [&](const std::string& name, int64_t count) {
        SidebarRow row;
        row.kind = kind;
        row.text = QString::fromStdString(name);
        row.value = name;
        row.count = count;
        row.selected = chosen == name;
        rows.push_back(std::move(row));
    };
    for (const auto& [name, count] : counts) { add(name, count); }
    return rows;
}

constexpr std::array<const char*, SectionCount> sectionNames = {
    QT_TRANSLATE_NOOP("SidebarRows", "Library"), QT_TRANSLATE_NOOP("SidebarRows", "Categories"),
    QT_TRANSLATE_NOOP("SidebarRows", "Libraries"), QT_TRANSLATE_NOOP("SidebarRows", "Places")};

}  // namespace

QString sectionKey(int section) {
    return QString::fromLatin1(sectionNames[size_t(section)]);
}

QString sectionName(int section) {
    return QCoreApplication::translate("SidebarRows", sectionNames[size_t(section)]);
}

QString iconOf(const fs::path& path, const QString& other) {
    const std::string& text = path.native();
    const std::array<std::string_view, 3> mounts = {"/media/", "/run/media/", "/mnt/"};
    return std::ranges::any_of(mounts, [&](auto mount) { return text.starts_with(mount); }) ? "drive" : other;
}

Sections build(const Snapshot& now) {
    Sections sections;
    for (const auto& root : now.roots) {
        sections[Library].push_back(folderRow(SidebarRow::Kind::root, root, "library", now));
        SidebarRow& row = sections[Library].back();
        row.busy = std::ranges::count(now.indexing, root) > 0;
        if (const auto found = now.problems.find(root); found != now.problems.end()) {
            row.problem = QString::fromStdString(found->second);
        }
    }
    SidebarRow add;
    add.kind = SidebarRow::Kind::addFolder;
    add.text = QCoreApplication::translate("SidebarRows", "Add Folder…");
    add.icon = "plus";
    sections[Library].push_back(add);
    sections[Categories] = facets(SidebarRow::Kind::category, now.categories, now.category);
    sections[Libraries] = facets(SidebarRow::Kind::library, now.libraries, now.library);
    for (const auto& place : now.places) {
        sections[Places].push_back(folderRow(SidebarRow::Kind::place, place, "folder", now));
    }
    return sections;
}

QString filesOf(int64_t count) {
    return (count == 1 ? QCoreApplication::translate("SidebarRows", "%1 file")
                       : QCoreApplication::translate("SidebarRows", "%1 files"))
        .arg(number(count));
}

QString footer(bool indexing, int64_t indexed) {
    if (indexing) { return QCoreApplication::translate("SidebarRows", "Indexing…"); }
    return indexed >= 1 ? QCoreApplication::translate("SidebarRows", "%1 indexed").arg(filesOf(indexed)) : QString();
}

QString progress(bool counted, int64_t done, int64_t found) {
    if (found < 1) { return {}; }
    return counted ? QCoreApplication::translate("SidebarRows", "%1 of %2").arg(number(done), filesOf(found))
                   : QCoreApplication::translate("SidebarRows", "%1 found").arg(filesOf(found));
}

}  // namespace brindlehum::SidebarRows
