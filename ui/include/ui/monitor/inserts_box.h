// InsertsBox: the chain of effects behind the monitor, in the monitor's window.
#pragma once

#include <QHash>
#include <QPointer>
#include <QWidget>
#include <vector>

#include "monitor/engine/monitor_engine.h"

class QLabel;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace brindlehum {

class ElidedLabel;
class InsertPanel;

// One insert: its name, and what can be done with it.
class InsertRow : public QWidget {
    Q_OBJECT
public:
    InsertRow(MonitorEngine& monitor, const UUID& id, QWidget* parent = nullptr);
    void refresh(int place, int count);

private:
    MonitorEngine& monitor_;
    const UUID id_;
    int place_ = 0;
    ElidedLabel* name_;
    ElidedLabel* problem_;
    QPushButton* bypass_;
    QToolButton* up_;
    QToolButton* down_;
};

class InsertsBox : public QWidget {
    Q_OBJECT
public:
    explicit InsertsBox(MonitorEngine& monitor, QWidget* parent = nullptr);
    ~InsertsBox() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void refresh();
    void makeRows();
    void add();
    void open(const UUID& id);

    MonitorEngine& monitor_;
    std::vector<UUID> shown_;
    std::vector<InsertRow*> rows_;
    QWidget* list_;
    QVBoxLayout* column_;
    QWidget* scroll_;
    QLabel* latency_;
    QWidget* failure_;
    QLabel* message_;
    QLabel* hint_;
    std::map<UUID, QPointer<InsertPanel>> panels_;
};

}  // namespace brindlehum
