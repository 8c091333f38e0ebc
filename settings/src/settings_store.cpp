// SettingsStore: loads once, saves at each change.
#include "settings/settings_store.h"

#include <exception>
#include <utility>

namespace brindlehum {

namespace {

// The key carries the version of the record; the record doesn't.
constexpr const char* storageKey = "settings.v1";

AppSettings load(const UserDefaults& defaults) {
    const std::optional<std::string> text = defaults.data(storageKey);
    return (text ? AppSettings::decode(*text) : std::nullopt).value_or(AppSettings());
}

}  // namespace

SettingsStore::SettingsStore(UserDefaults& defaults) : defaults_(defaults), value_(load(defaults)) {}

void SettingsStore::setValue(const AppSettings& next) {
    if (next == value_) { return; }
    const AppSettings before = std::exchange(value_, next);
    try {
        defaults_.set(storageKey, next.encode());
    } catch (const std::exception&) {
        // A record that can't be encoded is valid for this run only; the stored one stays as it was.
    }
    // Pass `next`, not value_, since a receiver may change the settings again.
    Q_EMIT changed(next, before);
}

}  // namespace brindlehum
