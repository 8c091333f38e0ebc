// The list of effects and its search.
#include "ui/monitor/plugin_picker.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/look/screen_fit.h"
#include "ui/look/utf8_text.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(440, 480);  // logical pixels

}  // namespace

PluginPicker::PluginPicker(PluginList& plugins, QWidget* parent) : QDialog(parent), plugins_(plugins) {
    setWindowTitle(tr("Add LV2 Plug-in"));
    search_ = new QLineEdit;
    search_->setPlaceholderText(tr("Search by maker or name"));
    search_->setAccessibleName(tr("Search plug-ins"));
    search_->setClearButtonEnabled(true);
    search_->installEventFilter(this);
    list_ = new QListWidget;
    list_->setAccessibleName(tr("Plug-ins"));
    note_ = new QLabel;
    note_->setWordWrap(true);
    note_->setProperty("role", "secondary");
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    add_ = buttons->addButton(tr("Add"), QDialogButtonBox::AcceptRole);
    add_->setProperty("role", "prominent");
    auto* column = new QVBoxLayout(this);
    column->addWidget(search_);
    column->addWidget(list_, 1);
    column->addWidget(note_);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(search_, &QLineEdit::textChanged, this, &PluginPicker::filter);
    connect(list_, &QListWidget::itemActivated, this, [this] {
        if (chosen()) { accept(); }
    });
    connect(list_, &QListWidget::currentItemChanged, this, [this] { add_->setEnabled(chosen().has_value()); });
    connect(&plugins_, &PluginList::changed, this, &PluginPicker::fill);
    resize(fittingSize(*this, usualSize));
    fill();
    plugins_.refresh();
}

void PluginPicker::fill() {
    list_->clear();
    for (const PluginInfo& each : plugins_.list()) {
        auto* item = new QListWidgetItem(textOf(displayName(each)), list_);
        item->setData(Qt::UserRole, textOf(each.uri));
        if (each.refusal.empty()) { continue; }
        item->setFlags(item->flags() & ~(Qt::ItemIsEnabled | Qt::ItemIsSelectable));
        item->setToolTip(textOf(each.refusal));
        item->setText(item->text() + "\n" + textOf(each.refusal));
    }
    filter();
}

// Shows what holds all words, and chooses the first of it.
void PluginPicker::filter() {
    const QStringList words = search_->text().split(' ', Qt::SkipEmptyParts);
    QListWidgetItem* first = nullptr;
    for (int i = 0; i < list_->count(); ++i) {
        QListWidgetItem* const item = list_->item(i);
        const bool fits = std::ranges::all_of(
            words, [item](const QString& word) { return item->text().contains(word, Qt::CaseInsensitive); });
        item->setHidden(!fits);
        if (fits && !first && (item->flags() & Qt::ItemIsEnabled)) { first = item; }
    }
    list_->setCurrentItem(first);
    add_->setEnabled(chosen().has_value());
    const bool none = list_->count() == 0;
    note_->setVisible(none);
    note_->setText(plugins_.isLooking() ? tr("Looking for plug-ins …") : tr("No LV2 effects are installed."));
}

std::optional<PluginInfo> PluginPicker::chosen() const {
    const QListWidgetItem* const item = list_->currentItem();
    if (!item || item->isHidden()) { return std::nullopt; }
    const PluginInfo* const plugin = plugins_.find(item->data(Qt::UserRole).toString().toStdString());
    return plugin && plugin->refusal.empty() ? std::optional(*plugin) : std::nullopt;
}

// Up and Down go through the list while the search is typed.
bool PluginPicker::eventFilter(QObject* object, QEvent* event) {
    if (object == search_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            QCoreApplication::sendEvent(list_, event);
            return true;
        }
    }
    return QDialog::eventFilter(object, event);
}

}  // namespace brindlehum
