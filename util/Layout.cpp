#include "util/Layout.h"

#include "util/BoundedPath.h"
#include "util/Codecs.h"
#include "util/MemoryUtil.h"
#include "util/Owned.h"
#include "util/StringUtil.h"

#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::size_t kReadStep = 65536;

/// The longest process id and the terminator.
constexpr std::size_t kIdCapacity = sizeof "2147483647";

/// The brand name, empty until osGetBrandName() derives it.
constinit char g_BrandName[kBrandCapacity] = "";

bool make_empty(char* buffer, std::size_t capacity)
{
    if (buffer == nullptr || capacity == 0) {
        return false;
    }
    buffer[0] = 0;
    return true;
}

/// Cuts the path after its last "/"; false when it holds none.
bool cut_to_directory(char* path)
{
    char* slash = tovik::_strrchr(path, '/');
    if (slash == nullptr) {
        return false;
    }
    slash[1] = 0;
    return true;
}

/// Whether the brand name ends before `text`, a part of the file name of a library.
bool ends_brand(const char* text)
{
    if (*text == 0 || *text == '_' || *text == 'x') {
        return true;
    }
    for (const char* word : {"app", "gui", "setup"}) {
        if (tovik::_strncmp(text, word, tovik::_strlen(word)) == 0) {
            return true;
        }
    }
    return false;
}

void derive_brand_name(char* brand)
{
    char path[kPathCapacity];
    osGetModulePath(path, sizeof path);
    const char* slash = tovik::_strrchr(path, '/');
    const char* name = slash == nullptr ? path : slash + 1;
    if (tovik::_strncmp(name, "lib", 3) == 0) {
        name += 3;
    }
    std::size_t length = 0;
    while (length < kBrandCapacity - 1 && !ends_brand(name + length)) {
        ++length;
    }
    tovik::_strcpy(brand, "tovik");
    if (length > 0) {
        tovik::_strncpy(brand, name, length);
    }
}

/// Appends the name of the plug-in library, lib<brand>.so, to a directory.
void append_library_name(BoundedPath& directory)
{
    char brand[kBrandCapacity];
    osGetBrandName(brand, sizeof brand);
    directory.append("lib").append(brand).append(".so");
}

/// Looks beside the running program, then in the directory "lib" beside its directory "bin".
bool find_library_by_program(char* buffer, std::size_t capacity)
{
    if (!osGetApplicationPath(buffer, capacity) || !cut_to_directory(buffer)
        || tovik::_strlen(buffer) + kLibraryNameRoom >= capacity) {
        return false;
    }
    BoundedPath path = BoundedPath::continuing(buffer, capacity);
    append_library_name(path);
    if (path.exists()) {
        return true;
    }
    char* bin = tovik::_strstr(buffer, "/bin/");
    if (bin == nullptr) {
        return false;
    }
    tovik::_memcpy(bin + 1, "lib", 3);
    return path.exists();
}

/// Copies the first word of this process's command line; false, with nothing written, when it is
/// empty or does not fit.
bool copy_program_word(char* buffer, std::size_t capacity)
{
    char id[kIdCapacity];
    number2string(getpid(), id, sizeof id);
    char path[kPathCapacity];
    BoundedPath(path).append("/proc/").append(id).append("/cmdline");
    unsigned char* data = nullptr;
    const std::size_t read = osReadData(&data, path);
    const std::unique_ptr<unsigned char[]> commandLine(data);
    std::size_t length = 0;
    while (length < read && data[length] != 0 && data[length] != ' ') {
        ++length;
    }
    if (length == 0 || length >= capacity) {
        return false;
    }
    tovik::_memcpy(buffer, data, length);
    buffer[length] = 0;
    return true;
}

/// Replaces a program's bare name by its path in "/usr/bin/" when that exists and fits.
void complete_bare_name(char* name, std::size_t capacity)
{
    char path[kPathCapacity];
    if (tovik::_strchr(name, '/') == nullptr
        && BoundedPath(path).append("/usr/bin/").append(name).exists()
        && tovik::_strlen(path) < capacity) {
        tovik::_strcpy(name, path);
    }
}

} // namespace

constinit FileObserver g_FileObserver = nullptr;

bool osFileExist(const char* path)
{
    if (path == nullptr) {
        return false;
    }
    struct stat status = {};
    const bool exists = stat(path, &status) == 0;
    if (g_FileObserver != nullptr) {
        g_FileObserver(path, exists);
    }
    return exists;
}

std::size_t osReadData(unsigned char** data, const char* path)
{
    *data = nullptr;
    const OwnedFile file(path == nullptr ? nullptr : std::fopen(path, "rb"));
    if (!file) {
        return 0;
    }
    std::unique_ptr<unsigned char[]> bytes;
    std::size_t length = 0;
    std::size_t capacity = 0;
    while (length == capacity) {
        capacity += kReadStep;
        std::unique_ptr<unsigned char[]> larger(new unsigned char[capacity]);
        tovik::_memcpy(larger.get(), bytes.get(), length);
        bytes = std::move(larger);
        length += std::fread(bytes.get() + length, 1, capacity - length, file.get());
    }
    *data = bytes.release();
    return length;
}

bool osTranslatePath(char* path, std::size_t capacity)
{
    char resolved[PATH_MAX];
    if (path == nullptr || realpath(path, resolved) == nullptr
        || tovik::_strlen(resolved) >= capacity || tovik::_strcmp(resolved, path) == 0) {
        return false;
    }
    tovik::_strcpy(path, resolved);
    return true;
}

bool osGetModulePath(char* buffer, std::size_t capacity)
{
    Dl_info module = {};
    if (!make_empty(buffer, capacity)
        || dladdr(reinterpret_cast<const void*>(&osGetModulePath), &module) == 0
        || tovik::_strlen(module.dli_fname) >= capacity) {
        return false;
    }
    tovik::_strcpy(buffer, module.dli_fname);
    osTranslatePath(buffer, capacity);
    return *buffer != 0;
}

bool osGetApplicationPath(char* buffer, std::size_t capacity)
{
    if (!make_empty(buffer, capacity) || !copy_program_word(buffer, capacity)) {
        return false;
    }
    complete_bare_name(buffer, capacity);
    osTranslatePath(buffer, capacity);
    return true;
}

bool osGetModuleRoot(char* buffer, std::size_t capacity)
{
    return osGetModulePath(buffer, capacity) && cut_to_directory(buffer);
}

bool osGetBrandName(char* buffer, std::size_t capacity)
{
    if (!make_empty(buffer, capacity) || capacity < kBrandCapacity) {
        return false;
    }
    if (g_BrandName[0] == 0) {
        derive_brand_name(g_BrandName);
    }
    tovik::_strcpy(buffer, g_BrandName);
    return true;
}

bool osGetLibrary(char* buffer, std::size_t capacity)
{
    constexpr std::size_t kSystemCapacity = sizeof "/usr/lib/libtovik.so";
    if (!make_empty(buffer, capacity) || capacity < kSystemCapacity) {
        return false;
    }
    if (!find_library_by_program(buffer, capacity)) {
        BoundedPath path(buffer, capacity);
        append_library_name(path.append("/usr/lib/"));
        if (!path.exists()) {
            return false;
        }
    }
    osTranslatePath(buffer, capacity);
    return true;
}
