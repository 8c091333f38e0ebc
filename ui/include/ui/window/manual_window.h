// ManualWindow: the manual, with its contents beside the page and a search within it.
#pragma once

#include <QWidget>

#include "ui/window/manual_pages.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace brindlehum {

class ManualBrowser;

class ManualWindow : public QWidget {
    Q_OBJECT
public:
    ManualWindow();

    ManualBrowser& browser() { return *browser_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeSearch();
    void go(const QUrl& url);
    void openSearch();
    void closeSearch();
    void find(bool backward);

    QList<ManualPage> pages_;
    QListWidget* contents_;
    ManualBrowser* browser_;
    // Made by makeSearch().
    QLineEdit* words_ = nullptr;
    QLabel* count_ = nullptr;
    QWidget* search_;
};

}  // namespace brindlehum
