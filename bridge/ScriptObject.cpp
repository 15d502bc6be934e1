#include "bridge/ScriptObject.h"

#include "bridge/PluginLoader.h"
#include "plugin/plugin.h"
#include "util/Blocks.h"
#include "util/Owned.h"
#include "util/StringUtil.h"
#include "util/Utf16.h"
#include "util/Utility.h"

#include <climits>
#include <cstdint>
#include <cstdio>

namespace {

using OwnedScriptString = std::unique_ptr<OpaqueJSString, ReleaseWith<JSStringRelease>>;
using OwnedScriptClass = std::unique_ptr<OpaqueJSClass, ReleaseWith<JSClassRelease>>;
using OwnedUtf8 = std::unique_ptr<char, ReleaseWith<wa_free_utf8string>>;

constexpr std::size_t kNumberCapacity = 16;

// From this length on, reading the units of a string costs less than letting the engine convert it.
constexpr std::size_t kLongText = 128;

// The engine ends the process for a string of 16-bit units that is a little longer.
constexpr std::size_t kLongestAnswer = 0x7FFFFFF0;

void wa_init_cb(JSContextRef, JSObjectRef) noexcept { }
void wa_finalize_cb(JSObjectRef) noexcept { }

const JSStaticFunction wa_class_staticfuncs[] = {
    {"GetProperty", wa_GetProperty, kJSPropertyAttributeNone},
    {"SetProperty", wa_SetProperty, kJSPropertyAttributeNone},
    {"EnumProperty", wa_EnumProperty, kJSPropertyAttributeNone},
    {"Invoke", wa_Invoke, kJSPropertyAttributeNone},
    {nullptr, nullptr, kJSPropertyAttributeNone},
};

const JSClassDefinition wa_class_def = [] {
    JSClassDefinition definition = {};
    definition.className = "Tovik";
    definition.staticFunctions = wa_class_staticfuncs;
    definition.initialize = wa_init_cb;
    definition.finalize = wa_finalize_cb;
    return definition;
}();

/// Drops the fraction; a number beyond the range of a long, or not a number, gives the smallest
/// one.
long truncated(double number)
{
    constexpr double kLimit = 9223372036854775808.0;
    return number > -kLimit && number < kLimit ? static_cast<long>(number) : LONG_MIN;
}

/// Copies a long string's units as bytes and terminates them; false when one is not ASCII.
bool copy_ascii(char* text, const JSChar* units, std::size_t length)
{
    const std::size_t last = length - tovik::kBlockSize;
    for (std::size_t i = 0; i < last; i += tovik::kBlockSize) {
        if (!tovik::store_ascii(text + i, units + i)) {
            return false;
        }
    }
    text[length] = 0;
    return tovik::store_ascii(text + last, units + last);
}

char* alloc_text_of_string(JSContextRef context, JSValueRef value)
{
    const OwnedScriptString string(JSValueToStringCopy(context, value, nullptr));
    if (!string) {
        return nullptr;
    }
    const std::size_t length = JSStringGetLength(string.get());
    if (length >= kLongText) {
        OwnedText text(new char[length + 1]);
        if (copy_ascii(text.get(), JSStringGetCharactersPtr(string.get()), length)) {
            return text.release();
        }
    }
    // A unit becomes three bytes at most. The engine's function for this capacity counts in 32
    // bits and would wrap for 1.4 billion units.
    const std::size_t capacity = length * 3 + 1;
    char* text = new char[capacity];
    char* end = length < kLongText
        ? nullptr
        : store_utf8(text, JSStringGetCharactersPtr(string.get()), length);
    if (end != nullptr) {
        *end = 0;
        return text;
    }
    // A surrogate without its partner is left to the engine.
    text[0] = 0;
    JSStringGetUTF8CString(string.get(), text, capacity);
    return text;
}

/// Text of the argument at `index`; null when it is missing or cannot be converted.
OwnedUtf8 argument_text(
    JSContextRef context, size_t count, const JSValueRef arguments[], size_t index)
{
    return OwnedUtf8(index < count ? wa_alloc_utf8string(context, arguments[index]) : nullptr);
}

/// A text as an engine's string, owned by the caller.
JSStringRef make_string(const char* text, std::size_t length)
{
    // The engine keeps ASCII in bytes, and has its own result for what is not UTF-8.
    if (length >= kLongText && !is_ascii(text, length)) {
        const std::unique_ptr<JSChar[]> units(new JSChar[length]);
        if (const JSChar* end = store_utf16(units.get(), text, length)) {
            return JSStringCreateWithCharacters(
                units.get(), static_cast<std::size_t>(end - units.get()));
        }
    }
    return JSStringCreateWithUTF8CString(text);
}

/// The plug-in's answer as a script string; empty for null and for more than kLongestAnswer bytes.
JSValueRef script_string(JSContextRef context, const char* text)
{
    const std::size_t length = tovik::_strlen(text);
    if (length > kLongestAnswer) {
        std::fprintf(stderr,
            "tovik: the plug-in answers with %zu bytes and a page can receive %zu, so it receives "
            "none; answer in parts\n",
            length, kLongestAnswer);
        text = nullptr;
    }
    const OwnedScriptString string(
        text == nullptr ? make_string("", 0) : make_string(text, length));
    return JSValueMakeString(context, string.get());
}

} // namespace

