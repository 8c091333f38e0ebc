// TakeRow: a file that was made for the document: to hear, and to drag into another program.
#pragma once

#include <QFrame>
#include <filesystem>
#include <functional>

namespace brindlehum {

class TakeRow : public QFrame {
    Q_OBJECT
public:
    TakeRow(std::filesystem::path file, bool isHeard, QWidget* parent = nullptr);
    std::function<void()> onAudition;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    std::filesystem::path file_;
    QPoint pressedAt_;
};

}  // namespace brindlehum
