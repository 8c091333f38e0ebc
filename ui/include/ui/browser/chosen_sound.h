// ChosenSound: the one owner of the sound that is chosen: carries ChosenState's steps out between table and player.
#pragma once

#include <QObject>
#include <filesystem>

#include "ui/browser/browser_parts.h"
#include "ui/browser/chosen_state.h"

namespace brindlehum {

class BrowserTable;
struct BrowserPlace;

// Main thread. Follows what is loaded and renamed elsewhere, too: a file that another program or the control port
// opened is marked in its folder, a renamed one stays selected and loaded.
class ChosenSound : public QObject {
    Q_OBJECT
public:
    ChosenSound(const BrowserParts& parts, BrowserTable& table, QObject* parent = nullptr);

    // The user selected other rows: stops waiting for a row to mark.
    void selected();
    // Loads a sound of the list, and plays it if auto-play is on.
    void audition(const std::filesystem::path& file);
    // Loads and plays it.
    void play(const std::filesystem::path& file);
    // As audition(), and marks it in its folder.
    void open(const std::filesystem::path& file);
    // Marks it in its folder; selects nothing until that has a row for it. Loads nothing.
    void reveal(const std::filesystem::path& file);
    // Shows a folder in place of what is searched.
    void openFolder(const std::filesystem::path& folder);
    // Puts rows into the table, and marks those that were waited for.
    void showRows(std::vector<BrowserEntry> rows, const BrowserPlace& place);

private:
    ChosenState::Action advance(const ChosenState::Event& event);
    void carryOut(const ChosenState::Action& action);

    BrowserParts parts_;
    BrowserTable& table_;
    ChosenState state_;
};

}  // namespace brindlehum
