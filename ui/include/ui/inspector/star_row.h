// StarRow: a rating of up to five stars, by mouse or by keys.
#pragma once

#include <QWidget>

namespace brindlehum {

class StarRow : public QWidget {
    Q_OBJECT
public:
    static constexpr int stars = 5;

    explicit StarRow(QWidget* parent = nullptr);
    void setRating(int rating);  // 0 to 5
    QRect starRect(int star) const;
    QSize sizeHint() const override;

Q_SIGNALS:
    // A star was clicked, or chosen by Left, Right or its digit. The digit 0 reports the current rating's star, which
    // clears the rating.
    void starClicked(int star);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int starAt(const QPoint& point) const;
    void hover(int star);

    int rating_ = 0;
    int hovered_ = 0;
};

}  // namespace brindlehum
