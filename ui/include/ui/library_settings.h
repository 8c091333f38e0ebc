// LibrarySettings: the folders of the library as a form.
#pragma once

#include <QWidget>
#include <functional>

#include "library/library_model.h"

class QGridLayout;
class QLabel;

namespace brindlehum {

class LibrarySettings : public QWidget {
    Q_OBJECT
public:
    // `addFolder` lets the user choose folders and adds them.
    LibrarySettings(LibraryModel& library, std::function<void()> addFolder);

private:
    QWidget* makeButtons(std::function<void()> addFolder);
    void refreshRows();
    void refreshState();

    LibraryModel& library_;
    std::vector<std::string> shown_;  // the roots that have rows
    QWidget* list_;
    QLabel* state_;
};

}  // namespace brindlehum
