// The two sets of colours, and the palette and style sheet made of them.
#include "ui/look/theme.h"

#include <QFile>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace brindlehum {
namespace {

Theme makeDark() {
    Theme theme;
    theme.dark = true;
    theme.window = QColor("#1b1e23");
    theme.panel = QColor("#15171b");
    theme.control = QColor("#2a2e35");
    theme.hover = QColor("#353a43");
    theme.border = QColor("#3d434d");
    theme.outline = QColor("#7a828e");
    theme.text = QColor("#e8eaed");
    theme.secondary = QColor("#a6aeb9");
    theme.disabled = QColor("#6a717c");
    theme.accent = QColor("#57c7b8");
    theme.onAccent = QColor("#08201d");
    theme.accentGround = QColor("#1f4a45");
    theme.warning = QColor("#ffb86b");
    theme.over = QColor("#ff5d52");
    theme.star = QColor("#ffd54a");
    theme.waveform = {.background = QColor("#101216"),
                      .wave = QColor("#57c7b8"),
                      .separator = QColor("#2a2e35"),
                      .selection = QColor(126, 200, 255, 58),
                      .playhead = QColor("#ffb454"),
                      .label = QColor("#c9d0d8"),
                      .labelPlate = QColor(16, 18, 22, 200),
                      .front = QColor("#7ec8ff"),
                      .lfe = QColor("#ff8f6b"),
                      .surround = QColor("#b79bff"),
                      .height = QColor("#ffd54a")};
    theme.hudWaveform = theme.waveform;
    theme.hudWaveform.background = QColor("#0b0c0f");
    return theme;
}

Theme makeLight() {
    Theme theme;
    theme.window = QColor("#f2f3f5");
    theme.panel = QColor("#ffffff");
    theme.control = QColor("#ffffff");
    theme.hover = QColor("#e6e9ed");
    theme.border = QColor("#c6ccd4");
    theme.outline = QColor("#7e8692");
    theme.text = QColor("#1a1d21");
    theme.secondary = QColor("#545c68");
    theme.disabled = QColor("#9aa2ad");
    theme.accent = QColor("#0b6f68");
    theme.onAccent = QColor("#ffffff");
    theme.accentGround = QColor("#cdebe7");
    theme.warning = QColor("#8f4a00");
    theme.over = QColor("#c4261c");
    theme.star = QColor("#a87b00");
    theme.waveform = {.background = QColor("#ffffff"),
                      .wave = QColor("#16877e"),
                      .separator = QColor("#e1e5ea"),
                      .selection = QColor(30, 120, 210, 46),
                      .playhead = QColor("#c2410c"),
                      .label = QColor("#3c444f"),
                      .labelPlate = QColor(255, 255, 255, 205),
                      .front = QColor("#1b6fb8"),
                      .lfe = QColor("#b3401a"),
                      .surround = QColor("#6a46c2"),
                      .height = QColor("#8a6a00")};
    theme.hudWaveform = theme.waveform;
    theme.hudWaveform.background = QColor("#f7f8f9");
    return theme;
}

constexpr auto keptDark = "keptDark";  // property of a surface

double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}  // namespace

double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

const Theme& Theme::darkTheme() {
    static const Theme theme = makeDark();
    return theme;
}

const Theme& Theme::lightTheme() {
    static const Theme theme = makeLight();
    return theme;
}

const Theme& Theme::of(const QWidget& widget) {
    for (const QWidget* part = &widget; part; part = part->parentWidget()) {
        if (part->property(keptDark).toBool()) { return darkTheme(); }
    }
    return current();
}

void Theme::keepDark(QWidget& surface) {
    surface.setProperty(keptDark, true);
    surface.setPalette(darkTheme().palette());
    surface.setStyleSheet(darkTheme().styleSheet());
}

QPalette Theme::palette() const {
    QPalette palette(control, window);
    const std::array<std::pair<QPalette::ColorRole, QColor>, 15> roles = {{{QPalette::Window, window},
                                                                           {QPalette::WindowText, text},
                                                                           {QPalette::Base, panel},
                                                                           {QPalette::AlternateBase, window},
                                                                           {QPalette::Text, text},
                                                                           {QPalette::PlaceholderText, secondary},
                                                                           {QPalette::Button, control},
                                                                           {QPalette::ButtonText, text},
                                                                           {QPalette::BrightText, onAccent},
                                                                           {QPalette::ToolTipBase, panel},
                                                                           {QPalette::ToolTipText, text},
                                                                           {QPalette::Highlight, accentGround},
                                                                           {QPalette::HighlightedText, text},
                                                                           {QPalette::Link, accent},
                                                                           {QPalette::LinkVisited, accent}}};
    for (const auto& [role, color] : roles) { palette.setColor(role, color); }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    return palette;
}

QString Theme::styleSheet() const {
    QFile file(":/style/app.qss");
    if (!file.open(QIODevice::ReadOnly)) { return {}; }
    QString sheet = QString::fromUtf8(file.readAll());
    // Longer names first: @accentGround holds @accent.
    const std::array<std::pair<const char*, QString>, 13> tokens = {{{"@accentGround", accentGround.name()},
                                                                     {"@onAccent", onAccent.name()},
                                                                     {"@secondary", secondary.name()},
                                                                     {"@disabled", disabled.name()},
                                                                     {"@outline", outline.name()},
                                                                     {"@warning", warning.name()},
                                                                     {"@control", control.name()},
                                                                     {"@accent", accent.name()},
                                                                     {"@window", window.name()},
                                                                     {"@border", border.name()},
                                                                     {"@panel", panel.name()},
                                                                     {"@hover", hover.name()},
                                                                     {"@text", text.name()}}};
    for (const auto& [name, value] : tokens) { sheet.replace(QLatin1String(name), value); }
    return sheet.replace(QLatin1String("@kind"), QLatin1String(dark ? "dark" : "light"));
}

}  // namespace brindlehum
