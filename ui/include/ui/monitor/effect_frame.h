// EffectFrame: the place in a window of ours where an effect's maker draws his.
#pragma once

#include <QWidget>

#include "monitor/engine/insert_windows.h"

namespace brindlehum {

// As large as what is drawn in it; nothing until that is there.
class EffectFrame : public QWidget {
    Q_OBJECT
public:
    // Whether the desktop lets another process draw in a window of ours: X11 does, Wayland doesn't.
    static bool canBe();

    EffectFrame(InsertWindows& windows, const UUID& id, QWidget* parent);
    ~EffectFrame() override;

Q_SIGNALS:
    void resized();

private:
    void follow();

    InsertWindows& windows_;
    const UUID id_;
};

}  // namespace brindlehum
