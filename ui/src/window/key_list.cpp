// Key list: a window with the keys and what they do, by place.
#include "ui/window/key_list.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <vector>

#include "ui/look/form_scroll.h"
#include "ui/look/screen_fit.h"

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
          {"Ctrl+U", "Compare the upmix with the plain fold-down"},
          {"Ctrl+Shift+U", "Adjust the upmix"},
          {"Ctrl+Shift+V", "Download and play the sound of the copied link"},
          {"Ctrl+E", "Open in the editor"},
          {"Ctrl+Shift+E", "Make temp edits"},
          {"Ctrl+Shift+B", "Set the bars of the loaded piece"}}},
        {"Sounds",
         {{"Up, Down", "Audition the sound above or below"},
          {"Return", "Play the sound, open the folder"},
          {"Backspace", "Enclosing folder"},
          {"Any letter, Ctrl+F", "Search"},
          {"Down, Escape (search)", "To the results; end the search"}}},
        {"Metadata",
         {{"Ctrl+S", "Save the metadata"},
          {"Alt+letter", "To the field with the letter underlined"},
          {"Down (CatID)", "List the UCS entries that fit"}}},
        {"Waveform",
         {{"Left, Right", "Move by 1 % of what is in view, with Shift by 5 seconds"},
          {"Home, End", "To the start, to the end"},
          {"Ctrl+wheel, + and -", "Zoom in and out"},
          {"Wheel, Page Up, Page Down", "Scroll"},
          {"0, Z", "Show the whole sound, the selection"},
          {"[ and ]", "Start or end the selection at the playhead"},
          {"Escape, Ctrl+D", "Clear the selection"},
          {"Drag the selection, Ctrl+drag", "Take the selection, the whole sound out as a file"},
          {"Ctrl+C, Ctrl+Shift+P", "Copy it as a file, export it to the pulls folder"}}},
        {"Editor",
         {{"Left, Right", "Move the cursor, with Ctrl from bar to bar"},
          {"Shift and an arrow", "Extend the selection"},
          {"Double click", "Select the bar"},
          {"Ctrl+T, Delete", "Keep only the selection, delete it"},
          {"Ctrl+Z, Ctrl+Shift+Z", "Undo, redo"},
          {"Ctrl+G, Ctrl+H", "Show spectrograms, the history"}}},
        {"Monitor",
         {{"D, M", "Dim, mute"},
          {"1 to 5", "Full, 7.1.4, 5.1, 2.0, mono"},
          {"+ and -", "Volume"},
          {"Space, M (speaker)", "Solo it, mute it"}}},
        {"Window",
         {{"Ctrl+O", "Add a library folder"},
          {"Ctrl+Shift+O", "Open a file"},
          {"Ctrl+Shift+M", "Monitor"},
          {"F9, Ctrl+I", "Sidebar, metadata inspector"},
          {"Ctrl+comma", "Settings"},
          {"F1, Ctrl+?", "Manual, this list"}}},
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
    auto* keys = new QWidget;
    auto* grid = new QGridLayout(keys);
    grid->setContentsMargins(24, 20, 24, 8);
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
    auto* column = new QVBoxLayout(list);
    column->setContentsMargins(0, 0, 0, 16);
    column->addWidget(new FormScroll(keys), 1);
    close->setContentsMargins(24, 0, 24, 0);
    column->addWidget(close);
    list->resize(fittingSize(*list, keys->sizeHint() + QSize(16, 70)));
    list->show();
}

QString keyListMarkdown() {
    QString page = "# Keys\n";
    for (const Place& place : places()) {
        page += QString("\n## %1\n\n| | |\n|---|---|\n").arg(place.name);
        for (const Key& key : place.keys) { page += QString("| **%1** | %2 |\n").arg(key.keys, key.effect); }
    }
    return page.replace("[ and ]", "\\[ and \\]");
}

}  // namespace brindlehum
