// InspectorView: the metadata of the selected files as a form, saved into the files and shared with the team.
#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <vector>

#include "library/model/browser_entry.h"
#include "ui/inspector/inspector_fields.h"

class QBoxLayout;
class QLabel;
class QPushButton;
class QStackedLayout;

namespace brindlehum {

class ElidedLabel;
class EmptyState;
class MetadataEdits;
class SettingsStore;
class StarRow;
class TextField;

// Unsaved edits outlive a change of the selection: the form keeps showing their files, and says so, until the edits are
// saved or discarded. Edits that couldn't be saved come back into the form with the reason, as soon as it is free.
class InspectorView : public QWidget {
    Q_OBJECT
public:
    static constexpr int minWidth = 292;  // logical pixels, as are the next two
    static constexpr int idealWidth = 300;
    static constexpr int maxWidth = 420;

    InspectorView(MetadataEdits& edits, SettingsStore& settings, QWidget* parent = nullptr);

    // Takes the browser's selection and ignores its folders.
    void setSelection(const std::vector<BrowserEntry>& selected);
    const std::vector<std::filesystem::path>& urls() const { return urls_; }
    const InspectorFields& fields() const { return fields_; }
    bool isLoading() const { return loading_; }
    TextField& field(const std::string& tag) { return *rows_.at(tag).field; }

    void save();
    void revert();
    // To be called before the application ends. Calls `settled`, now or later, once there are no unsaved edits, or the
    // user has discarded them, or all are in their files; never if the user keeps them or one can't be saved. A second
    // call while edits are being saved doesn't wait for them.
    void settleEdits(std::function<void()> settled);
    // Whether there are edits that are in no file yet, of any file or of one in this folder.
    bool hasUnsaved() const { return fields_.hasEdits() || !parked_.empty() || !saving_.empty(); }
    bool hasUnsavedIn(const std::filesystem::path& folder) const;

    // The question what to do with unsaved edits, which a test may answer.
    enum class Unsaved { save, discard, keep };
    std::function<Unsaved()> askUnsaved;

Q_SIGNALS:
    void editsChanged();  // there may be something to save, or not any more
    void renameAsked(const std::vector<std::filesystem::path>& files);

private:
    struct Row {
        QLabel* label;
        TextField* field;
    };
    // Edits on their way to files, or back from those that couldn't be written.
    struct Draft {
        std::vector<std::filesystem::path> files;
        MetadataChanges changes;
        QString problem;
    };
    QWidget* makePendingBar();
    QWidget* makeForm();
    void addRow(QBoxLayout& column, const InspectorFields::Field& item);
    void addCompleter(const std::string& tag);
    QWidget* makeButtons();
    void load(std::vector<std::filesystem::path> urls);
    void arrived(const std::vector<SoundMeta>& metas);
    // Puts the fields' texts into the form, but for the field that is being typed in.
    void show(const std::string& typed = {});
    void refreshState();
    void followSelection();
    void goOn();
    void saveEnded(std::list<Draft>::iterator draft, const QString& problem);
    void take(const Draft& draft);

    MetadataEdits& edits_;
    SettingsStore& settings_;
    InspectorFields fields_;
    std::vector<std::filesystem::path> urls_;  // of the form
    std::vector<BrowserEntry> selected_;       // in the browser
    bool loading_ = false;
    QString problem_;                // why the form's edits couldn't be saved; empty if nobody tried
    std::list<Draft> saving_;        // the oldest first
    std::list<Draft> parked_;        // back from a save, and waiting for the form
    std::function<void()> settled_;  // waits for the saves
    std::map<std::string, Row> rows_;
    QLabel* catIDNote_;
    QStackedLayout* stack_;
    EmptyState* empty_;
    QWidget* form_;
    ElidedLabel* headline_;
    QLabel* keeping_;
    QWidget* pending_;
    QLabel* pendingText_;
    QPushButton* saveAgain_;
    StarRow* stars_;
    QPushButton* save_;
    QPushButton* revert_;
    QPushButton* rename_;
};

}  // namespace brindlehum
