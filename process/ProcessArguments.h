// ProcessArguments.h: option lookup over the arguments that Main received.
#pragma once

/// get_argument() over the process arguments: 1 with the value of the option, or the empty string
/// without one; 0 with null when the option is absent. Sees no default options of the plug-in and,
/// in the web process, where Main never runs, no options at all.
int wa_get_argument(const char* name, const char** value);
