// FilterChip: a capsule with one filter in force and a button that takes it off.
#pragma once

#include <QFrame>

class QToolButton;

namespace brindlehum {

class ElidedLabel;

class FilterChip : public QFrame {
    Q_OBJECT
public:
    // `kind` names the filter for tooltips and assistive technology ("Category").
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
