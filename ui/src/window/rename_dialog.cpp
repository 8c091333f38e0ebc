// Builds the list of names and says how many files will be renamed, and why the others won't.
#include "ui/window/rename_dialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/look/icons.h"
#include "ui/look/path_text.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/look/screen_fit.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

using Verdict = UCSRename::Verdict;

constexpr QSize usualSize(920, 480);  // logical pixels
enum Column { Now, Then, Note };

QString noteOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::renames:
            return {};
        case Verdict::alreadyNamed:
            return QCoreApplication::translate("RenameDialog", "Already so named");
        case Verdict::gone:
            return QCoreApplication::translate("RenameDialog", "The file is gone");
        case Verdict::notInLibrary:
            return QCoreApplication::translate("RenameDialog", "Not in the library");
        case Verdict::noCatID:
            return QCoreApplication::translate("RenameDialog", "Has no CatID");
        case Verdict::noFXName:
            return QCoreApplication::translate("RenameDialog", "Has no FX name");
        case Verdict::nameTaken:
            return QCoreApplication::translate("RenameDialog", "Another file has this name");
        case Verdict::nameTwice:
            return QCoreApplication::translate("RenameDialog", "A file above gets this name");
        case Verdict::nameTooLong:
            return QCoreApplication::translate("RenameDialog", "The name is too long");
        case Verdict::folderLocked:
            return QCoreApplication::translate("RenameDialog", "Its folder is read-only");
    }
    return {};
}

QString number(qint64 count) {
    return QLocale().toString(count);
}

QString question(qint64 count, qint64 kept) {
    if (count == 0) {
        return kept > 0 ? QCoreApplication::translate("RenameDialog", "None of these files can be renamed.")
                        : QCoreApplication::translate("RenameDialog", "All of these files have their UCS names.");
    }
    return count == 1
               ? QCoreApplication::translate("RenameDialog", "Rename 1 file to its UCS name?")
               : QCoreApplication::translate("RenameDialog", "Rename %1 files to their UCS names?").arg(number(count));
}

// "1 is already so named, 2 can't be renamed."
QString others(qint64 named, qint64 kept) {
    QStringList parts;
    if (named > 0) {
        parts << (named == 1
                      ? QCoreApplication::translate("RenameDialog", "1 is already so named")
                      : QCoreApplication::translate("RenameDialog", "%1 are already so named").arg(number(named)));
    }
    if (kept > 0) { parts << QCoreApplication::translate("RenameDialog", "%1 can't be renamed").arg(number(kept)); }
    return parts.isEmpty() ? QString() : parts.join(", ") + ".";
}

QLabel* line(const QString& text, const char* role) {
    auto* label = new QLabel(text);
    label->setProperty("role", role);
    label->setWordWrap(true);
    label->setVisible(!text.isEmpty());
    return label;
}

}  // namespace

RenameDialog::RenameDialog(const UCSRenames& renames, bool unsaved, QWidget* parent) : QDialog(parent) {
    const auto count = [&](Verdict verdict) { return std::ranges::count(renames, verdict, &UCSRename::verdict); };
    const auto renamed = count(Verdict::renames);
    const auto named = count(Verdict::alreadyNamed);
    const auto kept = std::ssize(renames) - renamed - named;
    setWindowTitle(tr("Rename to UCS Names"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(10);
    column->addWidget(line(question(renamed, kept), "title"));
    column->addWidget(line(others(named, kept), "secondary"));
    column->addWidget(list_ = new QTreeWidget, 1);
    fill(renames);
    column->addWidget(
        line(unsaved ? tr("Metadata edits that aren't saved yet are not in these names.") : "", "warning"));
    column->addWidget(
        line(renamed > 0 ? tr("DAW sessions that reference the old names will need to relink.") : "", "secondary"));
    auto* buttons = new QDialogButtonBox;
    auto* rename = buttons->addButton(tr("Rename"), QDialogButtonBox::AcceptRole);
    auto* cancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    rename->setProperty("role", "prominent");
    rename->setEnabled(renamed > 0);
    QPushButton* usual = renamed > 0 ? rename : cancel;
    usual->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
    usual->setFocus();
    resize(fittingSize(*this, usualSize));
}

void RenameDialog::fill(const UCSRenames& renames) {
    list_->setAccessibleName(tr("Names now and then"));
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setHeaderLabels({tr("Name now"), tr("New name"), tr("Note")});
    QList<QTreeWidgetItem*> rows;
    for (const UCSRename& rename : renames) {
        const QString to = rename.to.empty() ? QString("–") : pathText(rename.to.filename());
        auto* row = new QTreeWidgetItem({pathText(rename.from.filename()), to, noteOf(rename.verdict)});
        row->setToolTip(Now, plainToolTip(pathText(rename.from)));
        if (!rename.to.empty()) { row->setToolTip(Then, plainToolTip(pathText(rename.to))); }
        const bool stays = rename.verdict != Verdict::renames;
        if (stays && rename.verdict != Verdict::alreadyNamed) {
            row->setIcon(Note, symbol("warning", SymbolRole::warning));
        }
        for (const int column : {Now, Then, Note}) {
            if (stays) { row->setForeground(column, Theme::current().secondary); }
        }
        rows << row;
    }
    list_->addTopLevelItems(rows);
    auto* head = list_->header();
    head->setStretchLastSection(false);
    head->setSectionResizeMode(Now, QHeaderView::Stretch);
    head->setSectionResizeMode(Then, QHeaderView::Stretch);
    head->setSectionResizeMode(Note, QHeaderView::ResizeToContents);
}

bool askRename(QWidget* parent, const UCSRenames& renames, bool unsaved) {
    RenameDialog dialog(renames, unsaved, parent);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace brindlehum
