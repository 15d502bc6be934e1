// ShellArguments.h: the arguments that a run reads its options from.
#pragma once

#include "util/Utility.h"

struct ShellArguments {
    int count;
    char** list; // the process arguments, or `extended`
    OwnedList extended;
};

/// The process arguments as they are, or, when they hold no "-url", followed by the plug-in's
/// default options, for which the plug-in is loaded.
ShellArguments wa_shell_arguments(int argc, char** argv);
