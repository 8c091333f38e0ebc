// The inspector's form: builds it, loads metadata into it, and saves the edits.
#include "ui/inspector/inspector_view.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStackedLayout>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "base/text.h"
#include "library/model/metadata_edits.h"
#include "settings/settings_store.h"
#include "ui/inspector/keeping_text.h"
#include "ui/inspector/star_row.h"
#include "ui/inspector/ucs_completer.h"
#include "ui/look/caption_label.h"
#include "ui/look/elided_label.h"
#include "ui/look/empty_state.h"
#include "ui/look/form_scroll.h"
#include "ui/look/path_text.h"
#include "ui/look/text_field.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

// Logical pixels.
constexpr int marginLeft = 4;
constexpr int marginRight = 8;

std::vector<fs::path> urlsOf(const std::vector<BrowserEntry>& entries) {
    std::vector<fs::path> urls;
    for (const auto& entry : entries) { urls.push_back(entry.url); }
    return urls;
}

InspectorView::Unsaved askAboutEdits(QWidget* parent) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Question);
    box.setText(InspectorView::tr("Save the metadata edits before quitting?"));
    box.setInformativeText(InspectorView::tr("The inspector holds edits that aren't in the files yet."));
    box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    const int answer = box.exec();
    if (answer == QMessageBox::Save) { return InspectorView::Unsaved::save; }
    return answer == QMessageBox::Discard ? InspectorView::Unsaved::discard : InspectorView::Unsaved::keep;
}

// One line a file, for as many as the form has room for.
QString problemOf(const MetadataEdits::Failures& failures) {
    constexpr size_t most = 3;
    QStringList lines;
    for (size_t i = 0; i < failures.size() && i < most; ++i) {
        lines << InspectorView::tr("Couldn't save %1: %2")
                     .arg(pathText(failures[i].file.filename()), QString::fromStdString(failures[i].reason));
    }
    if (failures.size() > most) { lines << InspectorView::tr("and %1 more").arg(failures.size() - most); }
    return lines.join('\n');
}

bool isIn(const fs::path& file, const fs::path& folder) {
    return std::ranges::mismatch(folder, file).in1 == folder.end();
}

QLabel* caption(const QString& text, QWidget* field = nullptr) {
    auto* label = field ? new CaptionLabel(text, *field) : new QLabel(text);
    label->setProperty("role", "caption");
    label->setWordWrap(true);
    return label;
}

// A style sheet reads a property only when the widget is polished.
void setRole(QWidget& widget, const char* role) {
    if (widget.property("role") == role) { return; }
    widget.setProperty("role", role);
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
}

}  // namespace

InspectorView::InspectorView(MetadataEdits& edits, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), edits_(edits), settings_(settings) {
    setObjectName("inspector");
    setMinimumWidth(minWidth);
    setMaximumWidth(maxWidth);
    askUnsaved = [this] { return askAboutEdits(this); };
    stack_ = new QStackedLayout(this);
    empty_ = new EmptyState;
    empty_->setTexts(tr("No selection"), tr("Select sounds to see and edit their metadata."), {});
    form_ = new QWidget;
    auto* column = new QVBoxLayout(form_);
    column->setContentsMargins(marginLeft, 8, marginRight, 8);
    column->setSpacing(8);
    column->addWidget(headline_ = new ElidedLabel(Qt::ElideMiddle));
    headline_->setProperty("role", "headline");
    column->addWidget(keeping_ = caption({}));
    column->addWidget(makePendingBar());
    column->addWidget(makeForm(), 1);
    column->addWidget(makeButtons());
    stack_->addWidget(empty_);
    stack_->addWidget(form_);
    connect(&settings, &SettingsStore::changed, this, &InspectorView::refreshState);
    refreshState();
}

QWidget* InspectorView::makePendingBar() {
    pending_ = new QFrame;
    pending_->setProperty("role", "notice");
    auto* column = new QVBoxLayout(pending_);
    column->setContentsMargins(10, 8, 10, 8);
    column->setSpacing(6);
    pendingText_ = new QLabel;
    pendingText_->setTextFormat(Qt::PlainText);
    pendingText_->setWordWrap(true);
    column->addWidget(pendingText_);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    saveAgain_ = new QPushButton;
    auto* discard = new QPushButton(tr("Discard"));
    discard->setAccessibleName(tr("Discard the edits and go on"));
    for (auto* button : {saveAgain_, discard}) {
        button->setProperty("role", "small");
        row->addWidget(button);
    }
    row->addStretch(1);
    column->addLayout(row);
    connect(saveAgain_, &QPushButton::clicked, this, &InspectorView::save);
    connect(discard, &QPushButton::clicked, this, &InspectorView::revert);
    return pending_;
}

