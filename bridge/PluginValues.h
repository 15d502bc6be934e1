// PluginValues.h: what the user-interface process takes from the plug-in's properties: its part of
// the user agent, pages, and default options. Without a plug-in, or without the property, a value
// is absent. Each is read afresh.
#pragma once

/// Bytes that the shell has for user-agent info.
inline constexpr unsigned long kUserAgentInfoCapacity = 64;

/// Writes the product part of the user agent, from "UserAgentId" or else "ProductInfo"; false with
/// an empty buffer when there is none or it does not fit in `size` bytes.
bool wa_client_info(char* buffer, unsigned long size);

/// Writes the operating-system part of the user agent, from "MachineInfo"; false, with nothing
/// written, when there is none or it does not fit.
bool wa_system_info(char* buffer, unsigned long size);

/// Writes client info, a blank and system info, or client info alone; false with an empty buffer
/// without client info, which has half of the `size` bytes for itself.
bool wa_user_agent_info(char* buffer, unsigned long size);

/// New text with a user agent that WebKit accepts, made of user-agent info, a blank and `own`,
/// WebKit's own agent, or of client info alone where the system info makes WebKit refuse it; the
/// caller owns it. Null when there is none, or `own` is null.
char* wa_plugin_user_agent(const char* own);

/// New array with the page that the plug-in keeps, base64-encoded, under "Web:" and what follows
/// the first six characters of `url`, the "res://"; the caller owns it. Null when there is none.
char* wa_load_url_resource(const char* url);

/// New argument list of the plug-in's default options, "ConfigGlobal:Command:App", with its length
/// in `*count`; null, with `*count` as it was, when there are none.
char** wa_load_argument_list(int* count);

/// New argument list of `*count` given arguments and the plug-in's default options, whose number
/// is added to `*count`; null, with `*count` as it was, when memory runs out.
char** wa_get_default_argument_list(char** arguments, int* count);
