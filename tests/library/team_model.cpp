// Three machines on one shared folder: random edits, renames, scans, new catalogs, wrong clocks and logs that can't be
// written, compared with a plain list of all that happened.
#include <map>
#include <random>
#include <ranges>
#include <set>
#include <sstream>

#include "library/meta/meta_io.h"
#include "library/team/metadata_save.h"
#include "sound_folder.h"

namespace brindlehum {
namespace {

using namespace test;
using std::chrono::seconds;

int64_t numberFrom(const char* variable, int64_t otherwise) {
    const char* text = std::getenv(variable);
    return text != nullptr ? std::stoll(text) : otherwise;
}

using Values = std::map<std::string, std::string>;  // by tag; what isn't there is empty

struct Event {
    int file = 0;
    Values values;
    EditTime time;
    std::string writer;
    fs::path from = {};  // of a rename
    bool sent = false;
    bool isRename() const { return !from.empty(); }
};

struct Machine {
    std::string owner;
    seconds skew{0};
    fs::path catalogFile;
    std::unique_ptr<Catalog> catalog;
    std::set<size_t> known;  // events in its catalog
    bool blocked = false;    // its log can't be written
};

struct Sound {
    fs::path path;
    bool embeds = false;
    std::vector<fs::path> names;  // former ones
};

const char* const tags[] = {"DESCRIPTION", "KEYWORDS", "RATING"};

class TeamModel : public testing::Test {
protected:
    void start(uint64_t seed) {
        random_.seed(seed);
        home_ = std::make_unique<TempFolder>();
        const fs::path top = canonicalPath(home_->path());
        root_ = top / "shared";
        fs::create_directories(root_);
        for (const char* name : {"a.wav", "b.wav", "c.caf", "d.caf", "e.flac"}) {
            // A WAVE file under a false name: its kind can hold words, but this one can't.
            const FileKind kind = fs::path(name).extension() == ".caf" ? FileKind::caf : FileKind::wav;
            writeAudio(root_ / name, noisePlanes(1, 100), {.kind = kind, .rate = 48000, .bits = 16});
            sounds_.push_back({root_ / name, fs::path(name).extension() == ".wav", {}});
        }
        for (const char* owner : {"ann@one", "bob@two", "cy@three"}) {
            Machine& machine = machines_.emplace_back();
            machine.owner = owner;
            machine.skew = seconds(upTo(20'000)) - seconds(10'000);
            machine.catalogFile = top / owner / "Catalog.sqlite";
            renew(machine);
        }
    }
    int upTo(int count) { return int(random_() % uint64_t(count)); }

    void edit(Machine& machine, int file) {
        const Sound& sound = sounds_[size_t(file)];
        MetadataChanges changes;
        Values values;
        for (const char* tag : tags) {
            if (upTo(3) == 0) { continue; }
            const bool clears = upTo(8) == 0;
            if (std::string(tag) == "RATING") {
                changes.rating = clears ? 0 : 1 + upTo(5);
                values[tag] = std::to_string(*changes.rating);
            } else {
                values[tag] = changes.fields[tag] = clears ? "" : "v" + std::to_string(events_.size());
            }
        }
        if (changes.isEmpty()) { return; }
        const EditTime now = clock_ + machine.skew;
        const auto saved = MetadataSave::save(sound.path, changes, machine.catalog.get(), {root_}, machine.owner, now);
        EXPECT_EQ(saved.embedded, sound.embeds) << sound.path;
        EXPECT_EQ(saved.unshared.has_value(), machine.blocked);
        happened(machine, {file, values, now, machine.owner});
    }

    void rename(Machine& machine, int file) {
        Sound& sound = sounds_[size_t(file)];
        update(machine);
        // Who doesn't know of the last rename takes the words under the old name for those of another file.
        const bool knowsAll = std::ranges::all_of(std::views::iota(size_t{0}, events_.size()), [&](size_t each) {
            return events_[each].file != file || !events_[each].isRename() || machine.known.contains(each);
        });
        const bool back = knowsAll && upTo(3) == 0 && !sound.names.empty();
        const fs::path to = back ? sound.names.back()
                                 : root_ / ("r" + std::to_string(events_.size()) + sound.path.extension().string());
        const auto row = machine.catalog->row(sound.path);
        ASSERT_TRUE(row);
        fs::rename(sound.path, to);
        const EditTime now = clock_ + machine.skew;
        MetadataSave::renamed(*row, to, *machine.catalog, {root_}, machine.owner, now);
        sound.names.push_back(sound.path);
        sound.path = to;
        happened(machine, {file, {}, now, machine.owner, sound.names.back()});
    }

    // A new edit is later than all that its machine knows of the file, whatever its clock says. Without the last
    // rename, it knows nothing of what was before, but that another file has left this path.
    void happened(Machine& machine, Event event) {
        size_t since = 0;
        for (size_t i = 0; i < events_.size(); ++i) {
            if (events_[i].file == event.file && events_[i].isRename() && !machine.known.contains(i)) { since = i + 1; }
        }
        const std::set<fs::path> paths = {event.from, sounds_[size_t(event.file)].path};
        for (const size_t each : machine.known) {
            const Event& before = events_[each];
            if (before.file != event.file || (each < since && !(before.isRename() && paths.contains(before.from)))) {
                continue;
            }
            event.time = std::max(event.time, before.time + EditTime::duration(1));
        }
        const auto& [file, values, now, writer, from, sent] = event;
        story_ << events_.size() << ": " << machine.owner << (machine.blocked ? ", blocked, " : " ")
               << sounds_[size_t(file)].path.filename() << " at " << now.time_since_epoch().count()
               << testing::PrintToString(values) << "\n";
        events_.push_back(event);
        machine.known.insert(events_.size() - 1);
        send(machine);
    }
    void send(const Machine& machine) {
        for (Event& event : events_) {
            if (event.writer == machine.owner && !machine.blocked) { event.sent = true; }
        }
    }

    void pull(Machine& machine) {
        ChangeLog::pull(root_, *machine.catalog, machine.owner);
        send(machine);
        for (size_t i = 0; i < events_.size(); ++i) {
            if (events_[i].sent) { machine.known.insert(i); }
        }
    }
    void scan(Machine& machine) { EXPECT_TRUE(LibraryScanner::scan(root_, *machine.catalog).isWhole()); }
    void update(Machine& machine) {
        scan(machine);
        pull(machine);
    }
    void renew(Machine& machine) {
        if (machine.blocked) { return; }  // what waits there to be sent would be lost
        if (machine.catalog) { pull(machine); }
        machine.catalog.reset();
        fs::remove_all(machine.catalogFile.parent_path());
        machine.catalog = std::make_unique<Catalog>(machine.catalogFile);
        machine.known.clear();
        if (upTo(2) == 0) { scan(machine); }
        pull(machine);
    }
    // A second name of a log keeps its owner from writing to it.
    void block(Machine& machine, bool blocked) {
        const fs::path log = ChangeLog::logFile(root_, machine.owner);
        const fs::path second = root_.parent_path() / (machine.owner + " second");
        if (blocked && !fs::exists(log)) { return; }
        fs::remove(second);
        if (blocked) { fs::create_hard_link(log, second); }
        machine.blocked = blocked;
    }

    void step() {
        clock_ += seconds(1 + upTo(3000));
        Machine& machine = machines_[size_t(upTo(3))];
        const int file = upTo(int(sounds_.size()));
        const int what = upTo(100);
        story_ << machine.owner << " does " << what << "\n";
        if (what < 50) { return edit(machine, file); }
        if (what < 62) { return rename(machine, file); }
        if (what < 82) { return pull(machine); }
        if (what < 90) { return scan(machine); }
        if (what < 94) { return renew(machine); }
        block(machine, what < 97);
    }

    // The last value by (time, writer) for words that only the logs have; in the order of the saves for those that the
    // file holds.
    Values newest(int file) {
        const bool embeds = sounds_[size_t(file)].embeds;
        Values values{{"DESCRIPTION", ""}, {"KEYWORDS", ""}, {"RATING", "0"}};
        std::map<std::string, std::pair<EditTime, std::string>> ranks;
        for (const Event& event : events_) {
            if (event.file != file) { continue; }
            for (const auto& [tag, value] : event.values) {
                const std::pair rank(event.time, event.writer);
                if (!embeds && rank < ranks[tag]) { continue; }
                ranks[tag] = rank;
                values[tag] = value;
            }
        }
        return values;
    }

    void expectAllAgree() {
        for (Machine& machine : machines_) { block(machine, false); }
        for (int turn = 0; turn < 2; ++turn) {
            for (Machine& machine : machines_) { update(machine); }
        }
        renew(machines_[0]);
        update(machines_[0]);
        for (const Machine& machine : machines_) {
            for (size_t file = 0; file < sounds_.size(); ++file) {
                const Sound& sound = sounds_[file];
                const auto row = machine.catalog->row(sound.path);
                ASSERT_TRUE(row) << sound.path;
                const Values found{{"DESCRIPTION", row->meta.description},
                                   {"KEYWORDS", row->meta.keywords},
                                   {"RATING", std::to_string(row->meta.rating)}};
                EXPECT_EQ(found, newest(int(file))) << machine.owner << " " << sound.path;
            }
            EXPECT_EQ(machine.catalog->facets({}).total, int64_t(sounds_.size()));
        }
    }

    std::mt19937_64 random_;
    std::unique_ptr<TempFolder> home_;
    fs::path root_;
    std::vector<Machine> machines_;
    std::vector<Sound> sounds_;
    std::vector<Event> events_;
    std::ostringstream story_;  // for a failed test
    EditTime clock_ = std::chrono::sys_days(std::chrono::year(2024) / 5 / 1);
};

TEST_F(TeamModel, AllMachinesEndWithTheNewestWords) {
    const int64_t seed = numberFrom("BRINDLEHUM_MODEL_SEED", 1);
    const int64_t rounds = numberFrom("BRINDLEHUM_MODEL_ROUNDS", 150);
    SCOPED_TRACE("BRINDLEHUM_MODEL_SEED=" + std::to_string(seed));
    std::cout << "seed " << seed << ", " << rounds << " rounds\n";
    start(uint64_t(seed));
    for (int64_t round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        step();
    }
    expectAllAgree();
    if (HasFailure()) { std::cout << story_.str(); }
}

}  // namespace
}  // namespace brindlehum
