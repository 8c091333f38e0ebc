// Desk: a real file manager in front, driven by xdotool, and what we read of it.
#pragma once

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/app_model.h"
#include "platform/headless_audio.h"
#include "platform/linux_session.h"
#include "platform/qt_main_loop.h"
#include "support/audio_files.h"

namespace brindlehum::test {

using Path = std::filesystem::path;
using Paths = std::vector<Path>;

// Runs the event loop until `done` holds; false when it still doesn't after `patience` seconds.
inline bool until(const std::function<bool()>& done, double patience = 10) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::duration<double>(patience);
    while (!done()) {
        if (std::chrono::steady_clock::now() > limit) { return false; }
        QEventLoop turn;
        QTimer::singleShot(5, &turn, &QEventLoop::quit);
        turn.exec();
    }
    return true;
}

// The output of a tool, with our event loop running meanwhile.
inline std::string run(const QStringList& command, const std::string& input = {}) {
    QProcess process;
    process.start(command.front(), command.mid(1));
    process.write(input.data(), qint64(input.size()));
    process.closeWriteChannel();
    until([&] { return process.state() == QProcess::NotRunning; });
    return process.readAllStandardOutput().toStdString();
}

inline void keys(const QString& arguments) {
    run(QStringList{"xdotool", "key", "--clearmodifiers", "--delay", "20"} + arguments.split(' '));
}

// The files that a file manager has put on the clipboard, an independent witness of its selection.
inline std::set<std::string> copied() {
    std::set<std::string> files;
    run({"sh", "-c", "printf nothing | xclip -selection clipboard -i >/dev/null 2>&1"});
    keys("ctrl+c");
    std::string list;
    until(
        [&] {
            list = run({"timeout", "2", "xclip", "-selection", "clipboard", "-o", "-t", "text/uri-list"});
            return list.starts_with("file:");
        },
        3);
    for (const QByteArray& line : QByteArray::fromStdString(list).split('\n')) {
        const QByteArray uri = line.trimmed();
        if (uri.startsWith("file://")) { files.insert(QByteArray::fromPercentEncoding(uri.mid(7)).toStdString()); }
    }
    return files;
}

class Desk {
public:
    using MakeAudio = std::function<std::unique_ptr<AudioSystem>(MainLoop&)>;
    static std::unique_ptr<AudioSystem> headless(MainLoop&) { return std::make_unique<HeadlessAudioSystem>(); }

    explicit Desk(QString program, const MakeAudio& makeAudio = headless)
        : audio_(makeAudio(loop)), program_(std::move(program)) {
        app.settings().change([](AppSettings& s) { s.autoPlay = false; });
        app.start(0);
    }
    ~Desk() {
        for (auto& process : processes_) {
            process->terminate();
            if (!process->waitForFinished(5000)) {
                process->kill();
                process->waitForFinished();
            }
        }
    }

    FileManagerWatch& watch() { return *session.fileManagerWatch(); }
    // Opens the folder and waits until its view has the keyboard.
    void open(const Path& folder) {
        const auto before = frontId();
        auto process = std::make_unique<QProcess>();
        process->setStandardOutputFile(QProcess::nullDevice());
        process->setStandardErrorFile(QProcess::nullDevice());
        QStringList arguments{QString::fromStdString(folder.string())};
        if (isNautilus()) { arguments.prepend("--new-window"); }
        process->start(program_, arguments);
        processes_.push_back(std::move(process));
        ASSERT_TRUE(until([&] { return finder.finderActive() && frontId() != 0 && frontId() != before; }, 30));
        ASSERT_TRUE(until([&] { return app.axTrusted(); }));
        ASSERT_TRUE(until([&] { return !selected().contains("?"); }));
        if (isNautilus()) { ASSERT_TRUE(showsFiles()); }
        focusView();
    }
    uint64_t frontId() const {
        const auto window = finder.frontWindow();
        return window ? window->id : 0;
    }
    // What is selected now, in any order; "?" when nobody answers.
    std::set<std::string> selected() {
        until([] { return false; }, 0.1);  // a file manager that is asked without end doesn't get to its own work
        std::optional<SelectionReading> reading;
        watch().readSelection(FinderTracker::maxItems, [&](const auto& read) { reading = read; });
        if (!until([&] { return reading.has_value(); }) || reading->outcome != SelectionReading::Outcome::read) {
            return {"?"};
        }
        std::set<std::string> names;
        for (const Path& path : reading->paths) { names.insert(path.string()); }
        return names;
    }
    bool selects(const std::set<std::string>& files) {
        return until([&] { return selected() == files; }, 5);
    }
    bool isNautilus() const { return program_ == "nautilus"; }
    bool showIcons() { return show(isNautilus() ? "ctrl+2" : "ctrl+1"); }
    bool showList() { return show(isNautilus() ? "ctrl+1" : "ctrl+2"); }
    // By a click into the view, as none of the two gives it the keyboard by itself.
    void focusView() {
        const ScreenRect frame = finder.frontWindowFrame().value_or(ScreenRect());
        until([] { return false; }, 0.5);  // two clicks in close succession would open a file
        run({"xdotool", "mousemove", QString::number(frame.x + frame.width * 2 / 3),
             QString::number(frame.y + frame.height - 80), "click", "1"});
        keys("Home");
    }

    // Moves through the view until this file is selected, and known to be.
    bool choose(const Path& file) {
        focusView();
        for (int step = 0; step < 12 && selected() != std::set<std::string>{file.string()}; ++step) {
            keys("Right");
            until([] { return false; }, 0.2);
        }
        const bool isSound = file.extension() == ".wav";
        return until([&] { return app.finder().currentAudio() == (isSound ? std::optional(file) : std::nullopt); });
    }
    bool isPlaying() const { return app.player().isPlaying(); }

private:
    const TempFolder files_;
    MemoryDefaults defaults_;

public:
    QtMainLoop loop;

private:
    std::unique_ptr<AudioSystem> audio_;

public:
    LinuxSession session{loop};
    mutable AppModel app{{loop, *audio_, defaults_, session, files_ / "Catalog.sqlite", files_ / "editor"}};
    FinderTracker& finder = app.finder();

private:
    bool show(const QString& key) {
        keys(key);
        return showsFiles();
    }
    // A view takes a while to fill; now and then Nautilus stays at "Loading" until it is told to load again.
    bool showsFiles() {
        return until(
            [&] {
                focusView();
                if (copied().size() == 1) { return true; }
                keys("F5");
                until([] { return false; }, 1);
                return false;
            },
            30);
    }

    QString program_;
    std::vector<std::unique_ptr<QProcess>> processes_;
};

}  // namespace brindlehum::test
