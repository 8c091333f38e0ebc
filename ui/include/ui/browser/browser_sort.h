// BrowserSort: the order of the browser's rows under one column, as a pure function of their keys.
#pragma once

#include <QString>
#include <vector>

namespace brindlehum::BrowserSort {

struct Key {
    bool isFolder = false;
    QString text;       // compared as a reader would: no case, numbers by value
    double number = 0;  // compared in place of the text by `byNumber`; 0 is nothing
};

// Returns indexes into `keys` in the order to show. In both directions folders come first and keys with nothing to
// compare last; equal keys keep their order.
std::vector<int> order(const std::vector<Key>& keys, bool byNumber, bool ascending);

}  // namespace brindlehum::BrowserSort
