// GripSplitter: a splitter of one widget above another, whose handle shows that it can be dragged.
#pragma once

#include <QSplitter>

namespace brindlehum {

// The handle has a name for screen readers, and is moved by the mouse or, with the focus, by Up and Down.
class GripSplitter : public QSplitter {
    Q_OBJECT
public:
    explicit GripSplitter(const QString& handleName, QWidget* parent = nullptr);

Q_SIGNALS:
    void resetAsked();  // by a double click on the handle, or Escape

protected:
    QSplitterHandle* createHandle() override;

private:
    QString handleName_;
};

}  // namespace brindlehum
