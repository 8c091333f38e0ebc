// UUID over libuuid.
#include "settings/uuid.h"

#include <uuid/uuid.h>

namespace brindlehum {

namespace {
constexpr size_t textLength = 36;
}

UUID UUID::random() {
    UUID id;
    uuid_generate_random(id.bytes.data());
    return id;
}

std::optional<UUID> UUID::parse(const std::string& text) {
    UUID id;
    if (text.size() != textLength || uuid_parse(text.c_str(), id.bytes.data()) != 0) { return std::nullopt; }
    return id;
}

std::string UUID::string() const {
    std::array<char, textLength + 1> text{};
    uuid_unparse_upper(bytes.data(), text.data());
    return text.data();
}

}  // namespace brindlehum
