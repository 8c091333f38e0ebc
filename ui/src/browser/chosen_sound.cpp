// Carries out what ChosenState decides: loads files, opens folders, marks rows.
#include "ui/browser/chosen_sound.h"

#include "library/model/folder_listing.h"
#include "library/model/info_cache.h"
#include "library/model/library_search.h"
#include "library/model/metadata_edits.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/transport.h"
#include "settings/settings_store.h"
#include "ui/browser/browser_place.h"
#include "ui/browser/browser_table.h"

namespace brindlehum {

namespace fs = std::filesystem;

ChosenSound::ChosenSound(const BrowserParts& parts, BrowserTable& table, QObject* parent)
    : QObject(parent), parts_(parts), table_(table) {
    connect(&parts.sound, &LoadedSound::changed, this, [this] {
        const auto& info = parts_.sound.info();
        if (!info) { return; }
        parts_.infos.learn(*info);
        carryOut(advance(ChosenState::Loaded{info->url, parts_.sound.askedBy() == AskedBy::fileManager}));
    });
    connect(&parts.edits, &MetadataEdits::renamed, this, [this](const MetadataEdits::Moves& moves) {
        ChosenState::Renamed event;
        for (const auto& move : moves) { event.moves.emplace_back(move.from, move.to); }
        carryOut(advance(event));
    });
}

ChosenState::Action ChosenSound::advance(const ChosenState::Event& event) {
    const ChosenState::View view{parts_.listing.folder(), parts_.search.isSearching(), parts_.listing.isListing(),
                                 [this](const fs::path& file) { return table_.rows().rowOf(file) >= 0; }};
    auto [next, action] = state_.step(event, view);
    state_ = std::move(next);
    return action;
}

void ChosenSound::carryOut(const ChosenState::Action& action) {
    for (const auto& [from, to] : action.renames) { parts_.sound.rename(from, to); }
    if (action.deselect) { table_.deselect(); }
    if (!action.openFolder.empty()) { openFolder(action.openFolder); }
    if (action.relist) { parts_.listing.refresh(); }
    if (!action.mark.empty()) { table_.mark(action.mark); }
}

void ChosenSound::selected() {
    advance(ChosenState::Selected{});
}

void ChosenSound::audition(const fs::path& file) {
    advance(ChosenState::Requested{file});
    parts_.sound.load(file, parts_.settings.value().autoPlay);
}

void ChosenSound::play(const fs::path& file) {
    advance(ChosenState::Requested{file});
    parts_.sound.load(file, false);
    parts_.transport.play(std::nullopt);
}

void ChosenSound::open(const fs::path& file) {
    reveal(file);
    audition(file);
}

void ChosenSound::reveal(const fs::path& file) {
    carryOut(advance(ChosenState::Reveal{file}));
}

// Opens before it ends the search, or the rows of the old folder would arrive in between and end a reveal.
void ChosenSound::openFolder(const fs::path& folder) {
    parts_.listing.open(folder);
    parts_.search.clearFilters();
}

void ChosenSound::showRows(std::vector<BrowserEntry> rows, const BrowserPlace& place) {
    const auto action = advance(ChosenState::RowsArrive{rows});
    table_.showEntries(std::move(rows), place, action.select);
    if (!action.mark.empty()) { table_.mark(action.mark); }
}

}  // namespace brindlehum
