// Puts the editor's actions into menus.
#include "ui/editor/editor_menus.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <utility>

#include "editor/model/editor_model.h"
#include "ui/editor/editor_actions.h"
#include "ui/look/menu_button.h"

namespace brindlehum::EditorMenus {
namespace {

void fillJoins(QMenu& menu, DocumentModel& document) {
    menu.clear();
    for (const auto& [text, style] :
         {std::pair(QCoreApplication::translate("EditorMenus", "Exact"), CutStyle::exact),
          std::pair(QCoreApplication::translate("EditorMenus", "At Zero Crossings"), CutStyle::zeroCrossing),
          std::pair(QCoreApplication::translate("EditorMenus", "Crossfade of 4 ms"), CutStyle::crossfade)}) {
        addChoice(menu, text, document.cutStyle() == style,
                  [&document, style = style] { document.setCutStyle(style); });
    }
}

}  // namespace

void fill(QMenuBar& bar, QMainWindow& window, EditorModel& editor, EditorActions& actions) {
    auto* file = bar.addMenu(QCoreApplication::translate("EditorMenus", "&File"));
    file->addActions({actions.openFile, actions.saveAs});
    file->addSeparator();
    file->addAction(actions.closeDocument);
    QAction* close =
        file->addAction(QCoreApplication::translate("EditorMenus", "Close Window"), &window, &QWidget::close);
    close->setShortcut(QKeySequence("Ctrl+W"));

    auto* edit = bar.addMenu(QCoreApplication::translate("EditorMenus", "&Edit"));
    edit->addActions({actions.undo, actions.redo});
    edit->addSeparator();
    edit->addActions({actions.cut, actions.copy, actions.paste, actions.remove, actions.trim, actions.silence});
    edit->addSeparator();
    edit->addActions({actions.selectAll, actions.selectNone});
    auto* joins = edit->addMenu(QCoreApplication::translate("EditorMenus", "Joins of Cuts"));
    QObject::connect(joins, &QMenu::aboutToShow, &window,
                     [joins, &document = editor.document()] { fillJoins(*joins, document); });

    auto* effects = bar.addMenu(QCoreApplication::translate("EditorMenus", "E&ffects"));
    effects->setToolTipsVisible(true);
    for (QAction* each : actions.effects) { effects->addAction(each); }
    effects->addSeparator();
    for (QAction* each : actions.macros) { effects->addAction(each); }

    auto* view = bar.addMenu(QCoreApplication::translate("EditorMenus", "&View"));
    view->addActions({actions.zoomIn, actions.zoomOut, actions.fit, actions.zoomSelection});
    view->addSeparator();
    view->addActions({actions.spectrum, actions.linear});
    view->addSeparator();
    view->addActions({actions.snap, actions.history});

    auto* playback = bar.addMenu(QCoreApplication::translate("EditorMenus", "&Playback"));
    playback->addActions(
        {actions.play, actions.toStart, actions.loop, actions.preRoll, actions.click, actions.loopSeam});
}

}  // namespace brindlehum::EditorMenus
