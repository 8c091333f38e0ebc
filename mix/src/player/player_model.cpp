// PlayerModel: passes each part's changes on to the others.
#include "mix/player/player_model.h"

namespace brindlehum {

PlayerModel::PlayerModel(PlaybackEngine& engine, SettingsStore& settings, MainLoop& loop, WorkerPool& pool,
                         Transport::OpenSource open)
    : message_(loop),
      seat_(engine, {[this] { transport_.deviceChanged(); }, [this] { listening_.publish(); },
                     [this] { transport_.seatLost(); }}),
      formats_(settings.defaults()),
      sound_(loader_, loop, pool, formats_),
      listening_(seat_, settings, loop, sound_, message_),
      transport_(seat_, loader_, loop, sound_, listening_, message_, open),
      upmix_(listening_, settings),
      compare_(engine, listening_, sound_, transport_, message_, loop, std::move(open)),
      upmixLevels_(engine, listening_, transport_, loop),
      dragOut_(sound_, transport_, listening_, settings, formats_, message_, loop),
      meter_(engine, settings, loop, transport_),
      loader_(loop, "Brindlehum.loader") {
    wire();
}

void PlayerModel::wire() {
    connect(&sound_, &LoadedSound::replacing, this, [this] {
        message_.clear();
        transport_.reset();
    });
    // Resets once more, because the user may have started the previous sound while this one was being probed.
    connect(&sound_, &LoadedSound::replaced, &transport_, &Transport::reset);
    connect(&sound_, &LoadedSound::fileReplaced, &transport_, &Transport::fileReplaced);
    connect(&sound_, &LoadedSound::sourceChanged, this, [this] { listening_.publish(); });
    connect(&sound_, &LoadedSound::playAsked, this, [this] {
        if (!transport_.isPlaying()) { transport_.play(std::nullopt); }
    });
    connect(&sound_, &LoadedSound::failed, this, [this](const std::string& text) { message_.fail(text); });
    connect(&listening_, &ListeningSetup::profileSelected, this, [this] { transport_.profileChanged(); });
    for (const auto signal : {&LoadedSound::sourceChanged, &LoadedSound::changed}) {
        connect(&sound_, signal, &dragOut_, &DragOut::checkDragExport);
    }
    connect(&listening_, &ListeningSetup::changed, &dragOut_, &DragOut::checkDragExport);
    connect(&sound_, &LoadedSound::changed, this, &PlayerModel::changed);
    connect(&listening_, &ListeningSetup::changed, this, &PlayerModel::changed);
    connect(&listening_, &ListeningSetup::outputsChanged, this, &PlayerModel::changed);
    connect(&transport_, &Transport::changed, this, &PlayerModel::changed);
    connect(&dragOut_, &DragOut::changed, this, &PlayerModel::changed);
    connect(&message_, &PlayerMessage::changed, this, &PlayerModel::changed);
}

}  // namespace brindlehum
