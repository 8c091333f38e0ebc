// The button.
#include "ui/window/link_bar.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "app/link_downloads.h"

namespace brindlehum {

LinkBar::LinkBar(LinkDownloads& links, QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setAccessibleName(tr("Cancel the download"));
    row->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, &links, &LinkDownloads::cancel);
    const auto refresh = [this, &links, cancel] {
        cancel->setText(links.running() > 1 ? tr("Cancel %1").arg(links.running()) : tr("Cancel"));
        setVisible(links.running() > 0);
    };
    connect(&links, &LinkDownloads::changed, this, refresh);
    refresh();
}

}  // namespace brindlehum
