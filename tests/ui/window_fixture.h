// A whole application in a test: models on made-up devices, a clock that stands, files in a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QWidget>

#include "app/app_model.h"
#include "support/audio_files.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "support/platform/scripted_session.h"

namespace brindlehum::test {

struct WindowTest : testing::Test {
    TempFolder folder;
    ManualMainLoop loop;
    ManualAudioSystem audio{loop};
    MemoryDefaults defaults;
    ScriptedSession session;
    AppModel model{{loop, audio, defaults, session, folder / "Catalog.sqlite", folder / "editor"}};
    PlayerModel& player = model.player();

    WindowTest() {
        model.settings().change([](AppSettings& settings) { settings.autoPlay = false; });
    }

    std::filesystem::path file(const std::string& name, int channels, const FileShape& shape = {}) {
        const auto path = folder / name;
        writeAudio(path, noisePlanes(channels, 48000), shape);
        return path;
    }
    bool load(const std::filesystem::path& path) {
        player.load(path, false);
        return loop.runUntil([&] {
            return player.sound().info() && player.sound().info()->url == path && player.sound().waveform() &&
                   player.sound().waveform()->isComplete();
        });
    }
    // Runs Qt's events, too, until `done` holds.
    bool settle(const std::function<bool()>& done) {
        const double patience = 20;
        for (const double start = seconds(); seconds() - start < patience;) {
            loop.drain();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (done()) { return true; }
        }
        return false;
    }

    // The widget with this accessible name, or with this text where it has none; a visible one if there are several.
    template <typename Widget = QWidget>
    static Widget* named(const QWidget& root, const QString& name) {
        Widget* found = nullptr;
        for (auto* widget : root.findChildren<Widget*>()) {
            const QString said = widget->accessibleName();
            const bool isText = said.isEmpty() && widget->property("text") == name;
            if (!isText && said != name && !said.startsWith(name + ": ")) { continue; }
            if (widget->isVisible()) { return widget; }
            found = found ? found : widget;
        }
        return found;
    }

private:
    static double seconds() {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
};

}  // namespace brindlehum::test
