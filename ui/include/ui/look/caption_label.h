// CaptionLabel: the caption of a field; a click on it, or Alt with its underlined letter, goes to the field.
#pragma once

#include <QLabel>
#include <QMouseEvent>

namespace brindlehum {

class CaptionLabel : public QLabel {
public:
    // An & in `text` precedes the letter.
    CaptionLabel(const QString& text, QWidget& field) : QLabel(text) { setBuddy(&field); }

protected:
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton || !buddy() || !buddy()->isEnabled()) { return event->ignore(); }
        buddy()->setFocus(Qt::MouseFocusReason);
    }
};

}  // namespace brindlehum
