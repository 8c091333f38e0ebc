// AppModel's connections to the file manager: its selection is loaded, and Space plays or stops it.
#include "app/app_model.h"
#include "audio/probe/audio_file_info.h"

namespace brindlehum {
namespace {

constexpr double trustPeriod = 2;     // seconds, as these
constexpr double inputDelay = 0.05;   // until a key has changed the selection
constexpr double settleBound = 0.04;  // that a press waits for a selection being read

}  // namespace

void AppModel::startFinder() {
    finder_.onState = [this](bool active, const std::optional<ScreenRect>& frame) {
        const auto window = active ? finder_.frontWindow() : std::nullopt;
        Q_EMIT fileManagerWindow(window ? window->id : 0);
        Q_EMIT fileManagerState(active, frame);
        refreshSpace();
    };
    finder_.onSelection = [this](const std::optional<std::filesystem::path>& file) {
        if (file && settings_.value().finderPanel) { loadFromFinder(*file, settings_.value().autoPlay); }
        refreshSpace();
    };
    finder_.onAutomationDenied = [this](bool) { Q_EMIT permissionsChanged(); };
    finder_.onFocus = [this] { refreshSpace(); };
    finder_.start();
    // The press is swallowed already, so it may wait for the selection that it belongs to.
    keyTap_.spaceHandler = [this](bool isRepeat) {
        if (isRepeat) { return; }
        finder_.whenSettled(settleBound, [this] {
            SpaceState state = spaceState();
            state.active = true;  // the file manager has lost the key, whatever has happened since
            state.editing = false;
            pressSpace(state, false);
        });
    };
    keyTap_.showHandler = [this](const auto& file, bool isRepeat) { return showFile(file, isRepeat); };
    keyTap_.finderInput = [this] { finder_.requestSelection(inputDelay); };
    keyTap_.onRefusal = [this] { Q_EMIT permissionsChanged(); };
    connect(&settings_, &SettingsStore::changed, this, &AppModel::refreshSpace);
    watchAccessibility();
}

void AppModel::watchAccessibility() {
    FileManagerWatch* watch = platform_.session.fileManagerWatch();
    axTrusted_ = !watch || watch->isTrusted();
    if (watch && !watch->seesWindows()) { keyTap_.start(); }  // a request for a preview needs no access
    if (!axTrusted_) { return awaitAccessibility(); }
    keyTap_.start();
    refreshSpace();
    if (!watch) { return; }
    // The bus may turn out to be missing only once it has been asked.
    trustTimer_ = platform_.loop.after(trustPeriod, [this, watch] {
        if (watch->isTrusted()) { return; }
        axTrusted_ = false;
        Q_EMIT permissionsChanged();
        awaitAccessibility();
    });
}

void AppModel::awaitAccessibility() {
    FileManagerWatch* watch = platform_.session.fileManagerWatch();
    trustTimer_ = platform_.loop.every(trustPeriod, [this, watch] {
        if (!watch->isTrusted()) { return; }
        trustTimer_.reset();
        axTrusted_ = true;
        keyTap_.start();
        finder_.refreshAX();
        Q_EMIT permissionsChanged();
    });
}

void AppModel::requestAccessibility() {
    if (FileManagerWatch* watch = platform_.session.fileManagerWatch()) { watch->allow(); }
}

SpaceState AppModel::spaceState() const {
    const AppSettings& settings = settings_.value();
    return {finder_.finderActive(), settings.finderPanel, settings.spacePlaysInFinder, finder_.isEditingText(),
            finder_.currentAudio()};
}

void AppModel::refreshSpace() {
    const FileManagerWatch* watch = platform_.session.fileManagerWatch();
    if (watch && watch->seesWindows()) { return keyTap_.setTaken(takesSpace(spaceState()), watch->asksPreviewer()); }
    // Nobody knows for sure what is in front, but a file manager that asks for a preview names the file.
    const AppSettings& settings = settings_.value();
    keyTap_.setTaken(settings.finderPanel && settings.spacePlaysInFinder, true);
}

void AppModel::pressSpace(const SpaceState& state, bool isRepeat) {
    std::optional<std::filesystem::path> loaded;
    if (const auto& info = player_.sound().info()) { loaded = info->url; }
    switch (spaceAction(state, isRepeat, loaded)) {
        case SpaceAction::pass:
        case SpaceAction::nothing:
            break;
        case SpaceAction::toggle:
            player_.togglePlay();
            break;
        case SpaceAction::load:
            loadFromFinder(*state.audio, true);
            break;
    }
}

// The file manager asks by itself and names the file, so its focus and the selection as last read don't matter.
bool AppModel::showFile(const std::filesystem::path& file, bool isRepeat) {
    SpaceState state = spaceState();
    state.active = true;
    state.editing = false;
    state.audio = file;
    if (!takesSpace(state) || !AudioFileInfo::isAudioPath(file)) { return false; }
    pressSpace(state, isRepeat);
    return true;
}

void AppModel::loadFromFinder(const std::filesystem::path& file, bool play) {
    player_.load(file, play, AskedBy::fileManager);
}

}  // namespace brindlehum
