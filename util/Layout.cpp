#include "util/Layout.h"

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

constexpr std::size_t kBrandCapacity = 6;
constexpr std::size_t kReadStep = 65536;

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

/// Cuts the path behind its last "/"; false when it holds none.
bool cut_to_directory(char* path)
{
    char* slash = tovik::_strrchr(path, '/');
    if (slash == nullptr) {
        return false;
    }
    slash[1] = 0;
    return true;
}

/// Whether the brand name ends before `text`, within a library's file name.
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

/// Appends "lib", the brand name and ".so", at most 11 characters, to the directory in `path`.
void append_library_name(char* path)
{
    tovik::_strcat(path, "lib");
    osGetBrandName(path + tovik::_strlen(path), 8);
    tovik::_strcat(path, ".so");
}

/// Looks beside the running program, then in the "lib" directory that goes with its "bin".
bool find_library_by_program(char* buffer, std::size_t capacity)
{
    if (!osGetApplicationPath(buffer, capacity) || !cut_to_directory(buffer)
        || tovik::_strlen(buffer) + 14 >= capacity) {
        return false;
    }
    append_library_name(buffer);
    if (osFileExist(buffer)) {
        return true;
    }
    char* bin = tovik::_strstr(buffer, "/bin/");
    if (bin == nullptr) {
        return false;
    }
    tovik::_memcpy(bin + 1, "lib", 3);
    return osFileExist(buffer);
}

} // namespace

bool osFileExist(const char* path)
{
    struct stat status = {};
    return path != nullptr && stat(path, &status) == 0;
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
    if (!make_empty(buffer, capacity)) {
        return false;
    }
    char scratch[kPathCapacity] = "/proc/";
    number2string(getpid(), scratch + tovik::_strlen(scratch), 16);
    tovik::_strcat(scratch, "/cmdline");
    unsigned char* data = nullptr;
    const std::size_t read = osReadData(&data, scratch);
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
    if (tovik::_strchr(buffer, '/') == nullptr && length <= 250) {
        tovik::_strcpy(scratch, "/usr/bin/");
        tovik::_strcat(scratch, buffer);
        if (osFileExist(scratch) && tovik::_strlen(scratch) < capacity) {
            tovik::_strcpy(buffer, scratch);
        }
    }
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
        tovik::_strcpy(buffer, "/usr/lib/");
        append_library_name(buffer);
        if (!osFileExist(buffer)) {
            return false;
        }
    }
    osTranslatePath(buffer, capacity);
    return true;
}
