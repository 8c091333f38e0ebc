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

std::optional<Move> oneMove(Statement& select) {
    if (!select.step()) { return std::nullopt; }
    return Move{std::string(select.text(0)), timeOf(select.integer(1))};
}

std::optional<Move> lastMove(const Database& database, const std::string& source) {
    Statement select(database, "SELECT target, time FROM moves WHERE source = ? ORDER BY time DESC LIMIT 1");
    return oneMove(select.bind(source));
}

std::optional<Move> nextMove(const Database& database, const std::string& source, EditTime after) {
    Statement select(database, "SELECT target, time FROM moves WHERE source = ? AND time > ? ORDER BY time LIMIT 1");
    return oneMove(select.bind(source, numberOf(after)));
}

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

CatalogEdits::Unsent CatalogEdits::unsent(const std::string& root) const {
    Unsent unsent;
    try {
        const ReaderPool::Lease lease = catalog_.parts_->readers.lease();
        Statement edits(
            *lease,
            "SELECT field, value, time, writer, embedded, unsent, path FROM edits WHERE root = ? AND unsent "
            "ORDER BY time, path, embedded");
        for (edits.bind(root); edits.step();) {
            FieldEdit edit = readEdit(edits);
            const std::string path(edits.text(6));
            const auto belongs = [&](const FileEdit& last) {
                return last.path == path && last.fields[0].time == edit.time &&
                       last.fields[0].embedded == edit.embedded;
            };
            if (unsent.edits.empty() || !belongs(unsent.edits.back())) { unsent.edits.push_back({path, {}}); }
            unsent.edits.back().fields.push_back(std::move(edit));
        }
        Statement moves(*lease, "SELECT source, target, time FROM moves WHERE root = ? AND unsent ORDER BY time");
        for (moves.bind(root); moves.step();) {
            unsent.renames.push_back(
                {std::string(moves.text(0)), std::string(moves.text(1)), timeOf(moves.integer(2)), true});
        }
    } catch (const Error&) {
        // The next call finds them again.
    }
    return unsent;
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

void CatalogEdits::setUnsent(const std::string& path, EditTime time, bool unsent) {
    Catalog::Parts& parts = *catalog_.parts_;
    for (const char* text : {"UPDATE edits SET unsent = ? WHERE path = ? AND time = ?",
                             "UPDATE moves SET unsent = ? WHERE target = ? AND time = ?"}) {
        parts.expect(Statement(parts.writer, text).bind(int(unsent), path, numberOf(time)).run());
    }
}

EditTime CatalogEdits::newest(const std::string& path) const {
    Statement select(catalog_.parts_->writer,
                     "SELECT max(ifnull((SELECT max(time) FROM edits WHERE path = ?1), 0), "
                     "ifnull((SELECT max(time) FROM moves WHERE source = ?1), 0))");
    return timeOf(select.bind(path).step() ? select.integer(0) : 0);
}

std::set<std::string> CatalogEdits::rename(const Rename& rename, const std::string& root, const Exists& exists) {
    Catalog::Parts& parts = *catalog_.parts_;
    Statement insert(parts.writer,
                     "INSERT INTO moves (source, target, time, root, unsent) VALUES (?, ?, ?, ?, ?) "
                     "ON CONFLICT DO NOTHING");
    parts.expect(insert.bind(rename.from, rename.to, numberOf(rename.time), root, int(rename.unsent)).run());
    std::set<std::string> touched;
    Statement remove(parts.writer, "DELETE FROM edits WHERE path = ? AND field = ?");
    const std::string path = follow(rename.to, rename.time, exists);
    for (const FieldEdit& edit : of(rename.from)) {
        if (path == rename.from || (edit.time > rename.time && exists(rename.from))) { continue; }
        if (merge(path, root, edit)) { touched.insert(path); }
        parts.expect(remove.bind(rename.from, edit.field).run());
        touched.insert(rename.from);
    }
    return touched;
}

std::string CatalogEdits::current(const std::string& path, EditTime time, const Exists& exists) const {
    const Database& writer = catalog_.parts_->writer;
    auto move = nextMove(writer, path, time - EditTime::duration(1));
    if (!move && !exists(path)) { move = lastMove(writer, path); }
    return move ? follow(move->target, move->time, exists) : path;
}

std::string CatalogEdits::follow(std::string at, EditTime came, const Exists& exists) const {
    const Database& writer = catalog_.parts_->writer;
    std::set<std::string> left;
    while (true) {
        // The next rename of this file is later than the one that brought it here; by a wrong clock, it may be earlier.
        auto move = nextMove(writer, at, came);
        if (!move && !left.contains(at) && !exists(at)) { move = lastMove(writer, at); }
        if (!move) { return at; }
        left.insert(at);
        at = move->target;
        came = move->time;
    }
}

}  // namespace brindlehum
