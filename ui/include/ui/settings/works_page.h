// WorksPage: what works on this desktop, and what helps where it doesn't.
#pragma once

#include <QWidget>
#include <functional>

#include "app/what_works.h"
#include "platform/background.h"

class QVBoxLayout;

namespace brindlehum {

class WorksPage : public QWidget {
    Q_OBJECT
public:
    using Now = std::function<DesktopFacts()>;         // what is known at once
    using Found = std::function<void(DesktopFacts&)>;  // fills in what has been found
    using Look = std::function<Found()>;               // runs on a thread of its own, and may wait there
    using Prepare = std::function<Look()>;             // on the main thread, before each look
    WorksPage(Now now, const std::vector<Prepare>& looks, MainLoop& loop);

    // Looks again, as it does each time that it is shown or its window comes to the front.
    void refresh();

Q_SIGNALS:
    void shown();

protected:
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Search {
        Prepare prepare;
        Found found;  // the last time
        Background::Line line;
        Background queue;  // last member, so that its work ends first
    };
    void fill();

    Now now_;
    QVBoxLayout* rows_;
    QWidget* list_ = nullptr;
    std::vector<WorksRow> shown_;
    std::vector<std::unique_ptr<Search>> searches_;
};

}  // namespace brindlehum
