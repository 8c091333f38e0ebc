// SymbolLabel: a symbol beside text, in the colours of the current theme.
#pragma once

#include <QWidget>

#include "ui/look/icons.h"

namespace brindlehum {

class SymbolLabel : public QWidget {
    Q_OBJECT
public:
    SymbolLabel(const QString& name, SymbolRole role, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon icon_;
};

}  // namespace brindlehum
