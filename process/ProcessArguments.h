// ProcessArguments.h: option lookup over the arguments that Main received.
#pragma once

/// get_argument() over the process arguments: 1 with the option's value, the empty string when it
/// has none, or 0 with null. Options that only the plug-in's defaults carry are not seen, and in
/// the web process, where Main never runs, there are none.
int wa_get_argument(const char* name, const char** value);
