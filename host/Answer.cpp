#include "host/Answer.h"

#include "host/DialogProcess.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kNoAnswer = 1;
constexpr char kCancel[] = "CKR_CANCEL";

struct PrivateFile {
    char directory[PATH_MAX];
    char file[PATH_MAX + 8];
};

bool make_directory_under(const char* parent, PrivateFile& place)
{
    const int length
        = std::snprintf(place.directory, sizeof place.directory, "%s/tovik-XXXXXX", parent);
    return length > 0 && length < static_cast<int>(sizeof place.directory)
        && mkdtemp(place.directory) != nullptr;
}

bool make_private_file(PrivateFile& place)
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime == nullptr || *runtime != '/' || !make_directory_under(runtime, place)) {
        if (!make_directory_under("/tmp", place)) {
            std::fprintf(stderr, "tovik: no private directory in /tmp: %s\n", std::strerror(errno));
            return false;
        }
    }
    std::snprintf(place.file, sizeof place.file, "%s/answer", place.directory);
    return true;
}

/// Empties the file of "-store": an older answer is not the answer of this run.
bool empty_chosen_file(const char* store)
{
    if (store == nullptr || *store == '-' || *store == 0) {
        std::fprintf(stderr, "tovik: --print needs the name of a file behind -store\n");
        return false;
    }
    struct stat status = {};
    if (stat(store, &status) == 0 && S_ISREG(status.st_mode) && truncate(store, 0) != 0) {
        std::fprintf(stderr, "tovik: cannot write %s: %s\n", store, std::strerror(errno));
        return false;
    }
    return true;
}

/// Copies the answer to standard output and returns the exit status.
int print_file(const char* path)
{
    FILE* file = std::fopen(path, "rb");
    char part[4096];
    std::size_t total = 0;
    bool cancelled = false;
    for (std::size_t length = 0;
         file != nullptr && (length = std::fread(part, 1, sizeof part, file)) > 0;
         total += length) {
        cancelled
            = total == 0 && length == sizeof kCancel - 1 && std::memcmp(part, kCancel, length) == 0;
        std::fwrite(part, 1, length, stdout);
    }
    if (file != nullptr) {
        std::fclose(file);
    }
    if (total == 0) {
        std::fprintf(stderr, "tovik: the dialog ended without an answer\n");
        return kNoAnswer;
    }
    std::putchar('\n');
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        std::fprintf(stderr, "tovik: cannot print the answer: %s\n", std::strerror(errno));
        return kNoAnswer;
    }
    return cancelled ? kNoAnswer : 0;
}

/// Runs the dialog with "-store" and the file behind its arguments.
DialogEnd run_with_store(int argc, char** argv, char* file, Dialog dialog)
{
    const auto count = static_cast<std::size_t>(argc);
    char option[] = "-store";
    auto** arguments = static_cast<char**>(std::calloc(count + 3, sizeof(char*)));
    if (arguments == nullptr) {
        return {0, 0};
    }
    std::copy(argv, argv + argc, arguments);
    arguments[count] = option;
    arguments[count + 1] = file;
    const DialogEnd end = run_dialog(argc + 2, arguments, file, dialog);
    std::free(arguments);
    return end;
}

/// Reports how the dialog ended: by its exit status, or with its answer.
int report(DialogEnd end, const char* file)
{
    return end.status != 0 || end.signal != 0 ? end.status : print_file(file);
}

int print_chosen_answer(int argc, char** argv, const char* store, Dialog dialog)
{
    if (!empty_chosen_file(store)) {
        return kNoAnswer;
    }
    const DialogEnd end = run_dialog(argc, argv, store, dialog);
    const int status = report(end, store);
    raise_again(end.signal);
    return status;
}

int print_private_answer(int argc, char** argv, Dialog dialog)
{
    PrivateFile place = {};
    if (!make_private_file(place)) {
        return kNoAnswer;
    }
    const DialogEnd end = run_with_store(argc, argv, place.file, dialog);
    const int status = report(end, place.file);
    unlink(place.file);
    rmdir(place.directory);
    raise_again(end.signal);
    return status;
}

} // namespace

bool take_print_option(int& argc, char** argv)
{
    char** end = std::remove_if(
        argv, argv + argc, [](char* word) { return !std::strcmp(word, "--print"); });
    const bool found = end != argv + argc;
    argc = static_cast<int>(end - argv);
    argv[argc] = nullptr;
    return found;
}

int print_answer(int argc, char** argv, Dialog dialog)
{
    char** const end = argv + argc;
    char** const store
        = std::find_if(argv, end, [](char* word) { return !std::strcmp(word, "-store"); });
    return store == end ? print_private_answer(argc, argv, dialog)
                        : print_chosen_answer(argc, argv, store[1], dialog);
}
