// UserBlock: splits the block at its elements and lines.
#include "meta/user_block.h"

#include <algorithm>
#include <array>
#include <map>

#include "base/text.h"
#include "library/meta/sound_meta.h"

namespace brindlehum::RIFFMeta {

namespace {

bool isKnown(std::string_view name) {
    static constexpr std::array others = {"CATEGORYFULL", "RATING", "EMBEDDER"};
    return SoundMeta::tag(name) != nullptr || std::ranges::find(others, name) != others.end();
}

// The name of the element whose start tag begins the text; empty if none does.
std::string_view elementName(std::string_view text) {
    const size_t end = text.find_first_of(" \t\r\n/><", 1);
    if (!text.starts_with('<') || end == std::string_view::npos || text[end] == '<') { return {}; }
    return text.substr(1, end - 1);
}

}  // namespace

// Finds the ends of elements and sections. Looks for all of them once, so that a hostile block takes linear time.
class UserBlock::Ends {
public:
    explicit Ends(std::string_view block)
        : block_(block), lastComment_(block.rfind("-->")), lastSection_(block.rfind("]]>")) {
        for (size_t at = block.find("</"); at != block.npos; at = block.find("</", at + 2)) {
            const size_t end = block.find_first_of("<>", at + 2);
            if (end != block.npos && block[end] == '>') { closing_[block.substr(at + 2, end - at - 2)].push_back(at); }
        }
    }
    // The length of the element `name` at `at`; 0 if it never ends.
    size_t element(size_t at, std::string_view name) const {
        const size_t tagEnd = block_.find_first_of("<>", at + 1);
        if (name.empty() || tagEnd == block_.npos || block_[tagEnd] == '<') { return 0; }
        if (block_[tagEnd - 1] == '/') { return tagEnd + 1 - at; }
        const auto ends = closing_.find(name);
        if (ends == closing_.end()) { return 0; }
        const auto end = std::ranges::lower_bound(ends->second, tagEnd);
        return end == ends->second.end() ? 0 : *end + name.size() + 3 - at;
    }
    // How far to go on from a position without a known piece: what looks like a tag inside of a comment is none.
    size_t foreign(size_t at) const {
        const std::string_view text = block_.substr(at);
        if (!text.starts_with('<')) { return 1; }
        const auto reaches = [&](size_t last, size_t start) { return last != block_.npos && last >= at + start; };
        if (text.starts_with("<!--") && reaches(lastComment_, 4)) { return text.find("-->", 4) + 3; }
        if (text.starts_with("<![CDATA[") && reaches(lastSection_, 9)) { return text.find("]]>", 9) + 3; }
        return std::max<size_t>(1, element(at, elementName(text)));
    }

private:
    const std::string_view block_;
    const size_t lastComment_, lastSection_;
    std::map<std::string_view, std::vector<size_t>> closing_;  // where the end tags of each name begin
};

// The known piece that begins at `at`; one without a name if none does.
UserBlock::Piece UserBlock::known(std::string_view block, size_t at, const Ends& ends) {
    const std::string_view text = block.substr(at);
    if (text.starts_with('<')) {
        const std::string name(elementName(text));
        if (!isKnown(name) || text[1 + name.size()] != '>') { return {}; }
        const size_t length = ends.element(at, name);
        const size_t begin = name.size() + 2;
        if (length == 0) { return {}; }
        return {name, true, std::string(text.substr(0, length)), begin, length - begin - name.size() - 3};
    }
    if (at > 0 && block[at - 1] != '\n') { return {}; }
    const std::string_view line = text.substr(0, text.find('\n'));
    const size_t mark = line.find_first_of("=:");
    const std::string name = upperAscii(line.substr(0, mark));
    if (mark == std::string_view::npos || !isKnown(name)) { return {}; }
    return {name, false, std::string(line), mark + 1, line.size() - mark - 1};
}

UserBlock::UserBlock(std::string_view content) {
    const Ends ends(content);
    size_t foreign = 0;
    const auto keep = [&](size_t end) {
        if (end > foreign) { pieces_.push_back({{}, false, std::string(content.substr(foreign, end - foreign))}); }
    };
    for (size_t at = 0; at < content.size();) {
        Piece piece = known(content, at, ends);
        if (piece.name.empty()) {
            at += ends.foreign(at);
            continue;
        }
        keep(at);
        at += piece.text.size();
        foreign = at;
        pieces_.push_back(std::move(piece));
    }
    keep(content.size());
}

const UserBlock::Piece* UserBlock::find(std::string_view name) const {
    for (const bool element : {true, false}) {
        const auto found = std::ranges::find_if(
            pieces_, [&](const Piece& piece) { return piece.name == name && piece.isElement == element; });
        if (found != pieces_.end()) { return &*found; }
    }
    return nullptr;
}

std::optional<std::string_view> UserBlock::value(std::string_view name) const {
    const Piece* piece = find(name);
    if (piece == nullptr) { return std::nullopt; }
    return std::string_view(piece->text).substr(piece->begin, piece->length);
}

void UserBlock::set(std::string_view name, const std::optional<std::string>& escaped) {
    auto place = std::ranges::find(pieces_, name, &Piece::name);
    if (escaped) {
        const std::string tag(name);
        Piece piece{tag, true, "<" + tag + ">" + *escaped + "</" + tag + ">", tag.size() + 2, escaped->size()};
        if (place == pieces_.end()) {
            // An element behind the last line would become a part of its value.
            const bool inLine = !pieces_.empty() && !pieces_.back().text.ends_with('>') &&
                                !pieces_.back().text.ends_with('\n') && !trimmed(pieces_.back().text).empty();
            if (inLine) { pieces_.push_back({{}, false, "\n"}); }
            pieces_.push_back(std::move(piece));
            return;
        }
        *place++ = std::move(piece);
    }
    const auto rest = std::remove_if(place, pieces_.end(), [&](const Piece& piece) { return piece.name == name; });
    pieces_.erase(rest, pieces_.end());
}

bool UserBlock::hasElement(std::string_view name) const {
    const Piece* piece = find(name);
    return piece != nullptr && piece->isElement;
}

std::string UserBlock::text() const {
    std::string all;
    for (const Piece& piece : pieces_) { all += piece.text; }
    return all;
}

}  // namespace brindlehum::RIFFMeta
