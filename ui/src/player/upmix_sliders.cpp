// Ranges and texts of the upmix's numbers, and when which has an effect.
#include "ui/player/upmix_sliders.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <cmath>

#include "ui/look/menu_button.h"
#include "ui/look/tabular_font.h"
#include "ui/look/value_slider.h"

namespace brindlehum {
namespace {

using Field = double UpmixParams::*;
using Text = QString (*)(double);

constexpr double lowestDb = -40;  // the planner leaves speakers out at this level and below

struct Control {
    const char* group;
    const char* name;
    const char* help;
    Field field;
    ValueSlider::Range range;
    Text text;
};

QString percent(double x) {
    return QString::asprintf("%.0f%%", x * 100);
}
QString sevenths(double x) {
    return UpmixSliders::tr("%1 of 7").arg(x * 7, 0, 'f', 0);
}
QString angle(double x) {
    return QString::asprintf("±%.0f°", x);
}
// Adding zero turns a negative zero into "+0.0".
QString decibels(double x) {
    return QString::asprintf("%+.1f dB", x + 0.0);
}
QString levelOrOff(double x) {
    return x <= lowestDb ? UpmixSliders::tr("off") : decibels(x);
}
QString milliseconds(double x) {
    return QString::asprintf("%.0f ms", x);
}
QString hertzOrOff(double x) {
    return x <= 0 ? UpmixSliders::tr("off") : QString::asprintf("%.0f Hz", x);
}
QString factor(double x) {
    return QString::asprintf("× %.1f", x);
}

const std::vector<Control>& controls() {
    using P = UpmixParams;
    static const std::vector<Control> all = {
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Strength"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "From the plain sound to the whole upmix"),
         &P::strength,
         {0, 1, 0.01, 1, 1},
         percent},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Centre width"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "How much of the centre moves out to left and right"),
         &P::centerWidth,
         {0, 1, 1.0 / 7, 0, 1},
         sevenths},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front stage"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Where a sound that is hard left or right stands"),
         &P::stage,
         {30, 60, 5, 30, 1},
         angle},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Share of the ambience that stays in front"),
         &P::frontAmbience,
         {0, 1, 0.01, 0.45, 1},
         percent},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Front"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Focus"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "How readily a sound counts as direct"),
         &P::focus,
         {0.1, 4, 0.1, 1, 1},
         factor},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Level of the ambience in all speakers but its own"),
         &P::ambienceDB,
         {-12, 9, 0.5, 0, 1},
         decibels},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Sides"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Level of the ambience in Ls and Rs"),
         &P::sideDB,
         {lowestDb, 6, 0.5, 0, 1},
         levelOrOff},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Rears"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Level of the ambience in Lrs, Rrs and Cs"),
         &P::rearDB,
         {lowestDb, 6, 0.5, 0, 1},
         levelOrOff},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Wides"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Level of the ambience in Lw, Rw, Lc and Rc"),
         &P::wideDB,
         {lowestDb, 6, 0.5, 0, 1},
         levelOrOff},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Heights"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Level of the ambience overhead"),
         &P::heightDB,
         {lowestDb, 6, 0.5, 0, 1},
         levelOrOff},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Ambience"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Height tilt"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders",
                           "Raises the front heights and lowers the rear ones, by three times as much"),
         &P::heightTilt,
         {-4, 4, 0.1, 0, 1},
         decibels},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Colour and delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Surround delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Delay of what is behind or overhead"),
         &P::surroundDelayMs,
         {0, 20, 1, 0, 1},
         milliseconds},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Colour and delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Room delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Spread of the delays of speakers that play ambience alone"),
         &P::roomMs,
         {0, 40, 1, 0, 1},
         milliseconds},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Colour and delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Shelf from"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders",
                           "From here up, what is behind or overhead is made darker or brighter"),
         &P::shelfHz,
         {0, 16000, 250, 0, 1},
         hertzOrOff},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Colour and delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Shelf"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "By how much"),
         &P::shelfDB,
         {-24, 6, 0.5, 0, 1},
         decibels},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Colour and delay"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Height high-pass"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Keeps lows out of the heights"),
         &P::heightHPFHz,
         {0, 500, 10, 0, 1},
         hertzOrOff},
        {QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Bass"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "LFE level"),
         QT_TRANSLATE_NOOP("brindlehum::UpmixSliders", "Level of the bass sent to the LFE"),
         &P::lfeDB,
         {-20, 10, 0.5, 0, 1},
         decibels},
    };
    return all;
}

template <class... Fields>
bool isOneOf(Field field, Fields... fields) {
    return ((field == fields) || ...);
}

// Why a number has no effect; empty when it has one.
QString whyIdle(Field field, const UpmixParams& now, bool stereo) {
    using P = UpmixParams;
    const bool isBass = isOneOf(field, &P::lfeHz, &P::lfeDB);
    if (!stereo && (isBass || isOneOf(field, &P::stage, &P::centerWidth))) {
        return UpmixSliders::tr("Has an effect on stereo sounds only: others keep their front and their LFE");
    }
    if (now.exact && (isBass || isOneOf(field, &P::stage, &P::surroundDelayMs, &P::roomMs))) {
        return UpmixSliders::tr("Has no effect on an exact fold-down");
    }
    if (isBass && now.lfe == P::LFEMode::off) { return UpmixSliders::tr("No bass is sent to the LFE"); }
    return {};
}

QLabel* heading(const QString& text) {
    auto* label = new QLabel(text);
    label->setProperty("role", "headline");
    label->setContentsMargins(0, 8, 0, 0);
    return label;
}

}  // namespace

