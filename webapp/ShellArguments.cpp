#include "webapp/ShellArguments.h"

#include "bridge/WebBridge.h"
#include "webapp/Options.h"

ShellArguments wa_shell_arguments(int argc, char** argv)
{
    ShellArguments arguments = {argc, argv, nullptr};
    if (has_argument(argc, argv, option("-url").name) == 0) {
        arguments.extended.reset(wa_get_default_argument_list(argv, &arguments.count));
        if (arguments.extended) {
            arguments.list = arguments.extended.get();
        }
    }
    return arguments;
}
