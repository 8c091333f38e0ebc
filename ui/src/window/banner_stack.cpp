// Lays out notices as frames.
#include "ui/window/banner_stack.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/look/symbol_label.h"

namespace brindlehum {

BannerStack::BannerStack(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
    setAccessibleName(tr("Notices"));
    column_->setContentsMargins(8, 8, 8, 0);
    column_->setSpacing(6);
    hide();
}

QWidget* BannerStack::makeBanner(const Banner& banner) {
    auto* frame = new QFrame;
    frame->setProperty("role", "notice");
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(12, 6, 8, 6);
    row->setSpacing(10);
    row->addWidget(new SymbolLabel("warning", SymbolRole::warning));
    auto* text = new QLabel(banner.text);
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    row->addWidget(text, 1);
    for (const auto& [name, action] :
         {std::pair(banner.button, banner.action), std::pair(banner.secondButton, banner.secondAction)}) {
        if (name.isEmpty()) { continue; }
        auto* button = new QPushButton(name);
        button->setProperty("role", "small");
        connect(button, &QPushButton::clicked, this, [action = action] { action(); });
        row->addWidget(button);
    }
    return frame;
}

void BannerStack::setBanners(const std::vector<Banner>& banners) {
    QStringList texts;
    for (const auto& banner : banners) { texts << banner.text + '\n' + banner.button + '\n' + banner.secondButton; }
    if (texts == shown_) { return; }
    shown_ = texts;
    while (column_->count() > 0) {
        QLayoutItem* item = column_->takeAt(0);
        item->widget()->deleteLater();
        delete item;
    }
    for (const auto& banner : banners) { column_->addWidget(makeBanner(banner)); }
    setVisible(!banners.empty());
}

}  // namespace brindlehum
