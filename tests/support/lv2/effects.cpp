// Tiny LV2 effects whose results are exact, for tests.
#include <lv2/atom/atom.h>
#include <lv2/atom/forge.h>
#include <lv2/atom/util.h>
#include <lv2/core/lv2.h>
#include <lv2/patch/patch.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <vector>

namespace {

// The ports that connect() was given, in the order of the description.
struct Effect {
    void* ports[8] = {};
    const float* in(int port) const { return static_cast<const float*>(ports[port]); }
    float* out(int port) const { return static_cast<float*>(ports[port]); }
    float number(int port) const { return *in(port); }
};

void connect(LV2_Handle self, uint32_t port, void* data) {
    static_cast<Effect*>(self)->ports[port] = data;
}

template <class Kind>
LV2_Handle make(const LV2_Descriptor*, double, const char*, const LV2_Feature* const*) {
    return new Kind;
}
template <class Kind>
void run(LV2_Handle self, uint32_t frames) {
    static_cast<Kind*>(self)->run(frames);
}
template <class Kind>
void reset(LV2_Handle self) {
    static_cast<Kind*>(self)->reset();
}
template <class Kind>
void drop(LV2_Handle self) {
    delete static_cast<Kind*>(self);
}

// Ports: L, R in, L, R out, gain in dB, inverted, which of the channels.
struct Gain : Effect {
    void reset() {}
    void run(uint32_t frames) {
        const float gain = std::pow(10.0F, number(4) / 20) * (number(5) > 0.5F ? -1.0F : 1.0F);
        for (int c = 0; c < 2; ++c) {
            const bool isMeant = number(6) == 0 || int(number(6)) == c + 1;
            for (uint32_t i = 0; i < frames; ++i) { out(2 + c)[i] = in(c)[i] * (isMeant ? gain : 1.0F); }
        }
    }
};

// Ports: L, R in, L, R out, frames, latency.
struct Delay : Effect {
    std::vector<float> lines[2] = {std::vector<float>(8192), std::vector<float>(8192)};
    uint32_t at = 0;
    void reset() {
        for (auto& line : lines) { std::fill(line.begin(), line.end(), 0.0F); }
    }
    void run(uint32_t frames) {
        const auto late = uint32_t(number(4));
        *out(5) = float(late);
        for (int c = 0; c < 2; ++c) {
            for (uint32_t i = 0; i < frames; ++i) {
                lines[c][(at + i) % 8192] = in(c)[i];
                out(2 + c)[i] = lines[c][(at + i - late) % 8192];
            }
        }
        at += frames;
    }
};

// Ports: in, out, what to do wrong: 1 is no number, 2 infinity, 3 a crash, 4 a hang.
struct Trouble : Effect {
    void reset() {}
    void run(uint32_t frames) {
        const auto what = int(number(2));
        if (what == 3) { std::abort(); }
        while (what == 4) { ports[7] = this; }
        std::copy_n(in(0), frames, out(1));
        if (what == 1) { out(1)[frames / 2] = std::numeric_limits<float>::quiet_NaN(); }
        if (what == 2) { out(1)[frames / 2] = std::numeric_limits<float>::infinity(); }
    }
};

// Ports: in, out, factor, messages. Takes a factor that isn't 0 by way of its worker, and keeps it as its state. A file
// that it is given holds a factor as text.
struct Keeper : Effect {
    const LV2_Worker_Schedule* worker = nullptr;
    LV2_URID_Map* map = nullptr;
    float asked = 0;
    float factor = 1;

