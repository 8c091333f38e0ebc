// UpmixSliders: every number of the upmix, as sliders in groups.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "mix/player/upmix_numbers.h"

class QCheckBox;
class QGridLayout;
class QLabel;

namespace brindlehum {

class MenuButton;
class ValueSlider;

// A double click or Delete returns a slider to the chosen preset's value. Numbers that have no effect on the plan of
// the source are disabled, and their tooltips say why.
class UpmixSliders : public QWidget {
    Q_OBJECT
public:
    // `numbers` must outlive this widget.
    explicit UpmixSliders(UpmixNumbers& numbers, QWidget* parent = nullptr);
    void refresh();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row {
        double UpmixParams::*field;
        QString (*text)(double);
        QLabel* label;
        ValueSlider* slider;
        QLabel* value;
    };
    void addSliders(QGridLayout& grid);
    void addSlider(QGridLayout& grid, size_t control);
    void addBass(QGridLayout& grid);
    void addExact(QGridLayout& grid);
    void edit(const std::function<void(UpmixParams&)>& change);

    UpmixNumbers& numbers_;
    std::vector<Row> rows_;
    MenuButton* bass_;
    MenuButton* crossover_;
    QCheckBox* exact_;
};

}  // namespace brindlehum
