// ElidedLabel: one line of text, elided where the room is short; the tooltip then shows all of it.
#pragma once

#include <QLabel>

namespace brindlehum {

class ElidedLabel : public QLabel {
    Q_OBJECT
public:
    explicit ElidedLabel(Qt::TextElideMode mode = Qt::ElideMiddle, QWidget* parent = nullptr);
    void setFullText(const QString& text);
    const QString& fullText() const { return full_; }
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void elide();
    Qt::TextElideMode mode_;
    QString full_;
};

}  // namespace brindlehum