QWidget* InspectorView::makeForm() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 6, 0);
    column->setSpacing(3);
    for (const auto& item : InspectorFields::fields) { addRow(*column, item); }
    for (const char* tag : {"CATID", "CATEGORY", "SUBCATEGORY"}) { addCompleter(tag); }
    stars_ = new StarRow;
    column->addWidget(caption(tr("R&ating"), stars_));
    column->addWidget(stars_);
    column->addStretch(1);
    connect(stars_, &StarRow::starClicked, this, [this](int star) {
        if (loading_) { return; }
        fields_.clickStar(star);
        refreshState();
    });
    return new FormScroll(content);
}

void InspectorView::addRow(QBoxLayout& column, const InspectorFields::Field& item) {
    const QString label = QCoreApplication::translate("InspectorFields", item.label);
    auto* field = new TextField(QString(label).remove('&'), item.severalLines);
    const Row row{caption(label, field), field};
    const std::string tag = item.tag;
    column.addWidget(row.label);
    column.addWidget(row.field);
    if (tag == "CATID") {
        column.addWidget(catIDNote_ = caption({}));
        catIDNote_->setProperty("role", "captionWarning");
    }
    column.addSpacing(6);
    rows_[tag] = row;
    connect(row.field, &TextField::edited, this, [this, tag](const QString& text) {
        fields_.setText(tag, text);
        show(tag);
        refreshState();
    });
}

// The list of UCS entries below a field; the subcategory's has those of the category that is in the form, if any fit.
void InspectorView::addCompleter(const std::string& tag) {
    auto* line = qobject_cast<QLineEdit*>(&rows_.at(tag).field->editor());
    const auto fitting = [this, tag](const QString& typed) {
        auto entries = UCS::shared().matches(typed.toStdString());
        const std::string category = upperAscii(fields_.text("CATEGORY").trimmed().toStdString());
        const auto others = [&](const UCS::Entry* entry) { return upperAscii(entry->category) != category; };
        if (tag == "SUBCATEGORY" && !std::ranges::all_of(entries, others)) { std::erase_if(entries, others); }
        return entries;
    };
    auto* completer = new UCSCompleter(*line, fitting);
    connect(completer, &UCSCompleter::chosen, this, [this](const QString& catID) {
        if (const UCS::Entry* entry = UCS::shared().lookup(catID.toStdString())) { fields_.choose(*entry); }
        show();
        refreshState();
    });
    connect(line, &QLineEdit::editingFinished, this, [this] { show(); });
}

QWidget* InspectorView::makeButtons() {
    auto* box = new QWidget;
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(save_ = new QPushButton(tr("Save")));
    row->addWidget(revert_ = new QPushButton(tr("Revert")));
    row->addStretch(1);
    row->addWidget(rename_ = new QPushButton(tr("Rename to UCS…")));
    save_->setProperty("role", "prominent");
    save_->setToolTip(tr("Save (Ctrl+S)"));
    rename_->setToolTip(tr("Renames to CatID_FXName_Designer_Source"));
    connect(save_, &QPushButton::clicked, this, &InspectorView::save);
    connect(revert_, &QPushButton::clicked, this, &InspectorView::revert);
    connect(rename_, &QPushButton::clicked, this, [this] { Q_EMIT renameAsked(urls_); });
    return box;
}

void InspectorView::setSelection(const std::vector<BrowserEntry>& selected) {
    std::vector<BrowserEntry> sounds;
    for (const auto& entry : selected) {
        if (!entry.isFolder) { sounds.push_back(entry); }
    }
    if (sounds == selected_) { return; }
    selected_ = std::move(sounds);
    // The entries also differ after a save or a team pull: read the metadata again.
    if (!fields_.hasEdits()) { return followSelection(); }
    refreshState();
}

void InspectorView::followSelection() {
    load(urlsOf(selected_));
}

void InspectorView::load(std::vector<fs::path> urls) {
    const bool others = urls != urls_;
    urls_ = std::move(urls);
    loading_ = !urls_.empty();
    if (others || urls_.empty()) {
        // Clear the form first: never show the old files' metadata under the new selection.
        fields_.load({});
        show();
    }
    refreshState();
    if (urls_.empty()) { return; }
    edits_.read(urls_, [this, self = QPointer(this)](const std::vector<SoundMeta>& metas) {
        // A later selection of files overtakes this one; an empty one only ends the loading.
        if (self && loading_) { arrived(metas); }
    });
}

void InspectorView::arrived(const std::vector<SoundMeta>& metas) {
    loading_ = false;
    // Keeps what came back from a save, or was typed while the same files were read again.
    fields_.loadUnderEdits(metas);
    show();
    refreshState();
}

void InspectorView::show(const std::string& typed) {
    for (const auto& [tag, row] : rows_) {
        if (tag != typed) { row.field->setText(fields_.text(tag)); }
    }
}

