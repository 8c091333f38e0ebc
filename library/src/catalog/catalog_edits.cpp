// CatalogEdits: the tables `edits` and `moves`.
#include "library/catalog/catalog_edits.h"

#include <charconv>

#include "base/error.h"
#include "catalog/catalog_parts.h"

namespace brindlehum {

namespace {

EditTime timeOf(int64_t microseconds) {
    return EditTime(std::chrono::microseconds(microseconds));
}

int64_t numberOf(EditTime time) {
    return time.time_since_epoch().count();
}

// The columns must begin with field, value, time, writer, embedded, unsent.
FieldEdit readEdit(const Statement& row) {
    return {.field = std::string(row.text(0)),
            .value = std::string(row.text(1)),
            .time = timeOf(row.integer(2)),
            .writer = std::string(row.text(3)),
            .embedded = row.integer(4) != 0,
            .unsent = row.integer(5) != 0};
}

std::vector<FieldEdit> readEdits(Statement& select, const std::string& path) {
    std::vector<FieldEdit> edits;
    for (select.bind(path); select.step();) { edits.push_back(readEdit(select)); }
    select.reset();
    return edits;
}

struct Move {
    std::string target;
    EditTime time;
};

}  // namespace

void apply(const FieldEdit& edit, SoundMeta& meta) {
    if (edit.field == FieldEdit::rating) {
        std::from_chars(edit.value.data(), edit.value.data() + edit.value.size(), meta.rating);
    } else if (const SoundMeta::Tag* tag = SoundMeta::tag(edit.field)) {
        meta.*tag->field = edit.value;
    }
}

SoundMeta Catalog::Parts::over(Statement& findEdits, const std::string& path, SoundMeta held) {
    for (const FieldEdit& edit : readEdits(findEdits, path)) {
        if (!edit.embedded) { apply(edit, held); }
    }
    return held;
}

CatalogEdits::CatalogEdits(Catalog& catalog) : catalog_(catalog) {}

SoundMeta CatalogEdits::over(const std::string& path, SoundMeta held) const {
    try {
        const ReaderPool::Lease lease = catalog_.parts_->readers.lease();
        Statement select(*lease, Catalog::Parts::findEditsText);
        return Catalog::Parts::over(select, path, std::move(held));
    } catch (const Error&) { return held; }
}

std::vector<CatalogEdits::Unsent> CatalogEdits::unsent(const std::string& root) const {
    std::vector<Unsent> all;
    try {
        const ReaderPool::Lease lease = catalog_.parts_->readers.lease();
        Statement select(*lease,
                         "SELECT field, value, time, writer, embedded, unsent, path, (SELECT source FROM moves "
                         "WHERE target = edits.path AND time = edits.time) FROM edits WHERE root = ? AND unsent "
                         "ORDER BY time, path, embedded");
        for (select.bind(root); select.step();) {
            FieldEdit edit = readEdit(select);
            const std::string path(select.text(6)), from(select.text(7));
            const auto belongs = [&](const Unsent& last) {
                return last.path == path && last.time == edit.time && last.edits[0].embedded == edit.embedded;
            };
            if (all.empty() || !belongs(all.back())) {
                all.push_back({path, edit.time, from.empty() ? std::nullopt : std::optional(from), {}});
            }
            all.back().edits.push_back(std::move(edit));
        }
    } catch (const Error&) {
        // The next call finds them again.
    }
    return all;
}

std::vector<FieldEdit> CatalogEdits::of(const std::string& path) const {
    return readEdits(catalog_.parts_->findEdits, path);
}

bool CatalogEdits::merge(const std::string& path, const std::string& root, const FieldEdit& edit) {
    Catalog::Parts& parts = *catalog_.parts_;
    parts.expect(parts.mergeEdit
                     .bind(path, edit.field, root, edit.value, numberOf(edit.time), edit.writer, int(edit.embedded),
                           int(edit.unsent))
                     .run());
    parts.mergeEdit.reset();
    return sqlite3_changes(parts.writer.handle()) > 0;
}

void CatalogEdits::markSent(const std::string& path, EditTime time) {
    Catalog::Parts& parts = *catalog_.parts_;
    Statement update(parts.writer, "UPDATE edits SET unsent = 0 WHERE path = ? AND time = ?");
    parts.expect(update.bind(path, numberOf(time)).run());
}

EditTime CatalogEdits::newest(const std::string& path) const {
    Statement select(catalog_.parts_->writer,
                     "SELECT max(ifnull((SELECT max(time) FROM edits WHERE path = ?1), 0), "
                     "ifnull((SELECT max(time) FROM moves WHERE source = ?1), 0))");
    return timeOf(select.bind(path).step() ? select.integer(0) : 0);
}

std::set<std::string> CatalogEdits::rename(const std::string& from, const std::string& to, const std::string& root,
                                           EditTime time, const Exists& exists) {
    std::set<std::string> touched;
    Catalog::Parts& parts = *catalog_.parts_;
    Statement insert(parts.writer,
                     "INSERT INTO moves (source, target, root, time) VALUES (?, ?, ?, ?) ON CONFLICT DO NOTHING");
    parts.expect(insert.bind(from, to, root, numberOf(time)).run());
    Statement remove(parts.writer, "DELETE FROM edits WHERE path = ? AND field = ?");
    for (const FieldEdit& edit : of(from)) {
        const auto path = current(from, edit.time, exists);
        if (path == from) { continue; }
        if (path && merge(*path, root, edit)) { touched.insert(*path); }
        parts.expect(remove.bind(from, edit.field).run());
        touched.insert(from);
    }
    return touched;
}

std::optional<std::string> CatalogEdits::current(const std::string& path, EditTime time, const Exists& exists) const {
    Statement select(catalog_.parts_->writer,
                     "SELECT target, time FROM moves WHERE source = ? AND time > ? ORDER BY time DESC LIMIT 1");
    std::string at = path;
    // Only renames that are later than the one before: a file that was given its old name again ends the search.
    for (int64_t after = 0; select.bind(at, after).step();) {
        const Move move{std::string(select.text(0)), timeOf(select.integer(1))};
        if (move.time >= time) { return std::nullopt; }
        if (exists(at)) { break; }
        at = move.target;
        after = numberOf(move.time);
    }
    return at;
}

}  // namespace brindlehum
