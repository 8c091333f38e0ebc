// Key list: a window with the keys and what they do, by place.
#include "ui/window/key_list.h"

#include <QCoreApplication>
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
        {QT_TRANSLATE_NOOP("KeyList", "Playing"),
         {{QT_TRANSLATE_NOOP("KeyList", "Space, Ctrl+Return"), QT_TRANSLATE_NOOP("KeyList", "Play or stop")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+L"),
           QT_TRANSLATE_NOOP("KeyList", "Loop the selection, or the whole sound")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+U"),
           QT_TRANSLATE_NOOP("KeyList", "Compare the upmix with the plain fold-down")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Shift+U"), QT_TRANSLATE_NOOP("KeyList", "Adjust the upmix")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Shift+V"),
           QT_TRANSLATE_NOOP("KeyList", "Download and play the sound of the copied link")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+E"), QT_TRANSLATE_NOOP("KeyList", "Open in the editor")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Shift+E"), QT_TRANSLATE_NOOP("KeyList", "Make temp edits")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Shift+B"),
           QT_TRANSLATE_NOOP("KeyList", "Set the bars of the loaded piece")}}},
        {QT_TRANSLATE_NOOP("KeyList", "Sounds"),
         {{QT_TRANSLATE_NOOP("KeyList", "Up, Down"), QT_TRANSLATE_NOOP("KeyList", "Audition the sound above or below")},
          {QT_TRANSLATE_NOOP("KeyList", "Return"), QT_TRANSLATE_NOOP("KeyList", "Play the sound, open the folder")},
          {QT_TRANSLATE_NOOP("KeyList", "Backspace"), QT_TRANSLATE_NOOP("KeyList", "Enclosing folder")},
          {QT_TRANSLATE_NOOP("KeyList", "Any letter, Ctrl+F"), QT_TRANSLATE_NOOP("KeyList", "Search")},
          {QT_TRANSLATE_NOOP("KeyList", "Down, Escape (search)"),
           QT_TRANSLATE_NOOP("KeyList", "To the results; end the search")}}},
        {QT_TRANSLATE_NOOP("KeyList", "Metadata"),
         {{QT_TRANSLATE_NOOP("KeyList", "Ctrl+S"), QT_TRANSLATE_NOOP("KeyList", "Save the metadata")},
          {QT_TRANSLATE_NOOP("KeyList", "Alt+letter"),
           QT_TRANSLATE_NOOP("KeyList", "To the field with the letter underlined")},
          {QT_TRANSLATE_NOOP("KeyList", "Down (CatID)"),
           QT_TRANSLATE_NOOP("KeyList", "List the UCS entries that fit")}}},
        {QT_TRANSLATE_NOOP("KeyList", "Waveform"),
         {{QT_TRANSLATE_NOOP("KeyList", "Left, Right"),
           QT_TRANSLATE_NOOP("KeyList", "Move by 1 % of what is in view, with Shift by 5 seconds")},
          {QT_TRANSLATE_NOOP("KeyList", "Home, End"), QT_TRANSLATE_NOOP("KeyList", "To the start, to the end")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+wheel, + and -"), QT_TRANSLATE_NOOP("KeyList", "Zoom in and out")},
          {QT_TRANSLATE_NOOP("KeyList", "Wheel, Page Up, Page Down"), QT_TRANSLATE_NOOP("KeyList", "Scroll")},
          {QT_TRANSLATE_NOOP("KeyList", "0, Z"), QT_TRANSLATE_NOOP("KeyList", "Show the whole sound, the selection")},
          {QT_TRANSLATE_NOOP("KeyList", "[ and ]"),
           QT_TRANSLATE_NOOP("KeyList", "Start or end the selection at the playhead")},
          {QT_TRANSLATE_NOOP("KeyList", "Escape, Ctrl+D"), QT_TRANSLATE_NOOP("KeyList", "Clear the selection")},
          {QT_TRANSLATE_NOOP("KeyList", "Drag the selection, Ctrl+drag"),
           QT_TRANSLATE_NOOP("KeyList", "Take the selection, the whole sound out as a file")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+C, Ctrl+Shift+P"),
           QT_TRANSLATE_NOOP("KeyList", "Copy it as a file, export it to the pulls folder")}}},
        {QT_TRANSLATE_NOOP("KeyList", "Editor"),
         {{QT_TRANSLATE_NOOP("KeyList", "Left, Right"),
           QT_TRANSLATE_NOOP("KeyList", "Move the cursor, with Ctrl from bar to bar")},
          {QT_TRANSLATE_NOOP("KeyList", "Shift and an arrow"), QT_TRANSLATE_NOOP("KeyList", "Extend the selection")},
          {QT_TRANSLATE_NOOP("KeyList", "Double click"), QT_TRANSLATE_NOOP("KeyList", "Select the bar")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+T, Delete"),
           QT_TRANSLATE_NOOP("KeyList", "Keep only the selection, delete it")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Z, Ctrl+Shift+Z"), QT_TRANSLATE_NOOP("KeyList", "Undo, redo")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+G, Ctrl+H"),
           QT_TRANSLATE_NOOP("KeyList", "Show spectrograms, the history")}}},
        {QT_TRANSLATE_NOOP("KeyList", "Monitor"),
         {{QT_TRANSLATE_NOOP("KeyList", "D, M"), QT_TRANSLATE_NOOP("KeyList", "Dim, mute")},
          {QT_TRANSLATE_NOOP("KeyList", "1 to 5"), QT_TRANSLATE_NOOP("KeyList", "Full, 7.1.4, 5.1, 2.0, mono")},
          {QT_TRANSLATE_NOOP("KeyList", "+ and -"), QT_TRANSLATE_NOOP("KeyList", "Volume")},
          {QT_TRANSLATE_NOOP("KeyList", "Space, M (speaker)"), QT_TRANSLATE_NOOP("KeyList", "Solo it, mute it")}}},
        {QT_TRANSLATE_NOOP("KeyList", "Window"),
         {{QT_TRANSLATE_NOOP("KeyList", "Ctrl+O"), QT_TRANSLATE_NOOP("KeyList", "Add a library folder")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Shift+O"), QT_TRANSLATE_NOOP("KeyList", "Open a file")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+Shift+M"), QT_TRANSLATE_NOOP("KeyList", "Monitor")},
          {QT_TRANSLATE_NOOP("KeyList", "F9, Ctrl+I"), QT_TRANSLATE_NOOP("KeyList", "Sidebar, metadata inspector")},
          {QT_TRANSLATE_NOOP("KeyList", "Ctrl+comma"), QT_TRANSLATE_NOOP("KeyList", "Settings")},
          {QT_TRANSLATE_NOOP("KeyList", "F1, Ctrl+?"), QT_TRANSLATE_NOOP("KeyList", "Manual, this list")}}},
    };
    return all;
}