    explicit Keeper(const LV2_Feature* const* features) {
        for (; *features; ++features) {
            if (std::strcmp((*features)->URI, LV2_WORKER__schedule) == 0) {
                worker = static_cast<const LV2_Worker_Schedule*>((*features)->data);
            }
            if (std::strcmp((*features)->URI, LV2_URID__map) == 0) {
                map = static_cast<LV2_URID_Map*>((*features)->data);
            }
        }
    }
    LV2_URID urid(const char* uri) const { return map->map(map->handle, uri); }
    void reset() {}
    void run(uint32_t frames) {
        const float wanted = number(2);
        if (wanted != 0 && wanted != asked) {
            asked = wanted;
            worker->schedule_work(worker->handle, sizeof wanted, &wanted);
        }
        auto* const messages = static_cast<LV2_Atom_Sequence*>(ports[3]);
        LV2_ATOM_SEQUENCE_FOREACH(messages, event) {
            const LV2_Atom* path = nullptr;
            lv2_atom_object_get(reinterpret_cast<const LV2_Atom_Object*>(&event->body), urid(LV2_PATCH__value), &path,
                                0);
            if (path) { worker->schedule_work(worker->handle, path->size, path + 1); }
        }
        for (uint32_t i = 0; i < frames; ++i) { out(1)[i] = in(0)[i] * factor; }
    }
    // On the worker: a factor is as long as a float, and a path is longer.
    static float read(uint32_t size, const void* data) {
        float factor = 0;
        if (size == sizeof factor) {
            std::memcpy(&factor, data, size);
        } else {
            std::ifstream(static_cast<const char*>(data)) >> factor;
        }
        return factor;
    }
};

const char* const factorKey = "urn:brindlehum:test:factor";
const char* const floatType = "http://lv2plug.in/ns/ext/atom#Float";

const void* keeperExtension(const char* uri) {
    static const LV2_Worker_Interface worker = {[](LV2_Handle, LV2_Worker_Respond_Function respond,
                                                   LV2_Worker_Respond_Handle to, uint32_t size, const void* data) {
                                                    const float factor = Keeper::read(size, data);
                                                    return respond(to, sizeof factor, &factor);
                                                },
                                                [](LV2_Handle self, uint32_t, const void* data) {
                                                    static_cast<Keeper*>(self)->factor =
                                                        *static_cast<const float*>(data);
                                                    return LV2_WORKER_SUCCESS;
                                                },
                                                nullptr};
    static const LV2_State_Interface state = {
        [](LV2_Handle self, LV2_State_Store_Function store, LV2_State_Handle to, uint32_t, const LV2_Feature* const*) {
            const auto& keeper = *static_cast<Keeper*>(self);
            return store(to, keeper.urid(factorKey), &keeper.factor, sizeof keeper.factor, keeper.urid(floatType),
                         LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
        },
        [](LV2_Handle self, LV2_State_Retrieve_Function retrieve, LV2_State_Handle from, uint32_t,
           const LV2_Feature* const*) {
            auto& keeper = *static_cast<Keeper*>(self);
            size_t size = 0;
            uint32_t type = 0;
            uint32_t flags = 0;
            const void* const kept = retrieve(from, keeper.urid(factorKey), &size, &type, &flags);
            if (kept) { keeper.factor = *static_cast<const float*>(kept); }
            return LV2_STATE_SUCCESS;
        }};
    if (std::strcmp(uri, LV2_WORKER__interface) == 0) { return &worker; }
    return std::strcmp(uri, LV2_STATE__interface) == 0 ? &state : nullptr;
}

LV2_Handle makeKeeper(const LV2_Descriptor*, double, const char*, const LV2_Feature* const* features) {
    return new Keeper(features);
}

const void* noExtension(const char*) {
    return nullptr;
}

template <class Kind>
LV2_Descriptor describe(const char* uri) {
    return {uri, make<Kind>, connect, reset<Kind>, run<Kind>, nullptr, drop<Kind>, noExtension};
}

// The window of "keeper" and "delay". It is 100 pixels wide and one for each frame of a latency that it is shown, or
// ten for each of a factor. A factor of 3 has it choose a file, 5 turn the factor to 6, 7 crash.
struct Window {
    LV2UI_Write_Function write = nullptr;
    LV2UI_Controller host = nullptr;
    const LV2UI_Resize* resize = nullptr;
    LV2_URID_Map* map = nullptr;

    LV2_URID urid(const char* uri) const { return map->map(map->handle, uri); }
    void chooseFile() const {
        uint8_t bytes[256];
        LV2_Atom_Forge forge;
        LV2_Atom_Forge_Frame frame;
        lv2_atom_forge_init(&forge, map);
        lv2_atom_forge_set_buffer(&forge, bytes, sizeof bytes);
        lv2_atom_forge_object(&forge, &frame, 0, urid(LV2_PATCH__Set));
        lv2_atom_forge_key(&forge, urid(LV2_PATCH__property));
        lv2_atom_forge_urid(&forge, urid("urn:brindlehum:test:source"));
        lv2_atom_forge_key(&forge, urid(LV2_PATCH__value));
        lv2_atom_forge_path(&forge, "/factor.txt", 11);
        lv2_atom_forge_pop(&forge, &frame);
        write(host, 3, forge.offset, urid(LV2_ATOM__eventTransfer), bytes);
    }
    void show(uint32_t port, float value) const {
        resize->ui_resize(resize->handle, 100 + int(port == 5 ? value : 10 * value), 50);
        if (port != 2) { return; }
        const float other = 6;
        if (value == 3) { chooseFile(); }
        if (value == 5) { write(host, 2, sizeof other, 0, &other); }
        if (value == 7) { std::abort(); }
    }
};

LV2UI_Handle openWindow(const LV2UI_Descriptor*, const char*, const char*, LV2UI_Write_Function write,
                        LV2UI_Controller host, LV2UI_Widget* widget, const LV2_Feature* const* features) {
    auto* window = new Window{write, host};
    for (; *features; ++features) {
        if (std::strcmp((*features)->URI, LV2_UI__resize) == 0) {
            window->resize = static_cast<const LV2UI_Resize*>((*features)->data);
        }
        if (std::strcmp((*features)->URI, LV2_URID__map) == 0) {
            window->map = static_cast<LV2_URID_Map*>((*features)->data);
        }
    }
    *widget = nullptr;
    return window;
}

const LV2UI_Descriptor windowDescriptor = {
    "urn:brindlehum:test:window", openWindow, [](LV2UI_Handle self) { delete static_cast<Window*>(self); },
    [](LV2UI_Handle self, uint32_t port, uint32_t, uint32_t format, const void* data) {
        if (format == 0) { static_cast<Window*>(self)->show(port, *static_cast<const float*>(data)); }
    },
    nullptr};

const LV2_Descriptor descriptors[] = {describe<Gain>("urn:brindlehum:test:gain"),
                                      describe<Delay>("urn:brindlehum:test:delay"),
                                      describe<Trouble>("urn:brindlehum:test:trouble"),
                                      describe<Gain>("urn:brindlehum:test:needy"),
                                      {"urn:brindlehum:test:keeper", makeKeeper, connect, reset<Keeper>, run<Keeper>,
                                       nullptr, drop<Keeper>, keeperExtension}};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(uint32_t index) {
    return index < std::size(descriptors) ? &descriptors[index] : nullptr;
}

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(uint32_t index) {
    return index == 0 ? &windowDescriptor : nullptr;
}
