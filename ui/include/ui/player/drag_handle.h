// DragHandle: a grip from which a file is dragged into another program.
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
    // A click or a key, for those who don't drag: puts the file on the clipboard.
    void copyFile();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    std::optional<QPoint> pressedAt_;
};

}  // namespace brindlehum
