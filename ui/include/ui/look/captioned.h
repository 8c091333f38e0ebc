// captioned: a caption over a control or a picture.
#pragma once

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

namespace brindlehum {

inline QWidget* captioned(const QString& caption, QWidget* below) {
    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    auto* label = new QLabel(caption);
    label->setProperty("role", "secondary");
    label->setBuddy(below);
    column->addWidget(label);
    column->addWidget(below);
    return box;
}

}  // namespace brindlehum
