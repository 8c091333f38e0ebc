// Builds the upmix panel and carries out its buttons.
#include "ui/player/upmix_panel.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "ui/look/form_scroll.h"
#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/look/screen_fit.h"
#include "ui/player/upmix_map.h"
#include "ui/player/upmix_menu.h"
#include "ui/player/upmix_sliders.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(760, 720);  // logical pixels, as are the next
constexpr QSize leastSize(380, 260);
constexpr int roomForMap = 580;  // the panel's width from which on the picture is shown
constexpr int longestName = 200;
constexpr int margin = 16;

std::optional<QString> askedName(QWidget* parent, const QString& title, const QString& name) {
    bool wanted = false;
    const QString typed =
        QInputDialog::getText(parent, title, UpmixPanel::tr("Name of the preset:"), QLineEdit::Normal, name, &wanted)
            .trimmed();
    return wanted ? std::optional(typed) : std::nullopt;
}

bool confirmed(QWidget* parent, const QString& question, const QString& button) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setTextFormat(Qt::PlainText);
    box.setText(question);
    auto* yes = box.addButton(button, QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == yes;
}

}  // namespace

UpmixPanel::UpmixPanel(PlayerModel& player, SettingsStore& settings, QWidget* parent)
    : QWidget(parent, Qt::Tool), player_(player), tuning_(player.upmix()), compare_(player.compare()) {
    setObjectName("window");
    setAttribute(Qt::WA_StyledBackground);
    setWindowTitle(tr("Upmix"));
    askName = [this](const QString& title, const QString& name) { return askedName(this, title, name); };
    confirm = [this](const QString& question, const QString& button) { return confirmed(this, question, button); };
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(8);
    column->addWidget(makeTop());
    auto* middle = new QHBoxLayout;
    middle->setSpacing(margin);
    middle->addWidget(map_ = new UpmixMap(player.upmixLevels()), 2);
    middle->addWidget(new FormScroll(sliders_ = new UpmixSliders(numbers_)), 3);
    column->addLayout(middle, 1);
    column->addWidget(makeBottom());
    connect(&player, &PlayerModel::changed, this, &UpmixPanel::refresh);
    connect(&settings, &SettingsStore::changed, this, &UpmixPanel::refresh);
    connect(&compare_, &UpmixCompare::changed, this, &UpmixPanel::refresh);
    setMinimumSize(leastSize);
    resize(fittingSize(*this, usualSize));
    refresh();
}

bool UpmixPanel::Numbers::isStereo() const {
    const auto& source = player_.sound().source();
    return !source || source == SourceFormat::stereo();
}

void UpmixPanel::bringUp() {
    show();
    // The offscreen platform can't raise windows, and Qt would print a warning each time.
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) { return; }
    raise();
    activateWindow();
}

QWidget* UpmixPanel::makeTop() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    preset_ = new MenuButton(tr("Preset"), tr("The preset that the numbers start from"),
                             [this](QMenu& menu) { addUpmixChoices(menu, tuning_); });
    setSymbol(*preset_, "upmix");
    keep_ = new MenuButton(tr("Keep"), tr("Presets of your own"), [this](QMenu& menu) { fillKeep(menu); });
    keep_->setChoice(tr("Keep"));
    keep_->setAccessibleName(tr("Keep"));
    reset_ = new QPushButton(tr("Reset"));
    reset_->setToolTip(tr("Back to the preset's values"));
    connect(reset_, &QPushButton::clicked, this, [this] { tuning_.reset(); });
    compareButton_ = new QPushButton(tr("Compare"));
    compareButton_->setCheckable(true);
    connect(compareButton_, &QPushButton::clicked, this, [this] {
        compare_.toggle();
        refresh();  // a refused click must not stay down
    });
    row->addWidget(preset_);
    row->addWidget(keep_);
    row->addWidget(reset_);
    row->addStretch();
    row->addWidget(compareButton_);
    return bar;
}