UpmixSliders::UpmixSliders(UpmixNumbers& numbers, QWidget* parent) : QWidget(parent), numbers_(numbers) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 8, 8);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    addSliders(*grid);
    addExact(*grid);
    refresh();
}

void UpmixSliders::addSliders(QGridLayout& grid) {
    const char* group = "";
    for (size_t i = 0; i < controls().size(); ++i) {
        if (std::exchange(group, controls()[i].group) != std::string(controls()[i].group)) {
            grid.addWidget(heading(tr(group)), grid.rowCount(), 0, 1, 3);
            if (group == std::string("Bass")) { addBass(grid); }
        }
        addSlider(grid, i);
    }
}

void UpmixSliders::addSlider(QGridLayout& grid, size_t control) {
    const auto& [group, name, help, field, range, text] = controls()[control];
    auto* slider = new ValueSlider(tr(name), range);
    slider->setAccessibleDescription(tr(help));
    slider->setMinimumWidth(110);
    slider->installEventFilter(this);
    slider->onEdit = [this, field = field](double value) { edit([&](UpmixParams& params) { params.*field = value; }); };
    slider->onRest = [this, field = field] {
        edit([&](UpmixParams& params) { params.*field = numbers_.start().*field; });
    };
    auto* label = new QLabel(tr(name));
    label->setProperty("role", "secondary");
    label->setBuddy(slider);
    auto* value = new QLabel;
    value->setFont(tabularFont(9));
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    value->setMinimumWidth(QFontMetrics(value->font()).horizontalAdvance("16000 Hz") + 4);
    const int row = grid.rowCount();
    grid.addWidget(label, row, 0);
    grid.addWidget(slider, row, 1);
    grid.addWidget(value, row, 2);
    rows_.push_back({field, text, label, slider, value});
}

void UpmixSliders::addBass(QGridLayout& grid) {
    using Mode = UpmixParams::LFEMode;
    bass_ = new MenuButton(tr("Bass to LFE"), tr("Whether bass goes to the LFE as well"), [this](QMenu& menu) {
        for (const auto& [mode, name] : {std::pair(Mode::off, tr("Off")), {Mode::split, tr("Split")}}) {
            addChoice(menu, name, numbers_.now().lfe == mode,
                      [this, chosen = mode] { edit([&](UpmixParams& params) { params.lfe = chosen; }); });
        }
    });
    crossover_ = new MenuButton(tr("Crossover"), tr("Below this, bass goes to the LFE"), [this](QMenu& menu) {
        for (const double hertz : {80.0, 120.0}) {
            addChoice(menu, hertzOrOff(hertz), numbers_.now().lfeHz == hertz,
                      [this, hertz] { edit([&](UpmixParams& params) { params.lfeHz = hertz; }); });
        }
    });
    for (MenuButton* button : {bass_, crossover_}) {
        auto* label = new QLabel(button->accessibleName());
        label->setProperty("role", "secondary");
        label->setBuddy(button);
        const int row = grid.rowCount();
        grid.addWidget(label, row, 0);
        grid.addWidget(button, row, 1, Qt::AlignLeft);
    }
}

void UpmixSliders::addExact(QGridLayout& grid) {
    exact_ = new QCheckBox(tr("Exact fold-down"));
    exact_->setToolTip(
        tr("The 2.0 fold-down of the upmix is the sound itself: no delays, no decorrelation, no bass send"));
    connect(exact_, &QCheckBox::clicked, this,
            [this](bool on) { edit([&](UpmixParams& params) { params.exact = on; }); });
    const int row = grid.rowCount();
    grid.addWidget(heading(tr("Delivery")), row, 0, 1, 3);
    grid.addWidget(exact_, row + 1, 0, 1, 3);
    grid.setRowStretch(row + 2, 1);
}

void UpmixSliders::edit(const std::function<void(UpmixParams&)>& change) {
    UpmixParams params = numbers_.now();
    change(params);
    numbers_.edit(params);
    refresh();
}

void UpmixSliders::refresh() {
    const UpmixParams& now = numbers_.now();
    const bool stereo = numbers_.isStereo();
    const UpmixParams start = numbers_.start();
    for (size_t i = 0; i < rows_.size(); ++i) {
        const Row& row = rows_[i];
        const QString idle = whyIdle(row.field, now, stereo);
        row.slider->setNumber(now.*row.field);
        row.value->setText(row.text(now.*row.field));
        const QString rest = tr(controls()[i].help) + "\n" + tr("Double-click: %1").arg(row.text(start.*row.field));
        for (QWidget* part :
             {static_cast<QWidget*>(row.label), static_cast<QWidget*>(row.slider), static_cast<QWidget*>(row.value)}) {
            part->setEnabled(idle.isEmpty());
            part->setToolTip(idle.isEmpty() ? rest : idle);
        }
    }
    bass_->setChoice(now.lfe == UpmixParams::LFEMode::split ? tr("Split") : tr("Off"));
    crossover_->setChoice(hertzOrOff(now.lfeHz));
    bass_->setEnabled(stereo && !now.exact);
    crossover_->setEnabled(whyIdle(&UpmixParams::lfeHz, now, stereo).isEmpty());
    exact_->setChecked(now.exact);
}

// A wheel over a slider scrolls the panel, unless the slider has the focus.
bool UpmixSliders::eventFilter(QObject* watched, QEvent* event) {
    auto* slider = qobject_cast<ValueSlider*>(watched);
    if (event->type() != QEvent::Wheel || !slider || slider->hasFocus()) {
        return QWidget::eventFilter(watched, event);
    }
    event->ignore();
    return true;
}

}  // namespace brindlehum
