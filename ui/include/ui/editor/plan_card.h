// PlanCard: one planned edit: its name, length, splices and map, and a button to hear it.
#pragma once

#include <QFrame>
#include <functional>

#include "edits/edit_plan.h"

namespace brindlehum {

class PlanCard : public QFrame {
    Q_OBJECT
public:
    PlanCard(const EditPlan& plan, double seconds, bool isHeard, QWidget* parent = nullptr);
    std::function<void()> onAudition;
};

}  // namespace brindlehum
