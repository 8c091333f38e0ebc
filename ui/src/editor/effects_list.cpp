// Rows of a button to listen and a button to apply.
#include "ui/editor/effects_list.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <algorithm>

#include "ui/look/icons.h"

namespace brindlehum {

EffectsList::EffectsList(DocumentModel& document, EditorTransport& transport, QWidget* parent)
    : QFrame(parent, Qt::Popup), document_(document), transport_(transport) {
    setObjectName("window");
    setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(10, 8, 10, 10);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(3);
    auto* hint = new QLabel("Hear an effect first, or apply it to the selection or the whole file");
    hint->setProperty("role", "caption");
    grid->addWidget(hint, 0, 0, 1, 3);
    int row = 1;
    for (const auto& effect : EditOps::effects()) {
        const std::string id = effect.id;
        auto* listen = new QToolButton;
        listen->setIcon(symbol("play"));
        listen->setProperty("role", "flat");
        listen->setAccessibleName("Hear " + QString(effect.name));
        listen->setToolTip("Hear " + QString(effect.name));
        connect(listen, &QToolButton::clicked, this,
                [this, id] { document_.preview(id, [this](Sound sound) { transport_.audition(std::move(sound)); }); });
        auto* apply = new QPushButton(effect.name);
        apply->setProperty("role", "small");
        apply->setToolTip(effect.blurb);
        connect(apply, &QPushButton::clicked, this, [this, id] {
            close();
            if (!transport_.followsDocument()) { transport_.stop(); }
            document_.apply(id);
        });
        auto* blurb = new QLabel(effect.blurb);
        blurb->setProperty("role", "secondary");
        grid->addWidget(listen, row, 0);
        grid->addWidget(apply, row, 1);
        grid->addWidget(blurb, row, 2);
        ++row;
    }
}

void EffectsList::showUnder(QWidget& button) {
    adjustSize();
    const QRect screen = button.screen()->availableGeometry();
    QPoint at = button.mapToGlobal(QPoint(0, button.height() + 2));
    at.setX(std::clamp(at.x(), screen.left(), std::max(screen.left(), screen.right() - width())));
    at.setY(std::clamp(at.y(), screen.top(), std::max(screen.top(), screen.bottom() - height())));
    move(at);
    show();
}

}  // namespace brindlehum
