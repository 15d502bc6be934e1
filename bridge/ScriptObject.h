// ScriptObject.h: the global object `Tovik` of every page. Its functions call the plug-in and
// return its answer. They raise no exception: a missing or unusable argument and a missing plug-in
// give the empty string, null or 0. For files of the web process.
#pragma once

#include <JavaScriptCore/JavaScript.h>

/// Sets the property "Tovik" of the global object of the context to a new script object.
void wa_addJSClasses(JSGlobalContextRef context);

/// New UTF-8 text of a string, or of a number without its fraction, released with
/// wa_free_utf8string(). Of a number with more than 15 digits the last 15 stay. A negative number
/// with more than 13 digits, and a number beyond 64 bits or not finite, gives the empty text. Null
/// for any other value.
char* wa_alloc_utf8string(JSContextRef context, JSValueRef value);

/// Releases a text of wa_alloc_utf8string(); accepts null.
void wa_free_utf8string(char* text);

/// `Tovik.GetProperty(name)`: the value of the property as a string.
JSValueRef wa_GetProperty(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;

/// `Tovik.SetProperty(name, value)`: always null.
JSValueRef wa_SetProperty(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;

/// `Tovik.EnumProperty(first, second)`: the answer of the plug-in as a string.
JSValueRef wa_EnumProperty(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;

/// `Tovik.Invoke(name)`: the low 32 bits of the status of a command as a signed number.
JSValueRef wa_Invoke(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
    size_t count, const JSValueRef arguments[], JSValueRef* exception) noexcept;
