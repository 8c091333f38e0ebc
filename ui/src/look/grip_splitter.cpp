// The splitter's handle: paints the grip and takes the keys.
#include "ui/look/grip_splitter.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QSplitterHandle>

#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int handleHeight = 9;
constexpr QSize gripSize(44, 4);
constexpr int keyStep = 16;

class GripHandle : public QSplitterHandle {
public:
    GripHandle(GripSplitter& splitter, const QString& name)
        : QSplitterHandle(Qt::Vertical, &splitter), splitter_(splitter) {
        setFocusPolicy(Qt::TabFocus);
        setAccessibleName(name);
        setToolTip(QCoreApplication::translate(
            "GripSplitter", "Drag to change the height; double-click to fit it to the number of channels"));
        setAttribute(Qt::WA_Hover);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const Theme& theme = Theme::current();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(hasFocus() || underMouse() ? theme.accent : theme.secondary);
        QRect grip(QPoint(), gripSize);
        grip.moveCenter(rect().center());
        painter.drawRoundedRect(grip, 2, 2);
    }
    void keyPressEvent(QKeyEvent* event) override {
        switch (event->key()) {
            case Qt::Key_Up:
                return moveSplitter(pos().y() - keyStep);
            case Qt::Key_Down:
                return moveSplitter(pos().y() + keyStep);
            case Qt::Key_Escape:
                Q_EMIT splitter_.resetAsked();
                return;
            default:
                QSplitterHandle::keyPressEvent(event);
        }
    }
    void mouseDoubleClickEvent(QMouseEvent* /*event*/) override { Q_EMIT splitter_.resetAsked(); }

private:
    GripSplitter& splitter_;
};

}  // namespace

GripSplitter::GripSplitter(const QString& handleName, QWidget* parent)
    : QSplitter(Qt::Vertical, parent), handleName_(handleName) {
    setChildrenCollapsible(false);
    setHandleWidth(handleHeight);
}

QSplitterHandle* GripSplitter::createHandle() {
    return new GripHandle(*this, handleName_);
}

}  // namespace brindlehum
