// A filter's capsule: text, button and accessible names.
#include "ui/browser/filter_chip.h"

#include <QHBoxLayout>
#include <QToolButton>

#include "ui/look/elided_label.h"
#include "ui/look/icons.h"
#include "ui/look/plain_tool_tip.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int maxWidth = 220;
constexpr int chipHeight = 24;

}  // namespace

FilterChip::FilterChip(const QString& clearText, QWidget* parent) : QFrame(parent), clearText_(clearText) {
    setProperty("role", "chip");
    setMaximumWidth(maxWidth);
    setFixedHeight(chipHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 0, 2, 0);
    row->setSpacing(2);
    row->addWidget(value_ = new ElidedLabel(Qt::ElideMiddle));
    row->addWidget(clear_ = new QToolButton);
    clear_->setProperty("role", "chip");
    clear_->setIcon(symbol("clear-fill"));
    clear_->setIconSize({14, 14});
    clear_->setFocusPolicy(Qt::StrongFocus);
    connect(clear_, &QToolButton::clicked, this, &FilterChip::cleared);
    setValue({});
}

void FilterChip::setValue(const QString& value) {
    value_->setFullText(value);
    const QString clear = clearText_.arg(value);
    clear_->setAccessibleName(clear);
    clear_->setToolTip(plainToolTip(clear));
    setVisible(!value.isEmpty());
}

}  // namespace brindlehum
