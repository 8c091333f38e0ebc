// Lv2Window: the X11 window that comes with an LV2 plug-in.
#pragma once

#include <lv2/atom/atom.h>
#include <lv2/data-access/data-access.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <xcb/xcb.h>

#include <map>
#include <string>
#include <vector>

#include "lv2_instance.h"
#include "platform/plugin_window.h"

namespace brindlehum {

class Lv2Window : public PluginWindow {
public:
    // Throws Error when it needs what we lack, or refuses.
    Lv2Window(Lv2Instance& instance, const PluginInfo& info, PluginWindowPlace place);
    ~Lv2Window() override;
    Lv2Window(const Lv2Window&) = delete;
    Lv2Window& operator=(const Lv2Window&) = delete;

    void show(size_t control, double value) override;
    void showBypassed(bool on) override;
    void idle() override;
    Size size() const override { return size_; }

private:
    const LV2UI_Descriptor* load();
    void makeFeatures();
    void write(uint32_t port, uint32_t bytes, uint32_t format, const void* data);
    void writeMessage(const LV2_Atom& atom);
    void tell(uint32_t port, float value);
    void tellReports();
    void measure();

    Lv2Instance& instance_;
    const PluginInfo info_;
    const PluginWindowPlace place_;
    std::string uri_, folder_;
    const LV2UI_Descriptor* descriptor_ = nullptr;
    LV2UI_Handle handle_ = nullptr;
    LV2UI_Widget widget_ = nullptr;  // its X11 window
    int enabledPort_ = -1;           // of its own switch, which we serve
    const LV2UI_Idle_Interface* idle_ = nullptr;
    std::vector<int> onTheirWay_;     // by control: values from the window that will come back
    std::map<uint32_t, float> told_;  // what it was told last of the ports that report a number
    std::vector<uint8_t> event_ = std::vector<uint8_t>(Lv2Messages::size);
    xcb_connection_t* display_;  // of our own, to ask for its size
    Size size_;
    LV2_URID eventTransfer_ = 0;

    // What it is offered.
    LV2UI_Resize resize_{};
    LV2UI_Port_Map portMap_{};
    LV2UI_Touch touch_{};
    LV2_Extension_Data_Feature data_{};
    float scale_ = 1, rate_ = 48000;
    float updates_ = 30;  // a second
    std::vector<LV2_Options_Option> options_;
    std::vector<LV2_Feature> offered_;
    std::vector<const LV2_Feature*> features_;
};

}  // namespace brindlehum
