// DragOut: the request that a drag stands for.
#include "mix/player/drag_out.h"

#include <algorithm>

#include "upmix/upmix_presets.h"

namespace brindlehum {
namespace {

// Adds the sound, which is read from the file.
Exporter::Request bound(Exporter::Request request, const FormatOverrides& formats, bool upmixes) {
    request.info = AudioFileInfo::load(request.info.url);
    request.source = formats.find(request.info.url, request.info.channels).value_or(request.info.detected);
    const auto offered = brindlehum::dragOptions(request.source, request.info.channels, upmixes);
    if (std::ranges::find(offered, request.mode) == offered.end()) {
        request.mode = DragExport::original();
        request.listen = ListenMode::normal;
    }
    return request;
}

}  // namespace

DragOut::DragOut(const LoadedSound& sound, const Transport& transport, const ListeningSetup& listening,
                 const SettingsStore& settings, const FormatOverrides& formats, PlayerMessage& message, MainLoop& loop)
    : PullSource(message, loop),
      sound_(sound),
      transport_(transport),
      listening_(listening),
      settings_(settings),
      formats_(formats) {
    connect(&sound, &LoadedSound::sourceChanged, this, [this] { ++readings_; });
}

std::vector<DragExport> DragOut::dragOptions() const {
    const auto& info = sound_.info();
    return brindlehum::dragOptions(sound_.source(), info ? info->channels : 0, listening_.upmix().enabled);
}

void DragOut::setDragExport(DragExport mode) {
    if (mode == mode_) { return; }
    mode_ = mode;
    Q_EMIT changed();
}

std::string DragOut::formName(const DragExport& mode) const {
    if (mode.kind != DragExport::Kind::upmix) { return name(mode); }
    const UpmixSettings& upmix = listening_.upmix();
    const bool isChanged = upmix.params != presetParams(upmix, settings_.value().upmixPresets);
    return name(mode) + " (" + presetName(upmix) + (isChanged ? ", changed)" : ")");
}

void DragOut::checkDragExport() {
    const auto options = dragOptions();
    if (std::ranges::find(options, mode_) == options.end()) { setDragExport(DragExport::original()); }
}

// All but the sound.
Exporter::Request DragOut::unbound() const {
    const AppSettings& settings = settings_.value();
    const UpmixSettings& upmix = listening_.upmix();
    return {.info = {},
            .mode = mode_,
            .rotation = listening_.rotation(),
            .listen = listening_.listen(),
            .monoToCenter = settings.monoToCenter,
            .folder = settings.pulls(),
            .upmix = upmix.params,
            .upmixName = presetName(upmix),
            .loop = transport_.loop(),
            .asFloat = settings.pullsAsFloat};
}

std::optional<Exporter::Request> DragOut::request(bool selectionOnly) const {
    const auto& info = sound_.info();
    const auto source = sound_.source();
    if (!info || !source) { return std::nullopt; }
    Exporter::Request asked = unbound();
    asked.info = *info;
    asked.source = *source;
    if (selectionOnly) { asked.range = transport_.selection(); }
    return asked;
}

std::shared_ptr<ExportJob> DragOut::startExport(const std::filesystem::path& file) {
    Exporter::Request asked = unbound();
    asked.info.url = file;
    const auto fill = [formats = formats_, upmixes = listening_.upmix().enabled](Exporter::Request request) {
        return bound(std::move(request), formats, upmixes);
    };
    return queue().start(asked, ExportQueue::Hold::untilKept, {fill, readings_});
}

}  // namespace brindlehum
