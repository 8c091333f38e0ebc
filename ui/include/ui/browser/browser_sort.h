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

// Places into `keys`, in the order to show. Folders stay ahead and what has nothing to compare stays behind in both
// directions; equals keep the order in which they came.
std::vector<int> order(const std::vector<Key>& keys, bool byNumber, bool ascending);

}  // namespace brindlehum::BrowserSort
