#include "host/ExportedWindow.h"

#include <cstdint>
#include <cstring>

namespace {

struct Interface;

/// struct wl_message and wl_interface of libwayland-client, part of that library's interface.
struct Message {
    const char* name;
    const char* signature;
    const Interface* const* types;
};
struct Interface {
    const char* name;
    int version;
    int requestCount;
    const Message* requests;
    int eventCount;
    const Message* events;
};

/// The protocol xdg-foreign, version 1, which is that of GTK 3.
constexpr const Interface* kUntyped[] = {nullptr};
constexpr Message kImportedRequests[]
    = {{"destroy", "", kUntyped}, {"set_parent_of", "o", kUntyped}};
constexpr Message kImportedEvents[] = {{"destroyed", "", kUntyped}};
constexpr Interface kImported = {"zxdg_imported_v1", 1, 2, kImportedRequests, 1, kImportedEvents};
constexpr const Interface* kImportTypes[] = {&kImported, nullptr};
constexpr Message kImporterRequests[] = {{"destroy", "", kUntyped}, {"import", "ns", kImportTypes}};
constexpr Interface kImporter = {"zxdg_importer_v1", 1, 2, kImporterRequests, 0, nullptr};
/// Numbers of requests.
constexpr std::uint32_t kGetRegistry = 1;
constexpr std::uint32_t kBind = 0;
constexpr std::uint32_t kDestroy = 0;
constexpr std::uint32_t kImport = 1;

/// A conversation with the compositor in an event queue of its own, which leaves GDK's alone.
struct Question {
    const Library& library;
    void* importer; // null until the compositor has named it
    ExportedWindow answer;
};

void global_cb(
    void* data, void* registry, std::uint32_t name, const char* interface, std::uint32_t) noexcept
{
    using Bind = void*(void*, std::uint32_t, const Interface*, std::uint32_t, ...);
    Question& question = *static_cast<Question*>(data);
    if (question.importer == nullptr && std::strcmp(interface, kImporter.name) == 0) {
        question.importer
            = function_of<Bind>(question.library, "wl_proxy_marshal_constructor_versioned")(
                registry, kBind, &kImporter, 1, name, kImporter.name, 1, nullptr);
    }
}

void global_removed_cb(void*, void*, std::uint32_t) noexcept { }

void destroyed_cb(void* data, void*) noexcept
{
    static_cast<Question*>(data)->answer = ExportedWindow::unknown;
}

void listen(Question& question, void* proxy, void (**handlers)())
{
    function_of<int(void*, void (**)(), void*)>(question.library, "wl_proxy_add_listener")(
        proxy, handlers, &question);
}

void round_trip(const Library& library, void* connection, void* queue)
{
    function_of<int(void*, void*)>(library, "wl_display_roundtrip_queue")(connection, queue);
}

/// Asks for the registry, whose events go to the queue.
void* new_registry(Question& question, void* connection, void* queue)
{
    using Get = void*(void*, std::uint32_t, const void*, ...);
    static void (*handlers[])() = {
        reinterpret_cast<void (*)()>(global_cb), reinterpret_cast<void (*)()>(global_removed_cb)};
    const Library& library = question.library;
    void* wrapper = function_of<void*(void*)>(library, "wl_proxy_create_wrapper")(connection);
    function_of<void(void*, void*)>(library, "wl_proxy_set_queue")(wrapper, queue);
    void* registry = function_of<Get>(library, "wl_proxy_marshal_constructor")(
        wrapper, kGetRegistry, dlsym(library.handle, "wl_registry_interface"), nullptr);
    function_of<void(void*)>(library, "wl_proxy_wrapper_destroy")(wrapper);
    listen(question, registry, handlers);
    return registry;
}

/// Asks for the window; the importer tells in the next round trip if there is none.
void* new_import(Question& question, const char* token)
{
    using Import = void*(void*, std::uint32_t, const Interface*, ...);
    static void (*handlers[])() = {reinterpret_cast<void (*)()>(destroyed_cb)};
    question.answer = ExportedWindow::exists;
    void* imported = function_of<Import>(question.library, "wl_proxy_marshal_constructor")(
        question.importer, kImport, &kImported, nullptr, token);
    listen(question, imported, handlers);
    return imported;
}

/// Releases a proxy here and in the compositor.
void release(const Library& library, void* proxy)
{
    function_of<void(void*, std::uint32_t, ...)>(library, "wl_proxy_marshal")(proxy, kDestroy);
    function_of<void(void*)>(library, "wl_proxy_destroy")(proxy);
}

} // namespace

ExportedWindow exported_window(const Library& library, void* display, const char* token)
{
    Question question = {library, nullptr, ExportedWindow::unsupported};
    void* connection
        = function_of<void*(void*)>(library, "gdk_wayland_display_get_wl_display")(display);
    void* queue = function_of<void*(void*)>(library, "wl_display_create_queue")(connection);
    void* registry = new_registry(question, connection, queue);
    round_trip(library, connection, queue);
    if (question.importer != nullptr) {
        void* imported = new_import(question, token);
        round_trip(library, connection, queue);
        release(library, imported);
        release(library, question.importer);
    }
    function_of<void(void*)>(library, "wl_proxy_destroy")(registry);
    function_of<void(void*)>(library, "wl_event_queue_destroy")(queue);
    return question.answer;
}
