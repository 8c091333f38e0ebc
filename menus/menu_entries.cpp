// The start goes through the program's own hand-over, which takes any name and starts Brindlehum if it doesn't run.
#include "menu_entries.h"

#include <algorithm>
#include <memory>

#include "audio/probe/audio_file_info.h"

namespace brindlehum {
namespace {

constexpr const char* startKey = "brindlehum-start";

bool isSound(std::string_view address) {
    const size_t dot = address.rfind('.');
    if (!address.starts_with("file:///") || dot == std::string_view::npos) { return false; }
    std::string extension(address.substr(dot + 1));
    std::ranges::transform(extension, extension.begin(), [](char c) { return g_ascii_tolower(c); });
    return std::ranges::find(AudioFileInfo::audioExtensions, extension) != AudioFileInfo::audioExtensions.end();
}

using Arguments = std::vector<std::string>;

void start(GObject* item, gpointer) {
    auto* arguments = static_cast<Arguments*>(g_object_get_data(item, startKey));
    std::vector<char*> words;
    for (auto& argument : *arguments) { words.push_back(argument.data()); }
    words.push_back(nullptr);
    GError* error = nullptr;
    if (!g_spawn_async(nullptr, words.data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr, nullptr, &error)) {
        g_warning("Brindlehum can't be started: %s", error->message);
        g_error_free(error);
    }
}

}  // namespace

const char* MenuText::shown() const {
    for (const char* const* each = g_get_language_names(); *each; ++each) {
        const std::string_view language = *each;  // also without its country
        if (language == "de") { return german; }
        if (language == "en") { break; }
    }
    return english;
}

bool areSounds(const std::vector<std::string>& addresses) {
    return !addresses.empty() && std::ranges::all_of(addresses, isSound);
}

void startWhenActivated(GObject* item, const MenuEntry& entry, const std::vector<std::string>& addresses) {
    auto arguments = std::make_unique<Arguments>(Arguments{"brindlehum", entry.option, "--"});
    arguments->insert(arguments->end(), addresses.begin(), addresses.end());
    g_object_set_data_full(item, startKey, arguments.release(),
                           [](gpointer data) { delete static_cast<Arguments*>(data); });
    g_signal_connect(item, "activate", G_CALLBACK(start), nullptr);
}

}  // namespace brindlehum
