#include "webapp/WebApp.h"

#include "bridge/WebBridge.h"
#include "util/Utility.h"
#include "webapp/ResultFile.h"
#include "webapp/ShellState.h"
#include "webapp/StartPage.h"
#include "webapp/Window.h"

namespace {

/// The arguments that the shell reads its options from: the process arguments, followed by the
/// plug-in's default options when no "-url" is given.
struct Arguments {
    int count;
    char** list;
    OwnedList extended;
};

Arguments shell_arguments(int argc, char** argv)
{
    Arguments arguments = {argc, argv, nullptr};
    if (has_argument(argc, argv, "-url") == 0) {
        arguments.extended.reset(wa_get_default_argument_list(argv, &arguments.count));
        if (arguments.extended) {
            arguments.list = arguments.extended.get();
        }
    }
    return arguments;
}

const char* text_option(const Arguments& from, const char* name, const char* fallback)
{
    const char* value = nullptr;
    return get_argument(from.count, from.list, name, &value) == 0 ? fallback : value;
}

std::optional<unsigned int> number_option(const Arguments& from, const char* name)
{
    unsigned int value = 0;
    return get_argument(from.count, from.list, name, &value) == 0 ? std::nullopt
                                                                  : std::optional(value);
}

bool has_option(const Arguments& in, const char* name)
{
    return has_argument(in.count, in.list, name) != 0;
}

Frame frame_option(const Arguments& arguments)
{
    const FrameOptions options = {number_option(arguments, "-size"),
        has_option(arguments, "-fullscreen"), number_option(arguments, "-position")};
    return wa_initial_frame(options, wa_work_area());
}

/// Shows the window and, when it is gone, writes the result file and releases the plug-in. Does
/// nothing when there is no display.
void run(const Arguments& arguments)
{
    const char* url = text_option(arguments, "-url", "index.html");
    const char* userAgent = text_option(arguments, "-useragent", nullptr);
    const char* icon = text_option(arguments, "-icon", nullptr);
    const OwnedText foundIcon(icon == nullptr ? wa_gui_icon_path() : nullptr);
    const char* title = text_option(arguments, "-title", "Tovik");
    const unsigned int wait = number_option(arguments, "-wait").value_or(3);
    const Frame frame = frame_option(arguments);

    GtkWidget* content = wa_gui_start(userAgent);
    if (content == nullptr) {
        return;
    }
    wa_translate_url(arguments.count, arguments.list, url);
    wa_gui_show(content, icon == nullptr ? foundIcon.get() : icon, title, frame.position.x,
        frame.position.y, frame.size.width, frame.size.height, wait,
        has_option(arguments, "-resizing"), has_option(arguments, "-system"));
    const char* store = text_option(arguments, "-store", nullptr);
    if (store != nullptr) {
        wa_handle_result(store);
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
    // Without the arguments, of which GTK would take some for its own. A failure shows as a
    // missing display wherever one is needed.
    gtk_init_check(nullptr, nullptr);
    run(shell_arguments(argc, argv));
    g_Status.reset();
    g_Response.reset();
    g_URL.reset();
    g_Content.reset();
    // The host may go on, even with a main loop of its own, and so may the page; nothing of this
    // run is there for it any more.
    g_MainWindow = nullptr;
    g_ARGC = 0;
    g_ARGV = nullptr;
    return 0;
}
