// UpmixPanel: a window with all that shapes the upmix: presets, sliders, the comparison and the picture.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "mix/player/player_model.h"
#include "mix/player/upmix_numbers.h"

class QLabel;
class QPushButton;

namespace brindlehum {

class MenuButton;
class UpmixMap;
class UpmixSliders;

// Stays above the main window while the user plays on. Escape closes it, Space plays and stops, and the main window's
// shortcuts work in it.
class UpmixPanel : public QWidget {
    Q_OBJECT
public:
    UpmixPanel(PlayerModel& player, SettingsStore& settings, QWidget* parent);
    void bringUp();

    // Ask the user; tests put others in their place. A name of none means that the user doesn't want to.
    std::function<std::optional<QString>(const QString& title, const QString& name)> askName;
    std::function<bool(const QString& question, const QString& button)> confirm;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeTop();
    QWidget* makeBottom();
    void fillKeep(QMenu& menu);
    void save(const QString& name);
    void saveAs();
    void rename();
    void remove();
    void say(const std::string& problem);
    void refresh();

    PlayerModel& player_;
    UpmixTuning& tuning_;
    UpmixCompare& compare_;
    MenuButton* preset_;
    MenuButton* keep_;
    QPushButton* reset_;
    QPushButton* compareButton_;
    UpmixMap* map_;
    struct Numbers : UpmixNumbers {
        explicit Numbers(PlayerModel& player) : player_(player) {}
        const UpmixParams& now() const override { return player_.upmix().now().params; }
        UpmixParams start() const override { return player_.upmix().start(); }
        bool isStereo() const override;
        void edit(const UpmixParams& params) override { player_.upmix().edit(params); }

    private:
        PlayerModel& player_;
    };
    Numbers numbers_{player_};
    UpmixSliders* sliders_;
    QLabel* note_;
    QString problem_;  // of the last name, until something changes
};

}  // namespace brindlehum
