// LibraryModel: connects the parts of the library.
#include "library/model/library_model.h"

#include "library/model/places.h"

namespace brindlehum {
namespace {

std::unique_ptr<Catalog> openCatalog(const std::filesystem::path& file, std::string& error) {
    try {
        return std::make_unique<Catalog>(file);
    } catch (const std::exception& failure) {
        error = failure.what();
        return nullptr;
    }
}

}  // namespace

LibraryModel::LibraryModel(SettingsStore& settings, MainLoop& loop, const std::filesystem::path& catalogFile)
    : loop_(loop),
      catalog_(openCatalog(catalogFile, catalogError_)),
      editQueue_(loop, "Brindlehum.edits"),
      infoCache_(loop),
      listing_(loop, catalog_.get()),
      search_(settings, loop, catalog_.get(), realPaths_),
      roots_(settings, loop, catalog_.get(), realPaths_, editQueue_),
      edits_(settings, loop, catalog_.get(), realPaths_, editQueue_) {
    if (!catalog_) { message_ = catalogError_ + ". Folders can still be browsed."; }
    connect(&roots_, &LibraryRoots::catalogChanged, this, &LibraryModel::catalogChanged);
    connect(&edits_, &MetadataEdits::catalogChanged, this, &LibraryModel::catalogChanged);
    connect(&edits_, &MetadataEdits::renamed, &roots_, &LibraryRoots::rescanAll);
    connect(&edits_, &MetadataEdits::said, this, &LibraryModel::say);
    connect(&roots_, &LibraryRoots::said, this, &LibraryModel::say);
    connect(&roots_, &LibraryRoots::unsaid, this, [this](const std::string& message) {
        if (message_ == message) { say({}); }
    });
    const auto& roots = settings.value().libraryRoots;
    listing_.open(roots.empty() ? musicFolder() : std::filesystem::path(roots.front()));
    search_.refresh();
    roots_.rescanAll();
}

LibraryModel::~LibraryModel() {
    editQueue_.stop();
    editQueue_.drain();
}

void LibraryModel::say(const std::string& message) {
    message_ = message;
    messageEnds_ = message.empty() ? TimerHandle() : loop_.after(readingSeconds, [this] { say({}); });
    Q_EMIT messageChanged();
}

void LibraryModel::catalogChanged() {
    search_.refresh();
    listing_.refresh();
}

bool LibraryModel::isBusy() const {
    return editQueue_.pending() > 0 || listing_.isBusy() || search_.isBusy() || roots_.isScanning() ||
           roots_.isAsking() || edits_.isReading();
}

}  // namespace brindlehum