QString shown(const char* text) {
    return QCoreApplication::translate("KeyList", text);
}

void addRow(QGridLayout& grid, const Key& key) {
    const int row = grid.rowCount();
    auto* keys = new QLabel(shown(key.keys));
    keys->setProperty("role", "secondary");
    grid.addWidget(keys, row, 0);
    grid.addWidget(new QLabel(shown(key.effect)), row, 1);
}

}  // namespace

void showKeyList(QWidget& parent) {
    auto* list = new QDialog(&parent);
    list->setAttribute(Qt::WA_DeleteOnClose);
    list->setWindowTitle(shown(QT_TRANSLATE_NOOP("KeyList", "Keys")));
    auto* keys = new QWidget;
    auto* grid = new QGridLayout(keys);
    grid->setContentsMargins(24, 20, 24, 8);
    grid->setHorizontalSpacing(32);
    grid->setVerticalSpacing(6);
    for (const Place& place : places()) {
        auto* name = new QLabel(QString("<b>%1</b>").arg(shown(place.name)));
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
    QString page = "# " + shown(QT_TRANSLATE_NOOP("KeyList", "Keys")) + "\n";
    for (const Place& place : places()) {
        page += QString("\n## %1\n\n| | |\n|---|---|\n").arg(shown(place.name));
        for (const Key& key : place.keys) {
            page += QString("| **%1** | %2 |\n").arg(shown(key.keys), shown(key.effect));
        }
    }
    return page.replace('[', "\\[").replace(']', "\\]");
}

}  // namespace brindlehum
