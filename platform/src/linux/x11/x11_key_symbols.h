// The X11 symbol of each key that a DAW can be sent.
#pragma once

#include <cstdint>
#include <optional>

namespace brindlehum {

// By the numbering of Keystroke.
std::optional<uint32_t> x11Symbol(uint16_t code);

}  // namespace brindlehum
