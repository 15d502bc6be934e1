// ScriptObject.h: the global object `Tovik` of every page, whose functions forward to the plug-in
// and return when it has answered. They raise no exception: a missing or unusable argument and a
// missing plug-in give the empty string, null or 0. For files of the web process.
#pragma once

#include <JavaScriptCore/JavaScript.h>

/// Makes a new script object the property "Tovik" of the context's global object.
void wa_addJSClasses(JSGlobalContextRef context);

/// New UTF-8 text of a string, or of a number without its fraction, released with
/// wa_free_utf8string(). A number of more than 15 digits, 13 when negative, and one that is not
/// finite, follow number2string() for a buffer of 16 bytes. Null for any other value.
char* wa_alloc_utf8string(JSContextRef context, JSValueRef value);

/// Releases a text of wa_alloc_utf8string(); null is accepted.
void wa_free_utf8string(char* text);

/// `Tovik.GetProperty(name)`: the property's value as a string.
JSValueRef wa_GetProperty(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;

/// `Tovik.SetProperty(name, value)`: always null.
JSValueRef wa_SetProperty(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;

/// `Tovik.EnumProperty(first, second)`: the plug-in's answer as a string.
JSValueRef wa_EnumProperty(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;

/// `Tovik.Invoke(name)`: the low 32 bits of the command's status as a signed number.
JSValueRef wa_Invoke(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;
