// LogOwner: the identity of a machine, and the file that keeps a name.
#include "library/team/log_owner.h"

#include <pwd.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <algorithm>
#include <array>
#include <fstream>
#include <random>
#include <string_view>

#include "base/error.h"
#include "base/file_replacement.h"
#include "library/catalog/catalog_location.h"

namespace brindlehum {
namespace {

constexpr size_t identityLength = 12;
constexpr std::string_view hexDigits = "0123456789abcdef";

std::string firstLine(const std::filesystem::path& file) {
    std::string line;
    std::ifstream stream(file);
    std::getline(stream, line);
    return line;
}

// A system's machine id shouldn't be published, so the log's name has a hash of it.
std::string identityOf(const std::string& machineId) {
    const QByteArray text = "Brindlehum change log " + QByteArray::fromStdString(machineId);
    return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex().left(identityLength).toStdString();
}

std::string randomIdentity() {
    std::random_device random;
    std::string identity;
    for (size_t i = 0; i < identityLength; ++i) { identity += hexDigits[random() % hexDigits.size()]; }
    return identity;
}

// "#identity"; empty for a name without one.
std::string markOf(const std::string& name) {
    const size_t at = name.rfind('#');
    const bool isMark = at != std::string::npos && name.size() == at + 1 + identityLength &&
                        name.find_first_not_of(hexDigits, at + 1) == std::string::npos;
    return isMark ? name.substr(at) : "";
}

}  // namespace

LogOwner LogOwner::here() {
    std::array<char, 256> host{};
    if (::gethostname(host.data(), host.size() - 1) != 0 || host[0] == '\0') { host = {"localhost"}; }
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    std::string machineId = firstLine("/etc/machine-id");
    if (machineId.empty()) { machineId = firstLine("/var/lib/dbus/machine-id"); }
    return {found != nullptr ? found->pw_name : std::to_string(::getuid()), host.data(), machineId,
            defaultCatalogFile().parent_path()};
}

std::string LogOwner::name() const {
    const std::string identity = machineId.empty() ? "" : identityOf(machineId);
    // One file for each machine that uses the folder.
    const std::filesystem::path file = dataFolder / (identity.empty() ? "LogOwner" : "LogOwner-" + identity);
    const std::string stored = firstLine(file);
    const std::string mark = markOf(stored);
    if (stored.starts_with(user + "@") && !mark.empty() && (identity.empty() || mark == "#" + identity)) {
        return stored;
    }
    const std::string fresh = user + "@" + host + "#" + (identity.empty() ? randomIdentity() : identity);
    try {
        std::filesystem::create_directories(dataFolder);
        FileReplacement::writeText(file, fresh + "\n", {.waits = true});
    } catch (const std::exception&) {
        if (identity.empty()) { return user + "@" + host; }
        // Goes by the host's present name.
    }
    return fresh;
}

bool LogOwner::isOwn(const std::string& log, const std::string& owner) {
    const std::string mark = markOf(owner);
    const std::string user = owner.substr(0, owner.find('@') + 1);
    return log == owner || log == owner.substr(0, owner.size() - mark.size()) ||
           (!mark.empty() && log.ends_with(mark) && log.starts_with(user));
}

}  // namespace brindlehum
