// Descriptor: the only owner of an open file descriptor.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace brindlehum {

class Descriptor {
public:
    Descriptor() = default;
    // Takes the result of open() and similar calls; a negative number means no descriptor.
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }
    // Closes it now. False, with errno set, when the system reports a failure: some file systems report a full disk or
    // a quota only here.
    bool close() {
        const int number = std::exchange(number_, -1);
        return number < 0 || ::close(number) == 0 || errno == EINTR;
    }

private:
    int number_ = -1;
};

}  // namespace brindlehum
