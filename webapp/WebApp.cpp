#include "webapp/WebApp.h"

#include "bridge/WebBridge.h"
#include "process/ProcessState.h"
#include "util/Utility.h"
#include "webapp/Options.h"
#include "webapp/ResultFile.h"
#include "webapp/ShellArguments.h"
#include "webapp/ShellState.h"
#include "webapp/StartPage.h"
#include "webapp/Window.h"

namespace {

/// Shows the window and, after its end, writes the result file and releases the plug-in. Without a
/// display it only releases the plug-in.
void run(const ShellArguments& arguments)
{
    const ShellOptions options = read_options(arguments.count, arguments.list);
    const OwnedText foundIcon(options.icon == nullptr ? wa_gui_icon_path() : nullptr);
    const WindowRect rect = wa_initial_rect(options.rect, wa_work_area());

    GtkWidget* content = wa_gui_start(options.userAgent);
    if (content == nullptr) {
        wa_FreePlugin(); // the default options may have loaded it
        return;
    }
    wa_translate_url(arguments.count, arguments.list, options.url);
    wa_gui_show(content, options.icon == nullptr ? foundIcon.get() : options.icon, options.title,
        rect.position.x, rect.position.y, rect.size.width, rect.size.height, options.wait,
        options.resizing, options.system);
    if (options.store != nullptr) {
        wa_handle_result(options.store);
    }
    wa_gui_end(content);
}

} // namespace

int EntryAdmin(void*, void*, const char* commandLine) noexcept
{
    int count = 0;
    const OwnedList list(alloc_argument_list(commandLine, &count));
    if (!list) {
        return 0;
    }
    if (has_argument(count, list.get(), "-verbose") != 0) {
        for (int i = 0; i < count; ++i) {
            std::printf(
                "App - %u: %s\n", static_cast<unsigned int>(i), list[static_cast<std::size_t>(i)]);
        }
    }
    return Main(count, list.get());
}

int Main(int argc, char** argv) noexcept
{
    g_ARGC = argc;
    g_ARGV = argv;
    note_inherited_descriptors();
    // GTK receives no arguments, some of which it would interpret. A failure shows as a missing
    // display wherever one is needed.
    gtk_init_check(nullptr, nullptr);
    run(wa_shell_arguments(argc, argv));
    g_Status.reset();
    g_Response.reset();
    g_URL.reset();
    g_Content.reset();
    g_ARGC = 0;
    g_ARGV = nullptr;
    return 0;
}
