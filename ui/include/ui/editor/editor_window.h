// EditorWindow: one document with its music beside it.
#pragma once

#include <QMainWindow>
#include <functional>

#include "editor/model/editor_model.h"
#include "ui/editor/generation_question.h"
#include "ui/look/path_text.h"

class QLabel;
class QProgressBar;
class QStackedWidget;
class QToolButton;

namespace brindlehum {

class EditorActions;
class EditorWaveView;
class ElidedLabel;
class EmptyState;
class FileManager;

class EditorWindow : public QMainWindow {
    Q_OBJECT
public:
    EditorWindow(EditorModel& editor, SettingsStore& settings, FileManager& files);

    enum class Leave { save, discard, cancel };
    // The question before unsaved edits would go, which a test may answer.
    std::function<Leave(const QString& name)> askToLeave;
    // Asks before a sound is first sent to a generation service; by default with a message box.
    std::function<GenerationConsent(const GenerationQuestion&)> askForConsent;
    // The windows may set this: where the dialog for a new name starts, for the folder wished for.
    std::function<QString(const std::filesystem::path& folder)> dialogStart = pathText;
    // The windows set this: where that service is set up.
    std::function<void()> openGenerationSettings;
    // Calls `proceed` at once if nothing is unsaved; else asks, and calls it after a save or for discarded edits.
    void leave(const std::function<void()>& proceed);
    // Opens another file, after that question.
    void open(const std::filesystem::path& path);
    // Asks for a name; `done` is called after a save.
    void saveAs(const std::function<void()>& done = {});
    EditorWaveView& wave() { return *wave_; }
    EditorActions& actions() { return *actions_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeBody(SettingsStore& settings, FileManager& files);
    QWidget* makeToolbar();
    QWidget* makePanel(SettingsStore& settings, FileManager& files);
    QWidget* makeTransport();
    QWidget* makeStatus();
    void chooseFile();
    void refresh();
    void showPosition();

    EditorModel& editor_;
    EditorWaveView* wave_ = nullptr;
    EditorActions* actions_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    EmptyState* empty_ = nullptr;
    QToolButton* play_ = nullptr;
    QToolButton* effects_ = nullptr;
    QToolButton* macros_ = nullptr;
    QToolButton* lanes_ = nullptr;
    QLabel* position_ = nullptr;
    QLabel* selected_ = nullptr;
    QLabel* length_ = nullptr;
    ElidedLabel* status_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QToolButton* cancel_ = nullptr;
    QWidget* recovery_ = nullptr;
};

}  // namespace brindlehum
