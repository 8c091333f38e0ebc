// A native window that another process fills.
#include "ui/monitor/effect_frame.h"

#include <QGuiApplication>
#include <cmath>

namespace brindlehum {

bool EffectFrame::canBe() {
    return QGuiApplication::platformName() == "xcb";
}

EffectFrame::EffectFrame(InsertWindows& windows, const UUID& id, QWidget* parent)
    : QWidget(parent), windows_(windows), id_(id) {
    setAttribute(Qt::WA_DontCreateNativeAncestors);
    setAttribute(Qt::WA_NativeWindow);
    setFixedSize(0, 0);
    connect(&windows, &InsertWindows::changed, this, &EffectFrame::follow);
    windows.open(id, winId(), devicePixelRatioF());
}

EffectFrame::~EffectFrame() {
    windows_.close(id_);
}

void EffectFrame::follow() {
    const InsertWindows::Window* const window = windows_.find(id_);
    const double scale = devicePixelRatioF();
    const QSize size =
        window ? QSize(int(std::ceil(window->width / scale)), int(std::ceil(window->height / scale))) : QSize();
    if (size == this->size()) { return; }
    setFixedSize(size);
    Q_EMIT resized();
}

}  // namespace brindlehum