void InspectorView::refreshState() {
    stack_->setCurrentWidget(urls_.empty() ? static_cast<QWidget*>(empty_) : form_);
    if (urls_.size() == 1) {
        headline_->setFullText(pathText(urls_.front().filename()));
    } else {
        headline_->setFullText(tr("%1 files").arg(QLocale().toString(static_cast<qulonglong>(urls_.size()))));
    }
    keeping_->setText(keepingText(urls_));
    const bool edited = fields_.hasEdits();
    for (const auto& [tag, row] : rows_) {
        row.field->setPrompt(fields_.isMixed(tag) ? tr("Mixed") : QString());
        row.field->setReadOnly(loading_ && !edited);
        setRole(*row.label, fields_.isEdited(tag) ? "captionEdited" : "caption");
    }
    const QString note = fields_.catIDNote();
    catIDNote_->setText(note);
    catIDNote_->setVisible(!note.isEmpty());
    rows_.at("CATID").field->editor().setAccessibleDescription(note);
    stars_->setRating(fields_.rating());
    save_->setEnabled(edited);
    revert_->setEnabled(edited);
    rename_->setVisible(settings_.value().expertMode);
    // In some languages the buttons need more than the usual width.
    setMinimumWidth(std::max(minWidth, rename_->parentWidget()->minimumSizeHint().width() + marginLeft + marginRight));
    const bool failed = !problem_.isEmpty();
    pending_->setVisible(edited && (failed || urlsOf(selected_) != urls_));
    pendingText_->setText(failed ? problem_ : tr("These edits aren't saved yet."));
    saveAgain_->setText(failed ? tr("Try Again") : tr("Save"));
    saveAgain_->setAccessibleName(failed ? tr("Try again to save the edits") : tr("Save the edits and go on"));
    Q_EMIT editsChanged();
}

void InspectorView::save() {
    if (!fields_.hasEdits()) { return; }
    problem_.clear();
    const auto draft = saving_.insert(saving_.end(), {urls_, fields_.changes(), {}});
    edits_.save(draft->changes, draft->files,
                [this, self = QPointer(this), draft](const MetadataEdits::Failures& failures) {
                    if (!self) { return; }
                    draft->files.clear();
                    for (const auto& failure : failures) { draft->files.push_back(failure.file); }
                    saveEnded(draft, problemOf(failures));
                });
    fields_.saved();
    goOn();
}

// Shows the next files, once the form's edits are on their way or dropped.
void InspectorView::goOn() {
    if (!parked_.empty()) {
        Draft next = std::move(parked_.front());
        parked_.pop_front();
        return take(next);
    }
    if (urlsOf(selected_) != urls_) { return followSelection(); }
    refreshState();
}

void InspectorView::saveEnded(std::list<Draft>::iterator draft, const QString& problem) {
    Draft back = std::move(*draft);
    saving_.erase(draft);
    if (!problem.isEmpty()) {
        settled_ = nullptr;
        back.problem = problem;
        const bool isFree = !fields_.hasEdits() || back.files == urls_;
        isFree ? take(back) : parked_.push_back(std::move(back));
    }
    if (!hasUnsaved() && settled_) { std::exchange(settled_, nullptr)(); }
}

// What the user has typed since for the same files stays.
void InspectorView::take(const Draft& draft) {
    const InspectorFields typed = std::exchange(fields_, {});
    const bool isSame = draft.files == urls_;
    problem_ = draft.problem;
    load(draft.files);
    if (isSame) { fields_ = typed; }
    fields_.edit(draft.changes);
    show();
    refreshState();
}

void InspectorView::revert() {
    fields_.load({});
    problem_.clear();
    if (!parked_.empty()) { return goOn(); }
    followSelection();
    show();
}

bool InspectorView::hasUnsavedIn(const fs::path& folder) const {
    const auto anyIn = [&](const auto& files) {
        return std::ranges::any_of(files, [&](const fs::path& file) { return isIn(file, folder); });
    };
    const auto anyDraftIn = [&](const std::list<Draft>& drafts) {
        return std::ranges::any_of(drafts, [&](const Draft& draft) { return anyIn(draft.files); });
    };
    return (fields_.hasEdits() && anyIn(urls_)) || anyDraftIn(parked_) || anyDraftIn(saving_);
}

void InspectorView::settleEdits(std::function<void()> settled) {
    if (settled_) { return std::exchange(settled_, nullptr)(); }
    if (fields_.hasEdits() || !parked_.empty()) {
        const Unsaved answer = askUnsaved();
        if (answer == Unsaved::keep) { return; }
        if (answer == Unsaved::discard) { return settled(); }
        while (fields_.hasEdits()) { save(); }
    }
    if (!hasUnsaved()) { return settled(); }
    settled_ = std::move(settled);
}

}  // namespace brindlehum
