// LibrarySettings: the folders of the library as a form.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <utility>
#include <vector>

class QLabel;

namespace brindlehum {

class LibraryRoots;
class LibrarySearch;
class SettingsStore;

class LibrarySettings : public QWidget {
    Q_OBJECT
public:
    // `addFolder` lets the user choose folders and adds them.
    LibrarySettings(SettingsStore& settings, LibraryRoots& roots, LibrarySearch& search,
                    std::function<void()> addFolder);

private:
    QWidget* makeButtons(std::function<void()> addFolder);
    void refreshRows();
    QWidget* makeRow(const std::string& root, const std::string& problem);
    void refreshState();

    SettingsStore& settings_;
    LibraryRoots& roots_;
    LibrarySearch& search_;
    std::vector<std::pair<std::string, std::string>> shown_;  // the roots that have rows, and what is wrong with them
    QWidget* list_;
    QLabel* state_;
};

}  // namespace brindlehum
