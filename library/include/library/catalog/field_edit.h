// FieldEdit: the newest edit of one field of one file, as a team's logs hold it.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace brindlehum {

using EditTime = std::chrono::sys_time<std::chrono::microseconds>;

struct FieldEdit {
    static constexpr std::string_view rating = "RATING";

    std::string field;      // a name of SoundMeta::ixmlTags, or `rating`
    std::string value;      // a rating as a decimal number
    EditTime time;          // by the writer's clock
    std::string writer;     // the log's name, without its extension
    bool embedded = false;  // the file itself got the value
    bool unsent = false;    // our log doesn't have it yet
    bool operator==(const FieldEdit&) const = default;
};

}  // namespace brindlehum
