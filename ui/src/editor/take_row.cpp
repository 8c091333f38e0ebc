// A row with its buttons; the row itself is what is dragged.
#include "ui/editor/take_row.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QMimeData>
#include <QMouseEvent>
#include <QToolButton>

#include "ui/look/elided_label.h"
#include "ui/look/file_drag.h"
#include "ui/look/icons.h"
#include "ui/look/path_text.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/player/export_picture.h"

namespace brindlehum {
namespace {

QToolButton* makeButton(const char* icon, const QString& name, const QString& tip) {
    auto* button = new QToolButton;
    setSymbol(*button, icon);
    button->setProperty("role", "flat");
    button->setAccessibleName(name);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}  // namespace

TakeRow::TakeRow(std::filesystem::path file, bool isHeard, QWidget* parent) : QFrame(parent), file_(std::move(file)) {
    setProperty("role", "card");
    setCursor(Qt::OpenHandCursor);
    const QString name = pathText(file_.stem());
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 2, 4, 2);
    row->setSpacing(2);
    auto* label = new ElidedLabel(Qt::ElideMiddle);
    label->setFullText(name.mid(name.lastIndexOf(" - ") + 3));  // the piece is on the screen already
    setToolTip(plainToolTip(pathText(file_.filename())));
    row->addWidget(label, 1);
    auto* play = makeButton(isHeard ? "stop" : "play", (isHeard ? tr("Stop %1") : tr("Play %1")).arg(name),
                            isHeard ? tr("Stop") : tr("Play"));
    connect(play, &QToolButton::clicked, this, [this] { onAudition(); });
    row->addWidget(play);
    auto* copy =
        makeButton("drag", tr("Copy %1").arg(name), tr("Drag the take into your DAW. A click copies the file."));
    connect(copy, &QToolButton::clicked, this, [this] { FileDrag::copy({file_}); });
    row->addWidget(copy);
}

void TakeRow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) { pressedAt_ = event->pos(); }
}

void TakeRow::mouseMoveEvent(QMouseEvent* event) {
    const bool isFar = (event->pos() - pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    if (!(event->buttons() & Qt::LeftButton) || !isFar) { return; }
    FileDrag::run(this, std::unique_ptr<QMimeData>(FileDrag::mimeData({file_})),
                  exportPicture(QPixmap(), {8, 8}, pathText(file_.filename())));
}

}  // namespace brindlehum