void wa_addJSClasses(JSGlobalContextRef context)
{
    const OwnedScriptClass scriptClass(JSClassCreate(&wa_class_def));
    const OwnedScriptString name(JSStringCreateWithUTF8CString("Tovik"));
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), name.get(),
        JSObjectMake(context, scriptClass.get(), nullptr), kJSPropertyAttributeNone, nullptr);
}

char* wa_alloc_utf8string(JSContextRef context, JSValueRef value)
{
    if (JSValueIsString(context, value)) {
        return alloc_text_of_string(context, value);
    }
    if (!JSValueIsNumber(context, value)) {
        return nullptr;
    }
    char* text = new char[kNumberCapacity];
    // Of a longer positive number the last 15 digits stay; of a longer negative one, nothing.
    number2string(truncated(JSValueToNumber(context, value, nullptr)), text, kNumberCapacity);
    return text;
}

void wa_free_utf8string(char* text)
{
    delete[] text;
}

JSValueRef wa_GetProperty(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
    const JSValueRef arguments[], JSValueRef*) noexcept
{
    const OwnedUtf8 name = argument_text(context, count, arguments, 0);
    void* plugin = name ? wa_GetPlugin() : nullptr;
    return script_string(context, plugin == nullptr ? nullptr : P_GetProperty(plugin, name.get()));
}

JSValueRef wa_SetProperty(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
    const JSValueRef arguments[], JSValueRef*) noexcept
{
    if (count >= 2) {
        const OwnedUtf8 name = argument_text(context, count, arguments, 0);
        const OwnedUtf8 value = name ? argument_text(context, count, arguments, 1) : nullptr;
        void* plugin = value ? wa_GetPlugin() : nullptr;
        if (plugin != nullptr) {
            P_SetProperty(plugin, name.get(), value.get());
        }
    }
    return JSValueMakeNull(context);
}

JSValueRef wa_EnumProperty(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
    const JSValueRef arguments[], JSValueRef*) noexcept
{
    // The plug-in may answer with one of these texts, so both live until the answer is copied.
    const OwnedUtf8 first = count >= 2 ? argument_text(context, count, arguments, 0) : nullptr;
    const OwnedUtf8 second = first ? argument_text(context, count, arguments, 1) : nullptr;
    void* plugin = second ? wa_GetPlugin() : nullptr;
    return script_string(
        context, plugin == nullptr ? nullptr : P_EnumProperty(plugin, first.get(), second.get()));
}

JSValueRef wa_Invoke(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
    const JSValueRef arguments[], JSValueRef*) noexcept
{
    const OwnedUtf8 name = argument_text(context, count, arguments, 0);
    void* plugin = name ? wa_GetPlugin() : nullptr;
    const unsigned long status = plugin == nullptr ? 0 : P_Invoke(plugin, name.get());
    return JSValueMakeNumber(context, static_cast<std::int32_t>(status));
}
