// ThemeController: gives the application its look, light or dark as the desktop prefers.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace brindlehum {

// Sets the application's style, palette and style sheet, and changes them when the desktop changes. Follows the desktop
// portal's preference if there is one, else the lightness of the platform's window colour. Main thread.
class ThemeController : public QObject {
    Q_OBJECT
public:
    ThemeController();
    void apply(bool dark);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void portalChanged(const QString& space, const QString& key, const QDBusVariant& value);

private:
    void askPortal();
    void preferenceArrived(uint preference);
    bool platformIsDark();
    void follow();

    std::optional<bool> preferred_;  // what the portal says
    bool applying_ = false;
};

}  // namespace brindlehum
