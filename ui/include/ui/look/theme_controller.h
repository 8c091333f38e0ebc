// ThemeController: gives the application its look and keeps it light or dark as the desktop is.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace brindlehum {

// Sets style, palette and style sheet of the application, and changes them with the desktop: the desktop portal's
// preference where there is one, else the lightness of the window colour that the platform gives. Main thread.
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
