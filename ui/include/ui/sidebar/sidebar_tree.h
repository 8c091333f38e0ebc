// SidebarTree: the sidebar's list: one click or Return chooses a row or folds a section.
#pragma once

#include <QTreeView>

namespace brindlehum {

class SidebarModel;

class SidebarTree : public QTreeView {
    Q_OBJECT
public:
    explicit SidebarTree(SidebarModel& model, QWidget* parent = nullptr);

Q_SIGNALS:
    void chosen(const QModelIndex& index);
    void typed(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void choose(const QModelIndex& index);
};

}  // namespace brindlehum
