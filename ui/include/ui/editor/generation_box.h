// GenerationBox: asks the generation service for material that fits the document, and lists its takes.
#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "editor/generation/ai_generator.h"
#include "editor/playback/editor_transport.h"
#include "ui/editor/generation_question.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace brindlehum {

class EditorModel;

class GenerationBox : public QWidget {
    Q_OBJECT
public:
    // What the box can't do itself.
    struct Asks {
        std::function<void()> openSettings;  // where the service is set up
        std::function<void(const std::filesystem::path& file)> reveal;
        std::function<GenerationConsent(const GenerationQuestion&)> consent;
    };
    GenerationBox(EditorModel& editor, SettingsStore& settings, Asks asks, QWidget* parent = nullptr);

private:
    void makeStatus(QVBoxLayout& column);
    void generate(GenerationKind kind);
    void refresh();
    void refreshButtons();
    void refreshRows();
    QString tip(const std::optional<WebAddress>& service, const std::optional<GenerationSource>& piece,
                GenerationKind kind) const;
    std::optional<GenerationSource> source() const;

    EditorModel& editor_;
    AIGenerator& generator_;
    SettingsStore& settings_;
    Asks asks_;
    std::map<GenerationKind, QPushButton*> buttons_;
    QPushButton* setUp_;
    QProgressBar* progress_;
    QLabel* status_;
    QPushButton* cancel_;
    QPushButton* reveal_;
    QLabel* usage_;
    QScrollArea* list_;
    QVBoxLayout* rows_;
    // What the rows were built from.
    std::vector<std::filesystem::path> shown_;
    std::optional<std::string> shownHeard_;
};

}  // namespace brindlehum
