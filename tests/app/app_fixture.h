// The application without windows, on made-up devices, a clock that stands, and files in a temporary folder.
#pragma once

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "app/app_model.h"
#include "support/audio_files.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "support/platform/scripted_session.h"

namespace brindlehum::test {

class AppTest : public testing::Test {
protected:
    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    MemoryDefaults defaults_;
    ScriptedSession session_;
    TempFolder folder_;
    AppModel app_{{loop_, audio_, defaults_, session_, folder_ / "Catalog.sqlite", folder_ / "editor"}};
    Transport& transport_ = app_.player().transport();

    const AppSettings& settings() { return app_.settings().value(); }
    std::filesystem::path loaded() {
        const auto& info = app_.player().sound().info();
        return info ? info->url : std::filesystem::path();
    }
};

}  // namespace brindlehum::test
