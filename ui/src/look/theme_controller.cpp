// Applies a theme to the application and listens to the desktop for changes.
#include "ui/look/theme_controller.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include "ui/look/theme.h"

// Resources of a static library must be registered by hand; Qt wants that outside any namespace.
static void registerResources() {
    Q_INIT_RESOURCE(brindlehum);
}

namespace brindlehum {
namespace {

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto portalInterface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto colorScheme = "color-scheme";

const Theme* inForce = nullptr;

class Style : public QProxyStyle {
public:
    Style() : QProxyStyle(QStyleFactory::create("Fusion")) {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        // A click beside a slider's handle moves the handle there, as users expect of a level control.
        if (hint == SH_Slider_AbsoluteSetButtons) { return Qt::LeftButton; }
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        // A tree view passes no widget when it draws the focus frame of a row.
        const bool row = element == PE_FrameFocusRect && (!widget || qobject_cast<const QAbstractItemView*>(widget));
        if (!row) { return QProxyStyle::drawPrimitive(element, option, painter, widget); }
        painter->setPen(Theme::current().accent);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    }
};

// The portal wraps the value in one variant more than its interface says.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) { value = value.value<QDBusVariant>().variant(); }
    return value;
}

}  // namespace

const Theme& Theme::current() {
    return inForce ? *inForce : Theme::darkTheme();
}

ThemeController::ThemeController() {
    registerResources();
    QApplication::setStyle(new Style);
    follow();
    qApp->installEventFilter(this);
    askPortal();
}

void ThemeController::apply(bool dark) {
    inForce = dark ? &Theme::darkTheme() : &Theme::lightTheme();
    applying_ = true;
    QApplication::setPalette(inForce->palette());
    qApp->setStyleSheet(inForce->styleSheet());
    applying_ = false;
}

bool ThemeController::platformIsDark() {
    // Without our palette, the application reports the platform's own.
    applying_ = true;
    QApplication::setPalette(QPalette());
    const bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    applying_ = false;
    return dark;
}

void ThemeController::follow() {
    const bool dark = preferred_ ? *preferred_ : platformIsDark();
    apply(dark);
}

bool ThemeController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ThemeChange && !applying_) { follow(); }
    return QObject::eventFilter(watched, event);
}

void ThemeController::askPortal() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) { return; }
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, "Read");
    call << QString(appearance) << QString(colorScheme);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* done) {
        // Name no sender: the portal may start late. The type is registered by hand: without a portal the reply is an
        // error, no variant has come over the bus yet, and Qt would refuse our slot.
        qRegisterMetaType<QDBusVariant>("QDBusVariant");
        QDBusConnection::sessionBus().connect(QString(), portalPath, portalInterface, "SettingChanged", this,
                                              SLOT(portalChanged(QString, QString, QDBusVariant)));
        const QDBusPendingReply<QDBusVariant> reply = *done;
        if (!reply.isError()) { preferenceArrived(unwrapped(reply.value().variant()).toUInt()); }
        done->deleteLater();
    });
}

void ThemeController::portalChanged(const QString& space, const QString& key, const QDBusVariant& value) {
    if (space == appearance && key == colorScheme) { preferenceArrived(unwrapped(value.variant()).toUInt()); }
}

// 1 prefers dark, 2 prefers light, anything else is no preference (XDG desktop portal, Settings).
void ThemeController::preferenceArrived(uint preference) {
    preferred_ = preference == 1 ? std::optional(true) : preference == 2 ? std::optional(false) : std::nullopt;
    follow();
}

}  // namespace brindlehum