QWidget* UpmixPanel::makeBottom() {
    note_ = new QLabel;
    note_->setTextFormat(Qt::PlainText);
    note_->setWordWrap(true);
    note_->setAccessibleName(tr("Note"));
    return note_;
}

void UpmixPanel::fillKeep(QMenu& menu) {
    const std::string own = tuning_.now().own;
    const auto entry = [&](const QString& text, bool enabled, auto action) {
        auto* added = menu.addAction(text);
        added->setEnabled(enabled);
        connect(added, &QAction::triggered, this, action);
    };
    entry(tr("Save"), !own.empty() && tuning_.isChanged(), [this, own] { save(QString::fromStdString(own)); });
    entry(tr("Save As…"), true, &UpmixPanel::saveAs);
    entry(tr("Rename…"), !own.empty(), &UpmixPanel::rename);
    entry(tr("Delete…"), !own.empty(), &UpmixPanel::remove);
}

void UpmixPanel::save(const QString& name) {
    say(tuning_.saveAs(name.toStdString()));
}

void UpmixPanel::saveAs() {
    const auto name = askName(tr("Save the Upmix As"), QString::fromStdString(tuning_.now().own));
    if (!name) { return; }
    const OwnUpmixPreset* const old = ownUpmixPreset(tuning_.own(), name->toStdString());
    if (old && old->name != tuning_.now().own &&
        !confirm(tr("Replace the preset “%1”?").arg(QString::fromStdString(old->name)), tr("Replace"))) {
        return;
    }
    save(*name);
}

void UpmixPanel::rename() {
    const auto name = askName(tr("Rename the Preset"), QString::fromStdString(tuning_.now().own));
    if (name) { say(tuning_.rename(name->toStdString())); }
}

void UpmixPanel::remove() {
    if (confirm(tr("Delete the preset “%1”?").arg(QString::fromStdString(tuning_.now().own)), tr("Delete"))) {
        tuning_.remove();
    }
}

void UpmixPanel::say(const std::string& problem) {
    problem_ = QString::fromStdString(problem);
    refresh();
    problem_.clear();
}

void UpmixPanel::refresh() {
    const QString choice = upmixChoice(tuning_);
    preset_->setChoice(choice);
    preset_->setText(preset_->fontMetrics().elidedText(choice, Qt::ElideRight, longestName).replace('&', "&&"));
    preset_->setToolTip(plainToolTip(tr("The preset that the numbers start from: %1").arg(choice)));
    reset_->setEnabled(tuning_.isChanged());
    sliders_->refresh();
    const bool measuring = compare_.isMeasuring();
    compareButton_->setEnabled(compare_.isPossible());
    compareButton_->setChecked(compare_.isPlain() || measuring);
    compareButton_->setToolTip(compare_.isPossible()
                                   ? tr("Ctrl+U: plays the plain fold-down as loud as the upmix, and the upmix again")
                                   : tr("There is no upmix to compare with"));
    const auto& comparison = player_.listening().comparison();
    QString note = problem_.isEmpty() ? upmixProblem(player_.listening()) : problem_;
    const bool warns = !note.isEmpty();
    if (note.isEmpty() && measuring) { note = tr("Measuring how loud both are…"); }
    if (note.isEmpty() && comparison) {
        note = (comparison->plain ? tr("You hear the plain fold-down, %1 dB to be equally loud")
                                  : tr("You hear the upmix, %1 dB to be equally loud"))
                   .arg(QString::asprintf("%+.1f", comparison->gainDb + 0.0));
    }
    note_->setText(note);
    const QString role = warns ? "warning" : "secondary";
    if (note_->property("role") == role) { return; }
    note_->setProperty("role", role);
    note_->style()->polish(note_);
}

void UpmixPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    map_->setVisible(width() >= roomForMap);
}

// The main window's shortcuts work here, too, but this one must not close that window.
bool UpmixPanel::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Close)) {
        event->accept();
    }
    return QWidget::event(event);
}

void UpmixPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else if (event->key() == Qt::Key_Space) {
        player_.togglePlay();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace brindlehum
