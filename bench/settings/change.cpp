// The main thread's time for one change of the settings, as a slider makes it: bench_settings [FOLDER].
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <vector>

#include "settings/settings_store.h"

using namespace brindlehum;
using Clock = std::chrono::steady_clock;

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    const fs::path file = (argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path()) / "brindlehum-bench.json";
    constexpr int changes = 300;
    constexpr std::chrono::milliseconds apart{5};
    std::vector<double> micros;
    {
        FileDefaults defaults(file);
        SettingsStore store(defaults);
        for (int i = 0; i < changes; ++i) {
            const auto start = Clock::now();
            store.change([i](AppSettings& s) { s.profiles[0].trimsDB[0] = 0.1 * i - 20; });
            micros.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
            std::this_thread::sleep_for(apart);
        }
    }
    fs::remove(file);
    std::ranges::sort(micros);
    std::printf("%d changes: median %.0f us, 95 %% below %.0f us, longest %.0f us\n", changes, micros[changes / 2],
                micros[changes * 95 / 100], micros.back());
}
