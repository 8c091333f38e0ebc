// AppModel: construction, connections, and actions that involve several models.
#include "app/app_model.h"

#include <QPointer>
#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <thread>

#include "library/meta/carried_notes.h"
#include "mix/render/hrtf_set.h"

namespace brindlehum {

namespace {

int poolThreads() {
    return int(std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
}

}  // namespace

AppModel::AppModel(Platform platform)
    : platform_(platform),
      pool_(poolThreads()),
      settings_(platform.defaults),
      bars_(platform.defaults),
      engine_(platform.audio, platform.loop),
      finder_(platform.session.fileManagerWatch(), platform.loop),
      keyTap_(platform.session.keyGrab(), platform.session.filePreviewer()),
      axTrusted_(!platform.session.fileManagerWatch() || platform.session.fileManagerWatch()->isTrusted()),
      player_(engine_, settings_, platform.loop, pool_),
      editor_(engine_, settings_, platform.loop,
              platform.journals.empty() ? EditorModel::defaultJournals() : platform.journals, tempEditQueue_,
              platform.session.http(), platform.session.secrets()),
      speakerTest_(engine_, platform.loop),
      library_(settings_, platform.loop, platform.catalogFile),
      monitor_(platform.audio, settings_, platform.loop),
      tempEdits_(player_, settings_, bars_, platform.session.fileManager(), platform.loop, tempEditQueue_),
      links_(platform.session.childProcesses(), player_.message(), settings_, platform.loop),
      media_(platform.session.mediaSession(), player_, editor_.transport(), settings_, platform.loop),
      daw_(platform.session.applications(), platform.daws),
      commands_(player_, settings_, tempEdits_, editor_.transport(), monitor_, daw_,
                {[this](const auto& file) { openEditor(file); },
                 [this](const auto& link) { link ? links_.open(*link) : openCopiedLink(); }}),
      disk_(platform.loop, "Brindlehum.look") {}

AppModel::~AppModel() {
    platform_.defaults.setOnProblem(nullptr);
}

void AppModel::start(uint16_t controlPort) {
    control_.handler = [this](const std::string& command, const ControlParams& params) {
        return handle(command, params);
    };
    control_.start(controlPort);
    startFinder();
    platform_.defaults.setOnProblem([&loop = platform_.loop, self = QPointer(this)] {
        loop.post([self] {
            if (self) { Q_EMIT self->settingsProblemChanged(); }
        });
    });
    connect(&settings_, &SettingsStore::changed, this, [this](const AppSettings& now, const AppSettings& before) {
        player_.profileChanged();
        if (now.hrtfFile != before.hrtfFile) { useHRTFSet(); }
    });
    if (!settings_.value().hrtfFile.empty()) { useHRTFSet(); }
    connect(&player_.listening(), &ListeningSetup::outputsChanged, this,
            [this] { player_.listening().chooseFirstProfile(); });
    player_.listening().chooseFirstProfile();
    links_.arrived = [this](const auto& file, const auto& link) { linkArrived(file, link); };
    media_.start([this] { openWindow("main"); }, [this] { quitAction ? quitAction() : void(); });
    editor_.music().findBars = [this](const auto& file) { return bars_.find(file); };
    editor_.music().keepBars = [this](const auto& file, const GivenBars& given) { bars_.set(file, given); };
    editor_.document().readNotes = [](const std::filesystem::path& file) {
        return carriedNotes(file, 0, std::numeric_limits<int64_t>::max());
    };
    player_.dragOut().queue().setCarry([](const std::filesystem::path& source, const FrameRange& range) {
        return carriedNotes(source, range.lower, range.upper);
    });
    connect(&library_.edits(), &MetadataEdits::renamed, this, [this](const MetadataEdits::Moves& moves) {
        for (const auto& move : moves) {
            player_.formats().rename(move.from, move.to);
            bars_.rename(move.from, move.to);
        }
    });
}

void AppModel::open(const StartRequest& request) {
    const bool isFolder = !request.files.empty() && disk_.isFolder(request.files.front()).value_or(false);
    const bool edits = request.aim == StartAim::edit && !request.files.empty() && !isFolder;
    if (request.aim == StartAim::tempEdits) {
        makeTempEdits(request.files);
    } else if (isFolder) {
        showFolder(request.files.front());
    } else if (edits) {
        openEditor(request.files.front());
    } else if (!request.files.empty()) {
        player_.load(request.files.front(), request.aim == StartAim::play || settings_.value().autoPlay);
    }
    if (!request.problems.empty()) { player_.message().fail(request.problems.front()); }
    if (!edits && request.aim != StartAim::stayQuiet) { openWindow("main"); }
}

void AppModel::useHRTFSet() {
    HRTFSet::setOwn(settings_.value().hrtfFile);
    engine_.renewBinaural();
    monitor_.renewBinaural();
    player_.listening().publish();
}

// The file says where it came from.
void AppModel::linkArrived(const std::filesystem::path& file, const std::string& link) {
    player_.load(file, true);
    showFolder(file.parent_path());
    library_.edits().save({{{"SOURCEID", link}}, std::nullopt}, {file});
}

void AppModel::showFolder(const std::filesystem::path& folder) {
    library_.search().clearFilters();
    library_.listing().open(folder);
}

void AppModel::openWindow(const std::string& id) {
    if (openWindowAction) { openWindowAction(id); }
}

void AppModel::openEditor(const std::optional<std::filesystem::path>& file) {
    if (file && openInEditorAction) {
        openInEditorAction(*file);
    } else if (file && !editor_.document().isDirty()) {
        editor_.document().open(*file);
    }
    openWindow("editor");
}

void AppModel::addLibraryFolder() {
    if (!chooseFoldersAction) { return; }
    chooseFoldersAction([self = QPointer(this)](const std::vector<std::filesystem::path>& folders) {
        if (self) { self->addLibraryFolders(folders); }
    });
}

void AppModel::addLibraryFolders(const std::vector<std::filesystem::path>& folders) {
    if (folders.empty()) { return; }
    for (const auto& folder : folders) { library_.roots().add(folder); }
    showFolder(folders.front());
}

std::unique_ptr<PieceBars> AppModel::barsOf(const std::filesystem::path& file) {
    return std::make_unique<PieceBars>(file, bars_, platform_.loop);
}

nlohmann::json AppModel::handle(const std::string& command, const ControlParams& params) {
    return commands_.handle(command, params);
}

}  // namespace brindlehum
