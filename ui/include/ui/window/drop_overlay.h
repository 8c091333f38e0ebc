// DropOverlay: covers a widget with a text while something that can be dropped is dragged over it.
#pragma once

#include <QWidget>

namespace brindlehum {

// Lets the mouse through and always covers its parent.
class DropOverlay : public QWidget {
    Q_OBJECT
public:
    explicit DropOverlay(QWidget* parent);
    void showFor(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString text_;
};

}  // namespace brindlehum
