// ShellArguments.h: the arguments from which a run reads its options.
#pragma once

#include "util/Utility.h"

/// An argument vector.
struct ShellArguments {
    int count; // of the arguments
    char** list; // the process arguments, or `extended`
    OwnedList extended; // the process arguments and the default options; else null
};

/// The process arguments. When they hold no "-url", the default options of the plug-in follow, for
/// which the plug-in is loaded.
ShellArguments wa_shell_arguments(int argc, char** argv);
