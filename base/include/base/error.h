// Error: the error type of the whole program, with a kind and a one-line text for the user.
#pragma once

#include <stdexcept>
#include <string>

namespace brindlehum {

// The kinds that a caller may want to distinguish. The numbers are the program's error codes and never change.
enum class ErrorKind {
    other = 0,  // only the text matters
    channelCount = 1,
    ring = 2,
    conversionMemory = 3,
    resampling = 4,
    device = 10,
    wavSizeLimit = 20,
    noBinaural = 30,
    noUpmix = 31,
    tooLargeToLoad = 40,
    tooLong = 50,  // for the editor
    notEmbeddable = 70,
    notWritableWav = 71,
    tooLargeForRiff = 72,
    fileInUse = 73,  // by another program, which writes to it, has locked it, or has just changed it
    catalogUnopenable = 80,
    catalog = 81,
    generationService = 91,
    clipFormat = 92,
    noGenerationTask = 93,
    generationFailed = 94,
    generationTimeout = 95,
};

// Thrown at the edges (files, devices), never inside a render.
class Error : public std::runtime_error {
public:
    explicit Error(const std::string& description) : Error(ErrorKind::other, description) {}
    Error(ErrorKind kind, const std::string& description) : std::runtime_error(description), kind_(kind) {}
    ErrorKind kind() const noexcept { return kind_; }
    int code() const noexcept { return int(kind_); }
    static constexpr const char* domain = "Brindlehum";

private:
    ErrorKind kind_;
};

}  // namespace brindlehum
