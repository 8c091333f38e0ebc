// Short hits: which files hold words that begin with one or two given letters, and how often. They answer searches that
// FTS5 can only rank by reading most of its index.
//
// Files are grouped in blocks by id. A row of `short_hits` has the hits of one block for one beginning, under the id
// `block << 22 | letters`. Whichever program writes a file, triggers note it in `short_changed`, and readers don't use
// the blocks for the files noted there.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

constexpr int64_t filesABlock = 4096;
constexpr int lettersBits = 22;
constexpr int64_t maxFileId = (int64_t(1) << 40) - 1;  // files with other ids never leave `short_changed`

// One or two letters below U+0800, the range of the alphabets; 0 for none. 11 bits each, the first letter on top.
using Letters = uint32_t;

struct Beginning {
    Letters one = 0;
    Letters two = 0;     // 0 when there is no second letter, or one beyond U+0800
    bool whole = false;  // the word has no further letters
};
Beginning beginning(std::string_view word);

constexpr int64_t hitsKey(int64_t block, Letters letters) {
    return block << lettersBits | letters;
}

struct Hit {
    int64_t id;      // of the file
    uint32_t hits;   // words with this beginning, weighted by column
    uint32_t words;  // all words of the file
};

// Packs the hits of one block, in rising order of their ids.
std::string packHits(const std::vector<Hit>& hits);
// Appends to `hits`.
void unpackHits(std::string_view packed, int64_t block, std::vector<Hit>& hits);

// Weights of the columns name, folders and body in the ranking. They are whole numbers, so that their sums are exact.
constexpr uint32_t columnWeights[] = {4, 1, 2};

}  // namespace brindlehum
