// PluginValues.h: what the user-interface process reads from the properties of the plug-in: its
// part of the user agent, pages, and default options. Without a plug-in or the property, a value is
// absent. Every call reads the property again.
#pragma once

/// Capacity of the buffer for user-agent info.
inline constexpr unsigned long kUserAgentInfoCapacity = 64;

/// Writes the product part of the user agent, from "UserAgentId" or else "ProductInfo"; false with
/// an empty buffer when it is absent or does not fit in `size` bytes.
bool wa_client_info(char* buffer, unsigned long size);

/// Writes the operating-system part of the user agent, from "MachineInfo"; false, with nothing
/// written, when it is absent or does not fit.
bool wa_system_info(char* buffer, unsigned long size);

/// Writes client info, of at most size / 2 bytes, a blank and system info, or client info alone.
/// False with an empty buffer without client info.
bool wa_user_agent_info(char* buffer, unsigned long size);

/// New text, owned by the caller, with a user agent that WebKit accepts: user-agent info, a blank
/// and `own`, the agent of WebKit. Client info replaces user-agent info that WebKit refuses. Null
/// without client info that WebKit accepts, or when `own` is null.
char* wa_plugin_user_agent(const char* own);

/// New array, owned by the caller, with the page at `url`, which begins with "res://": the decoded
/// value of the property "Web:" + the rest of `url`, which is base64. Null without that property.
char* wa_load_url_resource(const char* url);

/// New argument list of the default options of the plug-in, "ConfigGlobal:Command:App"; stores its
/// length in `*count`. Null, with `*count` unchanged, without default options.
char** wa_load_argument_list(int* count);

/// New argument list of `*count` given arguments and the default options of the plug-in, whose
/// number is added to `*count`. Null, with `*count` unchanged, when memory runs out.
char** wa_get_default_argument_list(char** arguments, int* count);
