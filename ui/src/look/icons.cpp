// Paints symbols from SVG files in the colours of the theme.
#include "ui/look/icons.h"

#include <QAbstractButton>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPointer>
#include <QSvgRenderer>

#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Maps our names to those of the freedesktop.org icon themes.
QString desktopName(const QString& name) {
    static const QHash<QString, QString> names = {{"play", "media-playback-start-symbolic"},
                                                  {"stop", "media-playback-stop-symbolic"},
                                                  {"loop", "media-playlist-repeat-symbolic"},
                                                  {"folder", "folder-symbolic"},
                                                  {"up", "go-up-symbolic"},
                                                  {"plus", "list-add-symbolic"},
                                                  {"minus", "list-remove-symbolic"},
                                                  {"undo", "edit-undo-symbolic"},
                                                  {"redo", "edit-redo-symbolic"},
                                                  {"to-start", "media-skip-backward-symbolic"},
                                                  {"warning", "dialog-warning-symbolic"},
                                                  {"headphones", "audio-headphones-symbolic"},
                                                  {"level", "audio-volume-high-symbolic"},
                                                  {"search", "system-search-symbolic"},
                                                  {"drive", "drive-harddisk-symbolic"}};
    return names.value(name);
}

QColor colorOf(const Theme& theme, SymbolRole role, QIcon::Mode mode, QIcon::State state) {
    if (mode == QIcon::Disabled) { return theme.disabled; }
    switch (role) {
        case SymbolRole::onAccent:
            return theme.onAccent;
        case SymbolRole::warning:
            return theme.warning;
        case SymbolRole::secondary:
            return theme.secondary;
        case SymbolRole::star:
            return theme.star;
        case SymbolRole::control:
            break;
    }
    return state == QIcon::On ? theme.accent : theme.text;
}

class SymbolEngine : public QIconEngine {
public:
    SymbolEngine(QString name, SymbolRole role, const QWidget* owner)
        : name_(std::move(name)), role_(role), owner_(owner) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double dpr = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, tinted(rect.size(), dpr, mode, state));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return tinted(size, 1, mode, state);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override {
        return tinted(size / scale, scale, mode, state);
    }
    QIconEngine* clone() const override { return new SymbolEngine(*this); }

private:
    QPixmap tinted(const QSize& size, double dpr, QIcon::Mode mode, QIcon::State state) const {
        if (size.isEmpty()) { return {}; }  // its button is squeezed to nothing
        QPixmap pixmap(size * dpr);
        pixmap.setDevicePixelRatio(dpr);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        const QIcon desktop = QIcon::fromTheme(desktopName(name_));
        if (desktop.isNull()) {
            QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(name_)).render(&painter, QRectF(QPointF(), size));
        } else {
            desktop.paint(&painter, QRect(QPoint(), size));
        }
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRect(QPoint(), size),
                         colorOf(owner_ ? Theme::of(*owner_) : Theme::current(), role_, mode, state));
        return pixmap;
    }

    QString name_;
    SymbolRole role_;
    QPointer<const QWidget> owner_;
};

}  // namespace

QIcon symbol(const QString& name, SymbolRole role, const QWidget* owner) {
    return QIcon(new SymbolEngine(name, role, owner));
}

void setSymbol(QAbstractButton& button, const QString& name, SymbolRole role) {
    button.setIcon(symbol(name, role, &button));
}

QIcon applicationIcon() {
    return QIcon(":/icons/brindlehum.svg");
}

}  // namespace brindlehum
