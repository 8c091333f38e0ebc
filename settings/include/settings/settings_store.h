// SettingsStore: the settings as an observable value, saved to the user defaults at each change.
#pragma once

#include <QObject>

#include "settings/app_settings.h"
#include "settings/user_defaults.h"

namespace brindlehum {

// Main thread. Background work gets a copy of the value.
class SettingsStore : public QObject {
    Q_OBJECT
public:
    // Loads "settings.v1". If the data is missing or unreadable, uses the defaults and writes nothing.
    explicit SettingsStore(UserDefaults& defaults);

    const AppSettings& value() const { return value_; }
    // Stores and announces a record that differs from the current one; ignores an equal one.
    void setValue(const AppSettings& next);
    // Changes one field at a time: store.change([](AppSettings& s) { s.autoPlay = false; }).
    template <typename Edit>
    void change(Edit edit) {
        AppSettings next = value_;
        edit(next);
        setValue(next);
    }
    // Where it is stored, for other values of the same user.
    UserDefaults& defaults() const { return defaults_; }
    const OutputProfile& activeProfile() const { return value_.activeProfile(); }

Q_SIGNALS:
    void changed(const brindlehum::AppSettings& now, const brindlehum::AppSettings& before);

private:
    UserDefaults& defaults_;
    AppSettings value_;
};

}  // namespace brindlehum
