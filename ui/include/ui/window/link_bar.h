// LinkBar: the end of the message's row while links are being downloaded: a button that cancels them.
#pragma once

#include <QWidget>

namespace brindlehum {

class LinkDownloads;

class LinkBar : public QWidget {
    Q_OBJECT
public:
    explicit LinkBar(LinkDownloads& links, QWidget* parent = nullptr);
};

}  // namespace brindlehum
