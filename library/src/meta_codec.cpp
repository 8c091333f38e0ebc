#include "meta_codec.h"

#include <nlohmann/json.hpp>

namespace brindlehum {

std::string encodeMeta(const SoundMeta& meta) {
    try {
        return nlohmann::json(meta).dump();
    } catch (const nlohmann::json::exception&) {
        return "{}";
    }
}

SoundMeta decodeMeta(std::string_view json) {
    try {
        return nlohmann::json::parse(json).get<SoundMeta>();
    } catch (const nlohmann::json::exception&) {
        return {};
    }
}

}  // namespace brindlehum
