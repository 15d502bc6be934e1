#include "host/Parent.h"

#include "host/ExportedWindow.h"
#include "host/Line.h"
#include "host/ParentHandle.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr char kGone[] = " is no window of another program, or it is gone";

/// What the handlers know.
struct Dialog {
    const Library& library;
    const char* handle;
    bool placed;
    void* window; // null until the view is in it
};

/// GdkRectangle.
struct Rectangle {
    int x;
    int y;
    int width;
    int height;
};

std::string_view display_type(const Dialog& dialog, void* display)
{
    return function_of<const char*(void*)>(dialog.library, "g_type_name_from_instance")(display);
}

Rectangle work_area(const Dialog& dialog, void* monitor)
{
    Rectangle area = {};
    function_of<void(void*, Rectangle*)>(dialog.library, "gdk_monitor_get_workarea")(
        monitor, &area);
    return area;
}

/// Place and size that the library has given to the window.
Rectangle place_of(const Dialog& dialog)
{
    using Get = void(void*, int*, int*);
    Rectangle place = {};
    function_of<Get>(dialog.library, "gtk_window_get_position")(dialog.window, &place.x, &place.y);
    function_of<Get>(dialog.library, "gtk_window_get_size")(
        dialog.window, &place.width, &place.height);
    return place;
}

/// Whether the library has centred the window, which it does unless there is a position, perhaps
/// among the default options of the plug-in.
bool is_centred(const Dialog& dialog, void* display, const Rectangle& place)
{
    void* monitor
        = function_of<void*(void*, int)>(dialog.library, "gdk_display_get_monitor")(display, 0);
    const Rectangle area = monitor == nullptr ? Rectangle() : work_area(dialog, monitor);
    return std::abs(2 * place.x + place.width - area.width) <= 1
        && std::abs(2 * place.y + place.height - area.height) <= 1;
}

/// Where `length` is in the middle of the room from `start`, but within the limits if it fits.
int middle(int start, int room, int length, int lowest, int limit)
{
    return std::max(std::min(start + (room - length) / 2, lowest + limit - length), lowest);
}

/// Moves the window to the middle of an X window, as far as the work area of that one's monitor
/// allows. The frame that the window manager will add counts as that of the parent.
void centre(const Dialog& dialog, void* display, void* parent)
{
    const Library& library = dialog.library;
    Rectangle place = place_of(dialog);
    if (dialog.placed || !is_centred(dialog, display, place)) {
        return;
    }
    Rectangle frame = {};
    function_of<void(void*, Rectangle*)>(library, "gdk_window_get_frame_extents")(parent, &frame);
    place.width += frame.width - function_of<int(void*)>(library, "gdk_window_get_width")(parent);
    place.height
        += frame.height - function_of<int(void*)>(library, "gdk_window_get_height")(parent);
    void* monitor
        = function_of<void*(void*, int, int)>(library, "gdk_display_get_monitor_at_point")(
            display, frame.x + frame.width / 2, frame.y + frame.height / 2);
    const Rectangle area = work_area(dialog, monitor);
    function_of<void(void*, int, int)>(library, "gtk_window_move")(dialog.window,
        middle(frame.x, frame.width, place.width, area.x, area.width),
        middle(frame.y, frame.height, place.height, area.y, area.height));
}

/// Returns why the window has no parent, or the empty text.
const char* follow_x_window(const Dialog& dialog, void* display, void* window, unsigned int id)
{
    // Of another client; the root window is none, and the id of a window that is gone may have been
    // given to one of this process.
    constexpr int kForeign = 4;
    const Library& library = dialog.library;
    // These functions expect errors of the X server themselves: the window may vanish at any time.
    void* parent = function_of<void*(void*, unsigned long)>(
        library, "gdk_x11_window_foreign_new_for_display")(display, id);
    if (parent == nullptr) {
        return kGone;
    }
    const bool isForeign
        = function_of<int(void*)>(library, "gdk_window_get_window_type")(parent) == kForeign;
    if (isForeign) {
        function_of<void(void*, void*)>(library, "gdk_window_set_transient_for")(window, parent);
        centre(dialog, display, parent);
    }
    function_of<void(void*)>(library, "g_object_unref")(parent);
    return isForeign ? "" : kGone;
}

/// Returns why the window has no parent, or the empty text.
const char* follow_exported_window(
    const Dialog& dialog, void* display, void* window, const char* token)
{
    switch (exported_window(dialog.library, display, token)) {
    case ExportedWindow::unknown:
        return kGone;
    case ExportedWindow::unsupported:
        return " cannot be a parent, because the compositor has no xdg-foreign";
    case ExportedWindow::exists:
        break;
    }
    function_of<int(void*, const char*)>(
        dialog.library, "gdk_wayland_window_set_transient_for_exported")(window, token);
    return "";
}

const char* follow_window(const Dialog& dialog)
{
    const Library& library = dialog.library;
    const ParentHandle parent = parent_handle(dialog.handle);
    void* display = function_of<void*(void*)>(library, "gtk_widget_get_display")(dialog.window);
    void* window = function_of<void*(void*)>(library, "gtk_widget_get_window")(dialog.window);
    switch (parent.kind) {
    case ParentHandle::Kind::x11:
        return display_type(dialog, display) == "GdkX11Display"
            ? follow_x_window(dialog, display, window, parent.window)
            : " is a window of X, and the dialog is not on X; give wayland:TOKEN";
    case ParentHandle::Kind::wayland:
        return display_type(dialog, display) == "GdkWaylandDisplay"
            ? follow_exported_window(dialog, display, window, parent.token)
            : " is a window of Wayland, and the dialog is not on Wayland; give x11:0xNUMBER";
    case ParentHandle::Kind::none:
        break;
    }
    return kIsNoHandle;
}

/// Handler of "realize" of the window, which is not shown yet.
void window_realized_cb(void*, void* data) noexcept
{
    constexpr int kDialog = 1;
    const Dialog& dialog = *static_cast<const Dialog*>(data);
    const std::string_view fault = follow_window(dialog);
    if (fault.empty()) {
        function_of<void(void*, int)>(dialog.library, "gtk_window_set_type_hint")(
            dialog.window, kDialog);
        return;
    }
    print_line({"tovik: --parent \"", dialog.handle, "\"", fault, "; the dialog has no parent"});
}

/// Handler of "hierarchy-changed" of the view.
void hierarchy_changed_cb(void* view, void*, void* data) noexcept
{
    Dialog& dialog = *static_cast<Dialog*>(data);
    if (dialog.window == nullptr) {
        dialog.window = function_of<void*(void*)>(dialog.library, "gtk_widget_get_toplevel")(view);
        connect_signal(dialog.library, dialog.window, "realize", window_realized_cb, data);
    }
}

} // namespace

void give_parent(const Library& library, void* view, const char* handle, bool placed)
{
    static Dialog dialog = {library, handle, placed, nullptr};
    connect_signal(library, view, "hierarchy-changed", hierarchy_changed_cb, &dialog);
}
