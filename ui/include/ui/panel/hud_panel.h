// HUDPanel: the dark strip under the file manager's window. It floats over other programs and never takes the keyboard.
#pragma once

#include <QWidget>
#include <cstdint>

namespace brindlehum {

class HUDPanel : public QWidget {
    Q_OBJECT
public:
    // Shows `content`, which becomes its own. Made hidden.
    explicit HUDPanel(QWidget* content);
    // Lets what lies below shine through and rounds the corners; needs a compositor.
    void setTranslucent(bool translucent);
    // The window that it belongs to, by its number in the window system: it stays above that one, also when that fills
    // the screen. 0 for none.
    void setOwnerWindow(uint64_t nativeId);

Q_SIGNALS:
    void closeAsked();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    uint64_t owner_ = 0;
};

}  // namespace brindlehum
