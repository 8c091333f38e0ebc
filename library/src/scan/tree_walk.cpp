// Tree walk: lists folder by folder, and looks at each item only once.
#include "scan/tree_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

#include "audio/probe/audio_file_info.h"
#include "catalog/file_stamp.h"

namespace brindlehum {
namespace {

constexpr std::string_view changeLogFolder = ".brindlehum";

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

Folder openFolder(const char* path, int extraFlags) {
    const int descriptor = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | extraFlags);
    if (descriptor < 0) { return nullptr; }
    DIR* folder = ::fdopendir(descriptor);
    if (folder == nullptr) { ::close(descriptor); }
    return Folder(folder);
}

// True when the error means that the item is gone or was replaced.
bool meansGone(int error) {
    return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

// The folder that every ext4 volume has for its repair.
bool isOfTheSystem(const std::string& folder, int error) {
    return error == EACCES && folder.ends_with("/lost+found");
}

bool hasSoundExtension(std::string_view name) {
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) { return false; }
    const std::string_view extension = name.substr(dot + 1);
    return std::ranges::any_of(AudioFileInfo::audioExtensions, [&](std::string_view known) {
        return std::ranges::equal(extension, known, [](char c, char lower) {
            return (c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c) == lower;
        });
    });
}

class Walker {
public:
    Walker(const std::vector<std::string>& leftOut, const std::stop_token& stop,
           const std::function<void(const std::string&, const Catalog::Stamp&)>& onFile)
        : leftOut_(leftOut), stop_(stop), onFile_(onFile) {}

    TreeWalk walk(const std::string& root) {
        Folder top = openFolder(root.c_str(), 0);
        if (!top) {
            result_.openError = errno;
            return std::move(result_);
        }
        struct stat before {};
        const bool known = ::fstat(::dirfd(top.get()), &before) == 0;
        list(top.get(), root == "/" ? "" : root, true);
        top.reset();
        while (!waiting_.empty() && !stop_.stop_requested()) {
            const std::string path = std::move(waiting_.back());
            waiting_.pop_back();
            if (const Folder folder = openFolder(path.c_str(), O_NOFOLLOW)) {
                list(folder.get(), path, false);
            } else if (!meansGone(errno) && !isOfTheSystem(path, errno)) {
                result_.unread.push_back({path, errno});
            }
        }
        struct stat after {};
        result_.exchanged = !known || ::stat(root.c_str(), &after) != 0 || after.st_dev != before.st_dev ||
                            after.st_ino != before.st_ino;
        return std::move(result_);
    }

private:
    void list(DIR* folder, const std::string& path, bool isRoot) {
        path_ = path + "/";
        const size_t folderLength = path_.size();
        bool isEmpty = !isRoot;
        while (true) {
            errno = 0;
            const dirent* item = ::readdir(folder);
            if (item == nullptr) { break; }
            const std::string_view name = item->d_name;
            if (name == "." || name == "..") { continue; }
            isEmpty = false;
            if (name.starts_with('.')) {
                result_.anythingThere |= isRoot && name == changeLogFolder;
                continue;
            }
            result_.anythingThere = true;
            path_.resize(folderLength);
            path_ += name;
            take(::dirfd(folder), *item);
        }
        if (errno != 0) {
            result_.unread.push_back({path, errno});
        } else if (isEmpty) {
            result_.empty.push_back(path);
        }
    }

    // Handles the item at path_.
    void take(int folder, const dirent& item) {
        const bool isSound = hasSoundExtension(item.d_name);
        if (item.d_type == DT_DIR) { return enter(); }
        if (item.d_type != DT_UNKNOWN && (item.d_type != DT_REG || !isSound)) { return; }
        struct stat facts {};
        if (::fstatat(folder, item.d_name, &facts, AT_SYMLINK_NOFOLLOW) != 0) {
            if (!meansGone(errno)) { result_.unread.push_back({path_, errno}); }
        } else if (S_ISDIR(facts.st_mode)) {
            enter();
        } else if (S_ISREG(facts.st_mode) && isSound) {
            onFile_(path_, stampOf(facts));
        }
    }

    void enter() {
        if (std::ranges::find(leftOut_, path_) == leftOut_.end()) { waiting_.push_back(path_); }
    }

    const std::vector<std::string>& leftOut_;
    const std::stop_token& stop_;
    const std::function<void(const std::string&, const Catalog::Stamp&)>& onFile_;
    TreeWalk result_;
    std::vector<std::string> waiting_;  // folders still to be listed
    std::string path_;                  // of the current item
};

}  // namespace

TreeWalk walkTree(const std::string& root, const std::vector<std::string>& leftOut, const std::stop_token& stop,
                  const std::function<void(const std::string& path, const Catalog::Stamp& stamp)>& onFile) {
    return Walker(leftOut, stop, onFile).walk(root);
}

}  // namespace brindlehum
