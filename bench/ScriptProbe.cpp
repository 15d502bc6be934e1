// ScriptProbe.cpp: a web extension that gives every page the object `Bench` with the references
// of the script functions: `nothing`, which does nothing, `convert`, which reads a text of the
// page through JSStringGetUTF8CString and drops it, and `keep` and `create`, of which the one keeps
// a text and the other returns it through JSStringCreateWithUTF8CString. `faults` counts the page
// faults of the process.
#include "util/Export.h"
#include "util/Owned.h"

#include <JavaScriptCore/JavaScript.h>
#include <webkit2/webkit-web-extension.h>

#include <sys/resource.h>
#include <utility>

namespace {

using OwnedScriptString = std::unique_ptr<OpaqueJSString, ReleaseWith<JSStringRelease>>;

JSValueRef nothing(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
    JSValueRef*) noexcept
{
    return JSValueMakeUndefined(context);
}

struct Converted {
    OwnedText text;
    size_t size; // with its terminator
};

Converted converted(JSStringRef string)
{
    const size_t capacity = JSStringGetMaximumUTF8CStringSize(string);
    OwnedText text(new char[capacity]);
    const size_t size = JSStringGetUTF8CString(string, text.get(), capacity);
    return {std::move(text), size};
}

/// Returns the number of bytes, which shows the page that the text has been converted.
JSValueRef convert(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
    const JSValueRef arguments[], JSValueRef*) noexcept
{
    const OwnedScriptString string(
        count == 0 ? nullptr : JSValueToStringCopy(context, arguments[0], nullptr));
    const size_t written = string ? converted(string.get()).size : 0;
    return JSValueMakeNumber(context, static_cast<double>(written));
}

OwnedText& kept()
{
    static OwnedText text;
    return text;
}

JSValueRef keep(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
    const JSValueRef arguments[], JSValueRef*) noexcept
{
    const OwnedScriptString string(
        count == 0 ? nullptr : JSValueToStringCopy(context, arguments[0], nullptr));
    if (string) {
        kept() = converted(string.get()).text;
    }
    return JSValueMakeUndefined(context);
}

JSValueRef create(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
    JSValueRef*) noexcept
{
    const OwnedScriptString string(JSStringCreateWithUTF8CString(kept() ? kept().get() : ""));
    return JSValueMakeString(context, string.get());
}

JSValueRef faults(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
    JSValueRef*) noexcept
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return JSValueMakeNumber(context, static_cast<double>(usage.ru_minflt));
}

void set_property(JSContextRef context, JSObjectRef object, const char* name, JSValueRef value)
{
    const OwnedScriptString property(JSStringCreateWithUTF8CString(name));
    JSObjectSetProperty(context, object, property.get(), value, kJSPropertyAttributeNone, nullptr);
}

void set_function(JSContextRef context, JSObjectRef object, const char* name,
    JSObjectCallAsFunctionCallback function)
{
    set_property(
        context, object, name, JSObjectMakeFunctionWithCallback(context, nullptr, function));
}

void window_object_cleared_cb(
    WebKitScriptWorld* world, WebKitWebPage*, WebKitFrame* frame, void*) noexcept
{
    // The successor of this call speaks GLib's script types; the references need the C ones.
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    JSGlobalContextRef context = webkit_frame_get_javascript_context_for_script_world(frame, world);
    G_GNUC_END_IGNORE_DEPRECATIONS
    JSObjectRef bench = JSObjectMake(context, nullptr, nullptr);
    set_function(context, bench, "nothing", nothing);
    set_function(context, bench, "convert", convert);
    set_function(context, bench, "keep", keep);
    set_function(context, bench, "create", create);
    set_function(context, bench, "faults", faults);
    set_property(context, JSContextGetGlobalObject(context), "Bench", bench);
}

} // namespace

extern "C" TOVIK_EXPORT void webkit_web_extension_initialize(WebKitWebExtension*) noexcept
{
    g_signal_connect(webkit_script_world_get_default(), "window-object-cleared",
        G_CALLBACK(window_object_cleared_cb), nullptr);
}
