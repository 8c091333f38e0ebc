// FittingRow: as many of its widgets as fit whole, from the first on; for commands that a menu has, too.
#pragma once

#include <QWidget>
#include <vector>

namespace brindlehum {

class FittingRow : public QWidget {
    Q_OBJECT
public:
    explicit FittingRow(int spacing, QWidget* parent = nullptr);  // logical pixels
    // Takes the ownership.
    void add(QWidget* widget);
    QSize sizeHint() const override;         // of all
    QSize minimumSizeHint() const override;  // of none

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();
    int spacing_;
    std::vector<QWidget*> widgets_;
};

}  // namespace brindlehum
