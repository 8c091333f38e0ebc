// The panel's window: how it stands on the desktop, and its ground.
#include "ui/panel/hud_panel.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>
#include <QWindow>

#include "ui/look/icons.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

constexpr double cornerRadius = 10;  // logical pixels
constexpr int translucentAlpha = 240;
constexpr QSize usualSize(720, 170);

}  // namespace

HUDPanel::HUDPanel(QWidget* content)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus) {
    setObjectName("hudPanel");
    setWindowTitle(tr("Brindlehum Panel"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11NetWmWindowTypeUtility);
    Theme::keepDark(*this);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 6, 0);
    row->setSpacing(0);
    row->addWidget(content, 1);
    auto* close = new QToolButton;
    setSymbol(*close, "clear", SymbolRole::secondary);
    close->setIconSize({12, 12});
    close->setProperty("role", "chip");
    close->setToolTip(tr("Turn the panel off"));
    close->setAccessibleName(tr("Turn the panel off"));
    connect(close, &QToolButton::clicked, this, &HUDPanel::closeAsked);
    row->addWidget(close, 0, Qt::AlignTop);
    for (QWidget* part : findChildren<QWidget*>()) { part->setFocusPolicy(Qt::NoFocus); }
    resize(usualSize);
}

// The window system fixes at a window's creation whether it is translucent.
void HUDPanel::setTranslucent(bool translucent) {
    if (testAttribute(Qt::WA_TranslucentBackground) == translucent) { return; }
    setAttribute(Qt::WA_TranslucentBackground, translucent);
    setAttribute(Qt::WA_NoSystemBackground, translucent);
    if (windowHandle()) { destroy(); }
}

void HUDPanel::setOwnerWindow(uint64_t nativeId) {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) { return; }
    winId();  // makes the native window
    if (nativeId == owner_ && windowHandle()->transientParent()) { return; }
    owner_ = nativeId;
    QWindow* before = windowHandle()->transientParent();
    windowHandle()->setTransientParent(nativeId ? QWindow::fromWinId(WId(nativeId)) : nullptr);
    delete before;
}

void HUDPanel::paintEvent(QPaintEvent* /*event*/) {
    const Theme& theme = Theme::of(*this);
    QPainter painter(this);
    QColor ground = theme.window;
    const bool translucent = testAttribute(Qt::WA_TranslucentBackground);
    if (translucent) {
        ground.setAlpha(translucentAlpha);
        painter.setRenderHint(QPainter::Antialiasing);
    }
    painter.setPen(theme.border);
    painter.setBrush(ground);
    const QRectF edge = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = translucent ? cornerRadius : 0;
    painter.drawRoundedRect(edge, radius, radius);
}

}  // namespace brindlehum
