// A card of the temp edits.
#include "ui/editor/plan_card.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

#include "ui/look/icons.h"

namespace brindlehum {

PlanCard::PlanCard(const EditPlan& plan, double seconds, bool isHeard, QWidget* parent) : QFrame(parent) {
    setProperty("role", "card");
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(10, 6, 8, 6);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    auto* name = new QLabel(QString::fromStdString(plan.name));
    name->setProperty("role", "headline");
    auto* length = new QLabel(QString::asprintf("%.1fs", seconds));
    length->setProperty("role", "secondary");
    grid->addWidget(name, 0, 0);
    grid->addWidget(length, 0, 1);
    if (plan.spans.size() > 1) {
        auto* quality = new QLabel(QString::asprintf("%.0f%%", plan.quality * 100));
        quality->setProperty("role", "secondary");
        quality->setToolTip(tr("How closely the bars around each splice match"));
        grid->addWidget(quality, 0, 2);
    }
    auto* map = new QLabel(QString::fromStdString(plan.map));
    map->setProperty("role", "caption");
    map->setWordWrap(true);
    grid->addWidget(map, 1, 0, 1, 3);
    auto* play = new QToolButton;
    play->setIcon(symbol(isHeard ? "stop" : "play"));
    play->setAccessibleName((isHeard ? tr("Stop %1") : tr("Audition %1")).arg(name->text()));
    play->setFocusPolicy(Qt::TabFocus);
    play->setToolTip(isHeard ? tr("Stop") : tr("Audition this edit"));
    connect(play, &QToolButton::clicked, this, [this] { onAudition(); });
    grid->addWidget(play, 0, 3, 2, 1, Qt::AlignVCenter);
    grid->setColumnStretch(0, 1);
}

}  // namespace brindlehum
