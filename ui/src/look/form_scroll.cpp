// Scrolls to whatever gets the focus, also by a caption's letter.
#include "ui/look/form_scroll.h"

#include <QApplication>
#include <QScrollBar>

namespace brindlehum {

FormScroll::FormScroll(QWidget* form, QWidget* parent) : QScrollArea(parent) {
    setWidget(form);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && widget() && widget()->isAncestorOf(now)) { ensureWidgetVisible(now, 0, 8); }
    });
}

// Narrower than this, the form would be cut, since nothing scrolls sideways.
QSize FormScroll::minimumSizeHint() const {
    const int bar = verticalScrollBar()->sizeHint().width();
    return {widget()->minimumSizeHint().width() + bar, QScrollArea::minimumSizeHint().height()};
}

}  // namespace brindlehum
