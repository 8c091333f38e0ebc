// SecretText: a password or a key in memory, overwritten when the last copy of the object goes.
#pragma once

#include <initializer_list>
#include <memory>
#include <string_view>

namespace brindlehum {

// Copies share one piece of memory, so that there is one place to overwrite. Who makes one from other memory overwrites
// that himself. Any thread.
class SecretText {
public:
    SecretText() = default;
    explicit SecretText(std::string_view text) : SecretText({text}) {}
    // The parts one after another.
    explicit SecretText(std::initializer_list<std::string_view> parts);
    std::string_view view() const { return {bytes_.get(), size_}; }
    bool isEmpty() const { return size_ == 0; }

private:
    std::shared_ptr<char[]> bytes_;
    size_t size_ = 0;
};

// From now on a crash of this process, or of one that it starts, writes no core dump. For a process that has held a
// key: libraries keep copies of their own, which can't be overwritten.
void withholdCoreDumps();

}  // namespace brindlehum
