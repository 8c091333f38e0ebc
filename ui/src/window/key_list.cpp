// Key list: a window with the keys and what they do, by place.
#include "ui/window/key_list.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <vector>

namespace brindlehum {
namespace {

struct Key {
    const char* keys;
    const char* effect;
};
struct Place {
    const char* name;
    std::vector<Key> keys;
};

const std::vector<Place>& places() {
    static const std::vector<Place> all = {
        {"Playing",
         {{"Space, Ctrl+Return", "Play or stop"},
          {"Ctrl+L", "Loop the selection, or the whole sound"},
          {"Ctrl+Shift+E", "Make temp edits"}}},
        {"Sounds",
         {{"Up, Down", "Audition the sound above or below"},
          {"Return", "Play the sound, open the folder"},
          {"Backspace", "Enclosing folder"},
          {"Any letter, Ctrl+F", "Search"},
          {"Down, Escape (search)", "To the results; end the search"},
          {"Ctrl+S", "Save the metadata"},
          {"Down (CatID)", "List the UCS entries that fit"}}},
        {"Waveform",
         {{"Left, Right", "Move by 1 %, with Shift by 5 seconds"},
          {"Home, End", "To the start, to the end"},
          {"Escape, Ctrl+D", "Clear the selection"},
          {"Ctrl+drag", "Take the whole file out"}}},
        {"Window",
         {{"Ctrl+O", "Add a library folder"},
          {"Ctrl+Shift+O", "Open a file"},
          {"F9, Ctrl+I", "Sidebar, metadata inspector"},
          {"Ctrl+comma", "Settings"},
          {"F1", "This list"}}},
    };
    return all;
}

void addRow(QGridLayout& grid, const Key& key) {
    const int row = grid.rowCount();
    auto* keys = new QLabel(key.keys);
    keys->setProperty("role", "secondary");
    grid.addWidget(keys, row, 0);
    grid.addWidget(new QLabel(key.effect), row, 1);
}

}  // namespace

void showKeyList(QWidget& parent) {
    auto* list = new QDialog(&parent);
    list->setAttribute(Qt::WA_DeleteOnClose);
    list->setWindowTitle("Keys");
    auto* grid = new QGridLayout(list);
    grid->setContentsMargins(24, 20, 24, 20);
    grid->setHorizontalSpacing(32);
    grid->setVerticalSpacing(6);
    for (const Place& place : places()) {
        auto* name = new QLabel(QString("<b>%1</b>").arg(place.name));
        if (grid->rowCount() > 1) { name->setContentsMargins(0, 10, 0, 0); }
        grid->addWidget(name, grid->rowCount(), 0, 1, 2);
        for (const Key& key : place.keys) { addRow(*grid, key); }
    }
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close);
    close->button(QDialogButtonBox::Close)->setIcon({});
    QObject::connect(close, &QDialogButtonBox::rejected, list, &QDialog::close);
    grid->addWidget(close, grid->rowCount(), 0, 1, 2);
    list->show();
}

}  // namespace brindlehum
