// FormScroll: a form that scrolls up and down where the window is too low for it, and shows the field with the focus.
#pragma once

#include <QScrollArea>

namespace brindlehum {

class FormScroll : public QScrollArea {
    Q_OBJECT
public:
    explicit FormScroll(QWidget* form, QWidget* parent = nullptr);
    QSize minimumSizeHint() const override;
};

}  // namespace brindlehum
