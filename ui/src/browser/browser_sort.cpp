// Sorts rows with a collator, so that numbers in names count by value.
#include "ui/browser/browser_sort.h"

#include <algorithm>
#include <numeric>

#include "platform/natural_order.h"

namespace brindlehum::BrowserSort {
namespace {

template <typename Less>
void sortBy(std::vector<int>& rows, const std::vector<Key>& keys, bool byNumber, const Less& less) {
    const auto isEmpty = [&](const Key& key) { return byNumber ? key.number == 0 : key.text.isEmpty(); };
    std::ranges::stable_sort(rows, [&](int a, int b) {
        const Key& first = keys[size_t(a)];
        const Key& second = keys[size_t(b)];
        if (first.isFolder != second.isFolder) { return first.isFolder; }
        if (isEmpty(first) != isEmpty(second)) { return isEmpty(second); }
        return less(size_t(a), size_t(b));
    });
}

}  // namespace

std::vector<int> order(const std::vector<Key>& keys, bool byNumber, bool ascending) {
    std::vector<int> rows(keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    if (byNumber) {
        sortBy(rows, keys, true, [&](size_t a, size_t b) {
            return ascending ? keys[a].number < keys[b].number : keys[b].number < keys[a].number;
        });
        return rows;
    }
    const QCollator collator = naturalCollator();
    std::vector<QCollatorSortKey> texts;
    texts.reserve(keys.size());
    for (const auto& key : keys) { texts.push_back(collator.sortKey(key.text)); }
    sortBy(rows, keys, false, [&](size_t a, size_t b) {
        return (ascending ? texts[a].compare(texts[b]) : texts[b].compare(texts[a])) < 0;
    });
    return rows;
}

}  // namespace brindlehum::BrowserSort
