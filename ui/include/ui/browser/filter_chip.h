// FilterChip: a capsule that shows one active filter, with a button that clears it.
#pragma once

#include <QFrame>

class QToolButton;

namespace brindlehum {

class ElidedLabel;

class FilterChip : public QFrame {
    Q_OBJECT
public:
    // `kind` names the filter in tooltips and for assistive technology ("Category").
    explicit FilterChip(const QString& kind, QWidget* parent = nullptr);
    // An empty value hides the chip.
    void setValue(const QString& value);

Q_SIGNALS:
    void cleared();

private:
    QString kind_;
    ElidedLabel* value_;
    QToolButton* clear_;
};

}  // namespace brindlehum
