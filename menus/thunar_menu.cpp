// The entries in the menu of Thunar.
#include <gtk/gtk.h>

// Not all of its functions are declared as those of C.
extern "C" {
#include <thunarx/thunarx.h>
}

#include "menu_entries.h"

namespace {

using namespace brindlehum;

GList* entriesFor(ThunarxMenuProvider*, GtkWidget*, GList* files) {
    std::vector<std::string> addresses;
    for (const GList* each = files; each; each = each->next) {
        char* const address = thunarx_file_info_get_uri(THUNARX_FILE_INFO(each->data));
        addresses.emplace_back(address ? address : "");
        g_free(address);
    }
    if (!areSounds(addresses)) { return nullptr; }
    GList* items = nullptr;
    for (const MenuEntry& entry : menuEntries) {
        auto* item = thunarx_menu_item_new(entry.name, entry.label.shown(), entry.tip.shown(), "brindlehum");
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
    static_cast<ThunarxMenuProviderIface*>(interface)->get_file_menu_items = entriesFor;
}

G_DEFINE_TYPE_WITH_CODE(BrindlehumMenu, brindlehum_menu, G_TYPE_OBJECT,
                        G_IMPLEMENT_INTERFACE(THUNARX_TYPE_MENU_PROVIDER, provideMenu))

}  // namespace

// What Thunar calls.
extern "C" {
G_MODULE_EXPORT void thunar_extension_initialize(ThunarxProviderPlugin* plugin) {
    thunarx_provider_plugin_set_resident(plugin, TRUE);  // the type can't be taken back
}
G_MODULE_EXPORT void thunar_extension_shutdown() {}
G_MODULE_EXPORT void thunar_extension_list_types(const GType** types, int* count) {
    static const GType type = brindlehum_menu_get_type();
    *types = &type;
    *count = 1;
}
}
