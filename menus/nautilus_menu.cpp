// The entries in the menu of Files (Nautilus 43 and later).
#include <gio/gio.h>

// Not all of its functions are declared as those of C.
extern "C" {
#include <nautilus-extension.h>
}

#include "menu_entries.h"

namespace {

using namespace brindlehum;

GList* entriesFor(NautilusMenuProvider*, GList* files) {
    std::vector<std::string> addresses;
    for (const GList* each = files; each; each = each->next) {
        char* const address = nautilus_file_info_get_activation_uri(NAUTILUS_FILE_INFO(each->data));
        addresses.emplace_back(address ? address : "");
        g_free(address);
    }
    if (!areSounds(addresses)) { return nullptr; }
    GList* items = nullptr;
    for (const MenuEntry& entry : menuEntries) {
        auto* item = nautilus_menu_item_new(entry.name, entry.label.shown(), entry.tip.shown(), "brindlehum");
        startWhenActivated(G_OBJECT(item), entry, addresses);
        items = g_list_append(items, item);
    }
    return items;
}

struct BrindlehumMenu {
    GObject parent;
};
struct BrindlehumMenuClass {
    GObjectClass parent;
};

static void brindlehum_menu_init(BrindlehumMenu*) {}
static void brindlehum_menu_class_init(BrindlehumMenuClass*) {}
static void provideMenu(gpointer interface, gpointer) {
    static_cast<NautilusMenuProviderInterface*>(interface)->get_file_items = entriesFor;
}

G_DEFINE_TYPE_WITH_CODE(BrindlehumMenu, brindlehum_menu, G_TYPE_OBJECT,
                        G_IMPLEMENT_INTERFACE(NAUTILUS_TYPE_MENU_PROVIDER, provideMenu))

}  // namespace

// What Nautilus calls.
extern "C" {
G_MODULE_EXPORT void nautilus_module_initialize(GTypeModule* module) {
    g_type_module_use(module);  // the type can't be taken back
}
G_MODULE_EXPORT void nautilus_module_shutdown() {}
G_MODULE_EXPORT void nautilus_module_list_types(const GType** types, int* count) {
    static const GType type = brindlehum_menu_get_type();
    *types = &type;
    *count = 1;
}
}
