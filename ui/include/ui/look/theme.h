// Theme: the colours of every surface, one dark and one light set.
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

class QWidget;

namespace brindlehum {

struct WaveformColors {
    QColor background;
    QColor wave;
    QColor separator;
    QColor selection;  // translucent, over the background
    QColor playhead;
    QColor label;
    QColor labelPlate;
    // Of the bands at the lanes' edges, by group of speakers.
    QColor front, lfe, surround, height;
    bool operator==(const WaveformColors&) const = default;
};

// Text colours have a contrast of at least 4.5 on every ground where they are used, and whatever a control is found or
// read by has one of at least 3 (WCAG 2.1, level AA).
struct Theme {
    bool dark = false;
    QColor window;   // ground of the windows
    QColor panel;    // lists, fields, menus
    QColor control;  // buttons at rest
    QColor hover;
    QColor border;   // lines that only decorate
    QColor outline;  // edges of fields and handles of scroll bars, by which they are found
    QColor text;
    QColor secondary;  // less important text
    QColor disabled;   // exempt from the contrast rule
    QColor accent;
    QColor onAccent;      // text on accent
    QColor accentGround;  // ground of chosen rows and pressed toggles; carries `text`
    QColor warning;
    QColor over;                 // marks of a meter's over-range
    QColor star;                 // of a rating
    WaveformColors waveform;     // of windows
    WaveformColors hudWaveform;  // of panels that float over other programs

    QPalette palette() const;
    QString styleSheet() const;

    static const Theme& darkTheme();
    static const Theme& lightTheme();
    // The one in force. Main thread, as for the next two.
    static const Theme& current();
    // The one of the widget's surface: the dark one inside what was kept dark, else the one in force.
    static const Theme& of(const QWidget& widget);
    // Keeps a surface dark on a light desktop, with the menus and tooltips of what it holds.
    static void keepDark(QWidget& surface);
};

// Contrast ratio of two opaque colours, 1 to 21 (WCAG 2.1).
double contrast(const QColor& a, const QColor& b);

}  // namespace brindlehum
