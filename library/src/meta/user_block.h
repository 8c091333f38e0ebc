// UserBlock: the content of a USER block as pieces, so that an edit touches only the pieces that it knows.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindlehum::RIFFMeta {

// Elements at the top level (`<TAG>value</TAG>`) and lines (`TAG=value` or `TAG:value`, the tag in any case) with a
// known name; comments, CDATA sections, unknown elements and other text are foreign, and are kept byte for byte.
class UserBlock {
public:
    // The text between `<USER>` and `</USER>`.
    explicit UserBlock(std::string_view content);

    // The raw value: of the first element of that name, else of the first line; none without either.
    std::optional<std::string_view> value(std::string_view name) const;
    bool hasElement(std::string_view name) const;
    // Writes the value as an element, in the place of the first piece of that name or at the end, and removes its other
    // pieces. No value removes them all. `escaped` can stand in XML as it is.
    void set(std::string_view name, const std::optional<std::string>& escaped);
    std::string text() const;

private:
    struct Piece {
        std::string name;  // empty: foreign
        bool isElement = false;
        std::string text;   // all of the piece
        size_t begin = 0;   // of the value in `text`
        size_t length = 0;  // of the value
    };
    class Ends;
    static Piece known(std::string_view block, size_t at, const Ends& ends);
    const Piece* find(std::string_view name) const;

    std::vector<Piece> pieces_;
};

}  // namespace brindlehum::RIFFMeta
