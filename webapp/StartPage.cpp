#include "webapp/StartPage.h"

#include "bridge/WebBridge.h"
#include "process/ProcessArguments.h"
#include "process/ProcessState.h"
#include "process/Trace.h"
#include "util/MemoryUtil.h"
#include "util/StringUtil.h"
#include "util/Utility.h"
#include "webapp/ShellState.h"

#include <utility>

namespace {

constexpr char kResource[] = "res://";

/// Characters that a name leaves free for "/etc/<brand>/", each text counted with its terminator.
constexpr std::size_t kSystemRoom = sizeof "/etc/" + kBrandRoom + sizeof "/";

bool find_beside_library(char* path, const char* name)
{
    const std::size_t length = tovik::_strlen(name);
    // The length is tested first: the capacity left for the directory would fall below zero.
    return length < kPathCapacity && osGetModuleRoot(path, kPathCapacity - length)
        && BoundedPath::continuing(path, kPathCapacity).append(name).exists();
}

bool find_page_under_root(char* path, const char* name)
{
    const char* root = nullptr;
    return wa_get_argument("-root", &root) != 0
        && BoundedPath(path, kPathCapacity).append(root).append(name).exists();
}

bool find_in_system(char* path, const char* brand, const char* name)
{
    return tovik::_strlen(name) + kSystemRoom < kPathCapacity
        && BoundedPath(path, kPathCapacity)
               .append("/etc/")
               .append(brand)
               .append("/")
               .append(name)
               .exists();
}

} // namespace

void wa_translate_url(int argc, char** argv, const char* url)
{
    if (tovik::_strncmp(url, kResource, sizeof kResource - 1) == 0) {
        wa_translate_url_resource(argc, argv, url);
    } else {
        wa_translate_url_path(argc, argv, url);
    }
}

void wa_translate_url_resource(int argc, char** argv, const char* url)
{
    g_Content.reset(wa_load_url_resource(url));
    const char* query = nullptr;
    if (g_Content && get_url_arguments(argc, argv, &query) != 0) {
        g_Content = wa_insert_startup_argument(std::move(g_Content), query);
    }
}

void wa_translate_url_path(int argc, char** argv, const char* url)
{
    g_URL.reset();
    OwnedText location;
    if (after_scheme(url) != nullptr) {
        location.reset(tovik::_strnew(url));
    } else {
        const OwnedText path(wa_gui_file_path(url));
        if (!path) {
            return;
        }
        location.reset(tovik::_strconcat("file://", path.get()));
    }
    const char* query = nullptr;
    if (tovik::_strchr(url, '?') == nullptr && get_url_arguments(argc, argv, &query) != 0) {
        location.reset(tovik::_strconcat(location.get(), "?", query));
    }
    g_URL = std::move(location);
    wa_trace("URL:", g_URL.get());
}

char* wa_gui_file_path(const char* name)
{
    char brand[kBrandCapacity];
    if (!osGetBrandName(brand, sizeof brand)) {
        return nullptr;
    }
    OwnedText path(new char[kPathCapacity]);
    if (!find_beside_library(path.get(), name) && !find_page_under_root(path.get(), name)
        && !find_in_system(path.get(), brand, name)) {
        return nullptr;
    }
    wa_trace("Path:", path.get());
    return path.release();
}

char* wa_gui_icon_path()
{
    return wa_gui_file_path("logo.ico");
}

int get_url_arguments(int argc, char** argv, const char** query)
{
    for (int i = 0; i < argc; ++i) {
        const char* location = after_scheme(argv[i]);
        if (location != nullptr) {
            const char* mark = tovik::_strchr(location, '?');
            if (mark == nullptr) {
                return 0;
            }
            *query = mark + 1;
            return 1;
        }
    }
    return 0;
}

int wa_get_url_arguments(const char** query)
{
    return get_url_arguments(g_ARGC, g_ARGV, query);
}

OwnedText wa_insert_startup_argument(OwnedText page, const char* query)
{
    const char* quote = tovik::_strchr(tovik::_strstr(page.get(), "STARTUP_ARG"), '"');
    if (quote == nullptr || quote[1] != '"') {
        return page;
    }
    const auto head = static_cast<std::size_t>(quote + 1 - page.get());
    const std::size_t length = tovik::_strlen(page.get());
    const std::size_t queryLength = tovik::_strlen(query);
    OwnedText filled(new char[length + queryLength + 1]);
    tovik::_memcpy(filled.get(), page.get(), head);
    tovik::_memcpy(filled.get() + head, query, queryLength);
    tovik::_memcpy(filled.get() + head + queryLength, page.get() + head, length - head + 1);
    return filled;
}
