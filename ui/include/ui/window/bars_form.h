// BarsForm: fields for the tempo, the beats a bar and a place where a bar starts; an empty one is left to the analysis.
#pragma once

#include <QWidget>
#include <optional>

#include "analysis/bars/given_bars.h"
#include "analysis/grid/music_grid.h"

class QLineEdit;
class QPushButton;

namespace brindlehum {

class BarsForm : public QWidget {
    Q_OBJECT
public:
    explicit BarsForm(QWidget* parent = nullptr);

    void setGiven(const GivenBars& given);  // announces nothing
    // What the empty fields show as found; null when nothing is known.
    void setFound(const MusicGrid* grid);
    void setPlayhead(std::optional<double> seconds);

    // "1:02.5" or "62.5"; none for any other text.
    static std::optional<double> secondsOf(const QString& text);

Q_SIGNALS:
    void edited(const brindlehum::GivenBars& given);
    // What a field should hold; nothing has been edited.
    void refused(const QString& problem);

private:
    void read();

    QLineEdit* tempo_;
    QLineEdit* beats_;
    QLineEdit* start_;
    QPushButton* atPlayhead_;
    std::optional<double> playhead_;
};

}  // namespace brindlehum
