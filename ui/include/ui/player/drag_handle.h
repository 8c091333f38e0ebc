// DragHandle: a handle for dragging a file into another program.
#pragma once

#include <QToolButton>
#include <filesystem>
#include <functional>
#include <optional>

namespace brindlehum {

class DragHandle : public QToolButton {
    Q_OBJECT
public:
    explicit DragHandle(QWidget* parent = nullptr);

    std::function<std::optional<std::filesystem::path>()> file;
    std::function<QPixmap()> picture;
    // Puts the file on the clipboard; a click and the keyboard do this, for users who don't drag.
    void copyFile();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    std::optional<QPoint> pressedAt_;
};

}  // namespace brindlehum
