// InspectorView: the metadata of the selected files as a form, saved into the files and shared with the team.
#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <map>
#include <vector>

#include "library/model/browser_entry.h"
#include "ui/inspector/inspector_fields.h"

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
// saved or discarded.
class InspectorView : public QWidget {
    Q_OBJECT
public:
    static constexpr int minWidth = 260;  // logical pixels, as are the next two
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
    void rename();
    // To be called before the application ends. Returns true if there are no unsaved edits or the user saved or
    // discarded them, false to keep the application running.
    bool settleEdits();

    // The questions to the user, which a test may answer: whether to rename `count` files, and what to do with unsaved
    // edits.
    enum class Unsaved { save, discard, keep };
    std::function<bool(size_t count)> confirmRename;
    std::function<Unsaved()> askUnsaved;

private:
    struct Row {
        QLabel* label;
        TextField* field;
    };
    QWidget* makePendingBar();
    QWidget* makeForm();
    QWidget* makeButtons();
    void load(std::vector<std::filesystem::path> urls);
    void arrived(const std::vector<SoundMeta>& metas);
    void show();
    void refreshState();
    void followSelection();

    MetadataEdits& edits_;
    SettingsStore& settings_;
    InspectorFields fields_;
    std::vector<std::filesystem::path> urls_;  // of the form
    std::vector<BrowserEntry> selected_;       // in the browser
    bool loading_ = false;
    std::map<std::string, Row> rows_;
    QStackedLayout* stack_;
    EmptyState* empty_;
    QWidget* form_;
    ElidedLabel* headline_;
    QWidget* pending_;
    StarRow* stars_;
    QPushButton* save_;
    QPushButton* revert_;
    QPushButton* rename_;
};

}  // namespace brindlehum
