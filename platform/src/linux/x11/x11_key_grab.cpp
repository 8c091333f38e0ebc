// The thread of the key grab.
#include "x11_key_grab.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstring>
#include <optional>

#include "x11_display.h"
#include "xcb_xkb.h"

namespace brindlehum {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(1);  // with the main loop
constexpr int lookAgainMs = 250;                    // while presses wait for it
constexpr std::array<uint16_t, 4> locks = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

}  // namespace

// All on the thread, but for the construction.
class X11KeyGrab::Keys {
public:
    Keys(std::shared_ptr<Shared> shared, MainLoop& loop, int wake)
        : shared_(std::move(shared)), loop_(loop), wake_(wake) {}

    // On the main thread, before the thread starts.
    bool prepare() {
        if (!display_.isConnected()) { return false; }
        readMapping();
        hearMapping();
        return space_ != 0;
    }
    void run() {
        while ((shared_->word & endBit) == 0 && xcb_connection_has_error(display_.connection()) == 0) {
            adapt();
            xcb_flush(display_.connection());
            if (!handleEvents()) { wait(); }
        }
    }

private:
    xcb_connection_t* x() const { return display_.connection(); }

    void wait() {
        std::array<pollfd, 2> sources{{{xcb_get_file_descriptor(x()), POLLIN, 0}, {wake_, POLLIN, 0}}};
        poll(sources.data(), sources.size(), posted_ > shared_->taken ? lookAgainMs : -1);
        eventfd_t count = 0;
        if ((sources[1].revents & POLLIN) != 0) { eventfd_read(wake_, &count); }
    }

    bool isLate() {
        if (posted_ <= shared_->taken) { oldest_.reset(); }
        return oldest_ && Clock::now() - *oldest_ > patience;
    }

    // Grabs or lets go as the word says.
    void adapt() {
        const bool wanted = (shared_->word & armedBit) != 0 && !isLate();
        if (wanted == grabbed_) { return; }
        grabbed_ = wanted;
        bool refused = false;
        for (const uint16_t lock : locks) {
            if (!wanted) {
                xcb_ungrab_key(x(), space_, display_.root(), lock);
                continue;
            }
            const auto cookie =
                xcb_grab_key_checked(x(), 0, display_.root(), lock, space_, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
            const XReply<xcb_generic_error_t> error(xcb_request_check(x(), cookie));
            refused = refused || error;
        }
        if (refused != shared_->refused) {
            shared_->refused = refused;
            loop_.post([shared = shared_] {
                if (shared->heard.refusal) { shared->heard.refusal(); }
            });
        }
    }

    // False when there was none.
    bool handleEvents() {
        bool any = false;
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(x())}) {
            any = true;
            const uint8_t type = event->response_type & 0x7f;
            if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
                answer(reinterpret_cast<const xcb_key_press_event_t&>(*event), type == XCB_KEY_PRESS);
            } else if (type == XCB_MAPPING_NOTIFY || (keyboardEvents_ != 0 && type == keyboardEvents_)) {
                changeMapping();
            }
        }
        return any;
    }

    void answer(const xcb_key_press_event_t& key, bool isPress) {
        const bool isSpace = key.detail == space_;
        const KeyEvent kind = isSpace ? (isPress ? KeyEvent::spacePress : KeyEvent::spaceRelease)
                              : isPress && !isModifier(key.detail) ? KeyEvent::otherPress
                                                                   : KeyEvent::rest;
        const bool swallows = (shared_->word & swallowBit) != 0 && !isLate();
        const KeyAnswer given = decideKey(kind, held_, swallows);
        // The release of Space ends the grab by itself. An answer to it could come so late that it counts for a new
        // press.
        if (kind != KeyEvent::spaceRelease) {
            // After a swallowed press the keyboard goes on until the next key, which then waits for us in the same way.
            const uint8_t mode = given.swallowed ? XCB_ALLOW_SYNC_KEYBOARD : XCB_ALLOW_REPLAY_KEYBOARD;
            xcb_allow_events(x(), mode, key.time);
            xcb_flush(x());
        }
        if (kind == KeyEvent::spacePress) { report(given); }
    }

    void report(const KeyAnswer& given) {
        if (!oldest_) { oldest_ = Clock::now(); }
        ++posted_;
        loop_.post([shared = shared_, given] {
            ++shared->taken;
            if (shared->heard.press) { shared->heard.press(given.isRepeat, given.swallowed); }
        });
    }

    bool isModifier(xcb_keycode_t key) const { return modifiers_[key / 8] >> (key % 8) & 1; }

    void readMapping() {
        space_ = display_.spaceKey();
        modifiers_.fill(0);
        const XReply<xcb_get_modifier_mapping_reply_t> reply(
            xcb_get_modifier_mapping_reply(x(), xcb_get_modifier_mapping(x()), nullptr));
        if (!reply) { return; }
        const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(reply.get());
        for (int i = 0; i < 8 * reply->keycodes_per_modifier; ++i) {
            modifiers_[keys[i] / 8] |= uint8_t(1U << (keys[i] % 8));
        }
    }

    void changeMapping() {
        const xcb_keycode_t before = space_;
        readMapping();
        if (space_ == before) { return; }
        if (grabbed_) { xcb_ungrab_key(x(), before, display_.root(), XCB_MOD_MASK_ANY); }
        grabbed_ = held_ = false;
    }

    // Repeats come as presses without releases in between; changes of the layout are announced.
    void hearMapping() {
        const XReply<xcb_xkb_use_extension_reply_t> reply(
            xcb_xkb_use_extension_reply(x(), xcb_xkb_use_extension(x(), 1, 0), nullptr));
        const xcb_query_extension_reply_t* extension = xcb_get_extension_data(x(), &xcb_xkb_id);
        if (!reply || !reply->supported || !extension) { return; }
        keyboardEvents_ = extension->first_event;
        const uint32_t repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
        xcb_discard_reply(x(),
                          xcb_xkb_per_client_flags(x(), XCB_XKB_ID_USE_CORE_KBD, repeat, repeat, 0, 0, 0).sequence);
        const uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
        xcb_xkb_select_events(x(), XCB_XKB_ID_USE_CORE_KBD, events, 0, events, 0xff, 0xff, nullptr);
    }

    X11Display display_;
    std::shared_ptr<Shared> shared_;
    MainLoop& loop_;
    int wake_;
    xcb_keycode_t space_ = 0;
    std::array<uint8_t, 32> modifiers_{};  // a bit for each key
    uint8_t keyboardEvents_ = 0;
    bool grabbed_ = false;
    bool held_ = false;  // a swallowed Space is down
    uint64_t posted_ = 0;
    std::optional<Clock::time_point> oldest_;  // press that the main loop hasn't handled
};

X11KeyGrab::~X11KeyGrab() {
    shared_->heard = {};
    if (!thread_.joinable()) { return; }
    setBit(endBit, true);
    thread_.join();
    close(wake_);
}

bool X11KeyGrab::start(Heard heard) {
    wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wake_ < 0) { return false; }
    auto keys = std::make_unique<Keys>(shared_, loop_, wake_);
    if (!keys->prepare()) {
        close(wake_);
        return false;
    }
    shared_->heard = std::move(heard);
    thread_ = std::thread([keys = std::move(keys)] { keys->run(); });
    return true;
}

void X11KeyGrab::setBit(uint32_t bit, bool on) {
    const uint32_t before = on ? shared_->word.fetch_or(bit) : shared_->word.fetch_and(~bit);
    if (((before & bit) != 0) != on && wake_ >= 0) { eventfd_write(wake_, 1); }
}

}  // namespace brindlehum
