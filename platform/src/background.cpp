// The tickets behind Background: the main thread marks a piece of work as overtaken on the work's ticket.
#include "platform/background.h"

namespace brindlehum {

bool Background::Ticket::begin() {
    State expected = State::waiting;
    return state_.compare_exchange_strong(expected, State::begun);
}

void Background::Ticket::drop() {
    hadBegun_ |= state_.exchange(State::dropped) == State::begun;
    stop.request_stop();
}

void Background::Ticket::end() {
    hasEnded_ = true;
    hasEnded_.notify_all();
}

void Background::Ticket::wait() const {
    if (hadBegun_) { hasEnded_.wait(false); }
}

void Background::Ticket::dropIfWaiting() {
    State expected = State::waiting;
    if (state_.compare_exchange_strong(expected, State::dropped)) { stop.request_stop(); }
}

Background::Task::Task(MainLoop& loop, std::shared_ptr<Ticket> ticket)
    : loop_(loop), ticket_(std::move(ticket)), token_(ticket_->stop.get_token()) {}

void Background::Task::tell(std::function<void()> call) const {
    loop_.post([ticket = ticket_, call = std::move(call)] {
        if (!ticket->isDropped()) { call(); }
    });
}

void Background::Line::cancel() {
    if (newest_) { newest_->drop(); }
    newest_.reset();
}

bool Background::Line::isBusy() const {
    return newest_ && !newest_->back && !newest_->isDropped();
}

Background::Background(MainLoop& loop, const std::string& label)
    : Background(loop, std::make_shared<SerialQueue>(label)) {}

Background::Background(MainLoop& loop, std::shared_ptr<SerialQueue> queue) : loop_(loop), queue_(std::move(queue)) {}

Background::~Background() {
    // Drop the newest first, so that no waiting work begins when the running work ends.
    for (auto ticket = open_->rbegin(); ticket != open_->rend(); ++ticket) { (*ticket)->drop(); }
    for (const auto& ticket : *open_) { ticket->wait(); }
}

void Background::stop() {
    for (const auto& ticket : *open_) { ticket->stop.request_stop(); }
}

void Background::dropWaiting() {
    for (const auto& ticket : *open_) { ticket->dropIfWaiting(); }
}

int Background::pending() const {
    return int(open_->size());
}

void Background::start(Line* line, std::unique_ptr<Job> ourJob) {
    auto ticket = std::make_shared<Ticket>();
    open_->push_back(ticket);
    if (line != nullptr) {
        line->cancel();
        line->newest_ = ticket;
    }
    queue_->async([ticket, open = open_, &loop = loop_, job = std::shared_ptr(std::move(ourJob))]() mutable {
        if (ticket->begin()) {
            job->work(Task(loop, ticket));
            if (ticket->isDropped()) { job->forget(); }
            ticket->end();
        }
        // Move the callbacks to the main thread too, so that their captures are freed there.
        loop.post([ticket, open, job = std::move(job)] {
            std::erase(*open, ticket);
            ticket->back = true;
            if (!ticket->isDropped()) { job->finish(); }
        });
    });
}

}  // namespace brindlehum
