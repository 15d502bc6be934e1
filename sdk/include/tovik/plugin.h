/** \file
 * What a native plug-in for Tovik exports.
 *
 * A plug-in is a shared library, libBRAND.so (libtovik.so by default), with six C functions in one
 * of two generations: the newer names begin with "Plg", the older ones with "P_". Write the newer
 * set; the older one is for plug-ins that exist already. A set counts only when it is complete, and
 * of two complete sets the newer one is used.
 *
 * Who calls: two processes load the plug-in, and each has an instance of its own. They share
 * nothing but files. The user-interface process reads the properties UserAgentId, ProductInfo,
 * MachineInfo, Web:PATH and ConfigGlobal:Command:App. The web process forwards what page scripts
 * ask of the global object `Tovik`. Each process calls from one thread, and a script waits until
 * the plug-in returns.
 *
 * When: a process may load the library, close it and load it again, so that constructors of static
 * objects run more than once. At the end of a process the finalise function runs before the
 * destructors of the plug-in's static objects, except for objects made after initialise had
 * returned, such as a function-local static of a later call: these are destroyed first. The web
 * process may also be ended by a signal, without any call.
 *
 * Texts are NUL-terminated byte strings, UTF-8 where a page is involved. A text that the plug-in
 * receives belongs to the caller and is gone after the call. A text that the plug-in returns stays
 * its own: the caller never frees it, and it has to live until the next call of any of the
 * plug-in's functions. To answer with a text that it received, a plug-in returns a copy. Null
 * stands for no text. A text that is not UTF-8 or has more than 2,147,483,632 bytes reaches a page
 * as the empty string.
 *
 * An exception must not leave these functions: it would end the process.
 *
 * Link a plug-in with -Wl,-Bsymbolic, so that its own calls reach its own functions even if the
 * process already has functions of these names. This header is C99 and C++ and needs no other.
 */
#ifndef TOVIK_PLUGIN_H
#define TOVIK_PLUGIN_H

#ifdef __cplusplus
extern "C" {
#endif

/** Makes a function visible outside the plug-in. */
#define TOVIK_PLUGIN_EXPORT __attribute__((visibility("default")))

/* Results of invoke functions have the numbers of PKCS 11 return values. The page receives the low
 * 32 bits as a signed number. */

/** CKR_OK. A page also receives it when there is no plug-in. */
#define TOVIK_OK 0x00000000UL
/** CKR_FUNCTION_FAILED. A page also receives it when the call could not be made. */
#define TOVIK_FUNCTION_FAILED 0x00000006UL
/** CKR_FUNCTION_NOT_SUPPORTED. */
#define TOVIK_FUNCTION_NOT_SUPPORTED 0x00000054UL
/** CKR_PIN_INCORRECT. */
#define TOVIK_PIN_INCORRECT 0x000000A0UL
/** CKR_PIN_LOCKED. */
#define TOVIK_PIN_LOCKED 0x000000A4UL

/* ---- The newer set ---- */

/** Creates the plug-in's instance and stores it in `*instance`, the value that all other functions
 * receive. The four reserved arguments are null. Returns any non-null pointer on success, all of
 * whose bits count, and null on failure; after a failure the function may be called again. Leave
 * `*instance` null on failure: what is stored there is finalised all the same.
 *
 * If the library was found by a path, the property "WorkingDirectory" is set right after a success:
 * the library's directory, with its trailing "/".
 *
 *     void* PlgInitialize(void* r1, void* r2, void* r3, void* r4, void** instance)
 *     {
 *         return *instance = calloc(1, sizeof(struct state));
 *     }
 */
TOVIK_PLUGIN_EXPORT void* PlgInitialize(
    void* reserved1, void* reserved2, void* reserved3, void* reserved4, void** instance);

/** Ends the instance. Called once before the library is closed, if the instance is not null. */
TOVIK_PLUGIN_EXPORT void PlgFinalize(void* instance);

/** Sets a property. */
TOVIK_PLUGIN_EXPORT void PlgSetProperty(void* instance, const char* name, const char* value);

/** Returns the value of a property, or null. */
TOVIK_PLUGIN_EXPORT const char* PlgGetProperty(void* instance, const char* name);

/** Answers an enumeration; plug-in and page agree what the two texts and the answer mean. */
TOVIK_PLUGIN_EXPORT const char* PlgEnumProperty(
    void* instance, const char* first, const char* second);

/** Runs a command and returns its status. */
TOVIK_PLUGIN_EXPORT unsigned long PlgInvoke(void* instance, const char* name);

/* ---- The older set ---- */

/** Creates the plug-in's instance and returns it; null on failure, after which the function may be
 * called again. No "WorkingDirectory" is set.
 *
 *     text          null
 *     globalConfig  path of an existing BRAND.conf, or null: in the user-interface process the one
 *                   in the directory of the option "-root", in the web process the one beside
 *                   Tovik's own library
 *     localConfig   path given by the option "-config", or null; always null in the web process
 *     callback      null
 */
TOVIK_PLUGIN_EXPORT void* P_Initialize(const char* text, const char* globalConfig,
    const char* localConfig, void (*callback)(const char* text, unsigned long number));

/** Does what PlgFinalize() does. */
TOVIK_PLUGIN_EXPORT void P_Finalize(void* instance);
/** Does what PlgSetProperty() does. */
TOVIK_PLUGIN_EXPORT void P_SetProperty(void* instance, const char* name, const char* value);
/** Does what PlgGetProperty() does. */
TOVIK_PLUGIN_EXPORT const char* P_GetProperty(void* instance, const char* name);
/** Does what PlgEnumProperty() does. */
TOVIK_PLUGIN_EXPORT const char* P_EnumProperty(
    void* instance, const char* first, const char* second);
/** Does what PlgInvoke() does. */
TOVIK_PLUGIN_EXPORT unsigned long P_Invoke(void* instance, const char* name);

#ifdef __cplusplus
}
#endif

#endif
