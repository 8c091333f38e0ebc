// LibraryModel: connects the parts of the library.
#include "library/model/library_model.h"

#include <QPointer>
#include <utility>

#include "library/model/places.h"

namespace brindlehum {

namespace {
constexpr const char* waitingText = "Waiting for another program that has locked the library catalog…";
}

LibraryModel::LibraryModel(SettingsStore& settings, MainLoop& loop, const std::filesystem::path& catalogFile)
    : loop_(loop),
      catalogFile_(catalogFile),
      editQueue_(loop, "Brindlehum.edits"),
      infoCache_(loop),
      listing_(loop, nullptr),
      search_(settings, loop, nullptr, realPaths_),
      roots_(settings, loop, nullptr, realPaths_, editQueue_),
      edits_(settings, loop, nullptr, realPaths_, editQueue_) {
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
    openCatalog();
}

LibraryModel::~LibraryModel() {
    editQueue_.stop();
    editQueue_.drain();
}

// On the queue of edits, so that an edit made meanwhile waits for the catalog instead of going without.
void LibraryModel::openCatalog() {
    editQueue_.run([this](const Background::Task& task) { return tryToOpen(task.token()); },
                   [this](const Opening& opening) { opened(opening); });
}

LibraryModel::Opening LibraryModel::tryToOpen(const std::stop_token& stop) {
    const auto sayWaiting = [&loop = loop_, self = QPointer(this)] {
        loop.post([self] {
            if (self) { self->say(waitingText); }
        });
    };
    try {
        catalog_ = std::make_unique<Catalog>(catalogFile_, LockWait{sayWaiting, stop});
        edits_.use(*catalog_);
        return {};
    } catch (const CatalogLocked& error) { return {error.what(), true}; } catch (const std::exception& error) {
        return {error.what(), false};
    }
}

void LibraryModel::opened(const Opening& opening) {
    const std::string before = std::exchange(catalogError_, opening.error);
    if (opening.locked) {
        retry_ = loop_.after(retrySeconds, [this] { openCatalog(); });
    }
    if (opening.error == before && !before.empty()) { return; }
    if (opening.locked) {
        keepSaying("The library catalog can't be opened: " + opening.error +
                   ". Brindlehum keeps trying; folders can still be browsed.");
    } else if (!opening.error.empty()) {
        keepSaying(opening.error + ". Folders can still be browsed.");
    } else {
        isOpen_ = true;
        listing_.use(*catalog_);
        search_.use(*catalog_);
        roots_.use(*catalog_);
        if (!before.empty() || message_ == waitingText) { say({}); }
        catalogChanged();
        roots_.rescanAll();
    }
    Q_EMIT catalogStateChanged();
}

void LibraryModel::keepSaying(const std::string& message) {
    say(message);
    messageEnds_ = TimerHandle();
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
