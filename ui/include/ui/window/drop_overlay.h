// DropOverlay: shows over a window that what is dragged there may be dropped.
#pragma once

#include <QWidget>

namespace brindlehum {

// Takes no mouse itself and always covers its parent.
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
