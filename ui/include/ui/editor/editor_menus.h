// EditorMenus: the menu bar of the editor's window.
#pragma once

class QMainWindow;
class QMenuBar;

namespace brindlehum {

class EditorActions;
class EditorModel;

namespace EditorMenus {
void fill(QMenuBar& bar, QMainWindow& window, EditorModel& editor, EditorActions& actions);
}  // namespace EditorMenus

}  // namespace brindlehum
