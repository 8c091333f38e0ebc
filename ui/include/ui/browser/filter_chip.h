// FilterChip: a capsule that shows one active filter, with a button that clears it.
#pragma once

#include <QFrame>

class QToolButton;

namespace brindlehum {

class ElidedLabel;

class FilterChip : public QFrame {
    Q_OBJECT
public:
    // `clearText` is what its button does, for tooltips and assistive technology: "Clear category %1".
    explicit FilterChip(const QString& clearText, QWidget* parent = nullptr);
    // An empty value hides the chip.
    void setValue(const QString& value);

Q_SIGNALS:
    void cleared();

private:
    QString clearText_;
    ElidedLabel* value_;
    QToolButton* clear_;
};

}  // namespace brindlehum
