#include "host/Answer.h"

#include "host/DialogProcess.h"
#include "host/Library.h"
#include "util/Owned.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The words of a command line, which belong to the caller of main(), in a list of our own.
using OwnedWords = std::unique_ptr<char*[], ReleaseWith<std::free>>;

constexpr int kNoAnswer = 1;
/// Exit status with which GTK ends a program that has lost its display.
constexpr int kLostDisplay = 1;
constexpr char kCancel[] = "CKR_CANCEL";

/// Option with the id of the process that prints the answer, for a dialog and the programs that it
/// restarts.
constinit char g_Printer[] = "--printed-by";
constinit char g_Store[] = "-store";

char** find_word(char** first, char** end, const char* name)
{
    return std::find_if(first, end, [=](const char* word) { return !std::strcmp(word, name); });
}

/// Empties the file of "-store", so that an older answer is not printed as that of this run. A
/// missing file stays missing. False, with a line on standard error, for a file that is not regular
/// or cannot be written.
bool empty_file(const char* file)
{
    struct stat status = {};
    if (stat(file, &status) != 0) {
        return true;
    }
    if (!S_ISREG(status.st_mode)) {
        std::fprintf(stderr, "tovik: %s is no regular file; correct -store\n", file);
        return false;
    }
    if (truncate(file, 0) != 0) {
        std::fprintf(stderr, "tovik: cannot write %s: %s\n", file, std::strerror(errno));
        return false;
    }
    return true;
}

/// Writes the content of the open file and a line end to standard output; false, with errno set,
/// when not all of it could be written.
bool copy_to_output(int file)
{
    char part[65536];
    ssize_t length = 0;
    while ((length = read(file, part, sizeof part)) > 0) {
        for (ssize_t done = 0, written = 0; done < length; done += written) {
            written = write(STDOUT_FILENO, part + done, static_cast<std::size_t>(length - done));
            if (written < 0) {
                return false;
            }
        }
    }
    return length == 0 && write(STDOUT_FILENO, "\n", 1) == 1;
}

/// Offset of the end of standard output if that is a regular file, written at its end and not in
/// append mode, which could be shared; else -1.
off_t end_of_output()
{
    struct stat status = {};
    const off_t end = lseek(STDOUT_FILENO, 0, SEEK_CUR);
    const bool grows = fstat(STDOUT_FILENO, &status) == 0 && S_ISREG(status.st_mode)
        && status.st_size == end && (fcntl(STDOUT_FILENO, F_GETFL) & O_APPEND) == 0;
    return grows ? end : -1;
}

/// Whether the open file holds an answer: a regular file that is not empty.
bool holds_answer(int file)
{
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
}

bool is_cancelled(int file)
{
    char begin[sizeof kCancel] = "";
    return pread(file, begin, sizeof begin, 0) == sizeof kCancel - 1
        && std::memcmp(begin, kCancel, sizeof kCancel - 1) == 0;
}

/// Copies the whole file to standard output. False, with a line on standard error, when that
/// fails; a file that only this process extends then ends where it ended before.
bool print_whole(int file)
{
    // A file that reaches its limit is a failed write.
    std::signal(SIGXFSZ, SIG_IGN);
    const off_t start = end_of_output();
    if (copy_to_output(file)) {
        return true;
    }
    std::fprintf(stderr, "tovik: cannot print the answer: %s\n", std::strerror(errno));
    if (start >= 0 && ftruncate(STDOUT_FILENO, start) != 0) {
        std::fprintf(stderr, "tovik: a part of the answer stays: %s\n", std::strerror(errno));
    }
    return false;
}

/// Prints the answer of a dialog that has ended with this exit status, 0 or kWebProcessEnded, and
/// returns the exit status of the host.
int print_answer_of(const char* path, int status)
{
    const OwnedDescriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file || !holds_answer(file.get())) {
        std::fprintf(stderr, "tovik: the dialog ended without an answer\n");
        return kNoAnswer;
    }
    if (status == kWebProcessEnded && is_cancelled(file.get())) {
        return kWebProcessEnded;
    }
    return print_whole(file.get()) && !is_cancelled(file.get()) ? 0 : kNoAnswer;
}

/// Prints why the dialog has failed if it cannot do so itself; returns the exit status.
int report_failure(DialogEnd end)
{
    if (end.killed != 0) {
        std::fprintf(stderr, "tovik: the dialog was killed: %s\n", strsignal(end.killed));
        return kNoAnswer;
    }
    if (end.status == kLostDisplay) {
        std::fprintf(stderr, "tovik: the dialog has failed; its display may be lost\n");
    }
    return end.status;
}

/// Runs the dialog, prints the answer that it leaves in `file` and returns the exit status. The
/// file of a dialog that did not end well is emptied.
int run_and_print(char* file, int argc, char** argv, DialogMain dialog)
{
    const DialogEnd end = run_dialog(argc, argv, file, dialog);
    if (end.request == 0 && end.killed == 0
        && (end.status == 0 || end.status == kWebProcessEnded)) {
        return print_answer_of(file, end.status);
    }
    empty_file(file);
    if (end.request == 0) {
        return report_failure(end);
    }
    end_by(end.request);
    std::fprintf(stderr, "tovik: nobody reads the answer\n");
    return kNoAnswer;
}

/// Prepares the file of the answer: that of the first "-store", or else one in memory, for which
/// "-store" and a path are appended to the words. Returns its path; null, with a line on standard
/// error, when there is none.
/// memory  receives the path of the file in memory
char* prepare_file(char** words, char**& end, char (&memory)[64])
{
    char** const store = find_word(words, end, g_Store);
    if (store != end) {
        if (store[1] == nullptr || *store[1] == '-' || *store[1] == 0) {
            std::fprintf(stderr, "tovik: --print needs the name of a file after -store\n");
            return nullptr;
        }
        return empty_file(store[1]) ? store[1] : nullptr;
    }
    const int descriptor = memfd_create("answer", MFD_CLOEXEC);
    if (descriptor < 0) {
        std::fprintf(stderr, "tovik: no memory for the answer: %s\n", std::strerror(errno));
        return nullptr;
    }
    // The path names this process, so that a restarted program reaches the file too.
    std::snprintf(memory, sizeof memory, "/proc/%d/fd/%d", getpid(), descriptor);
    *end++ = g_Store;
    *end++ = memory;
    return memory;
}

} // namespace

int print_answer(int argc, char** argv, DialogMain dialog)
{
    const std::size_t room = static_cast<std::size_t>(argc) + 5;
    const OwnedWords words(static_cast<char**>(std::calloc(room, sizeof(char*))));
    if (!words) {
        return kNoAnswer;
    }
    char** end = std::remove_copy_if(argv, argv + argc, words.get(),
        [](const char* word) { return !std::strcmp(word, "--print"); });
    char memory[64];
    char* file = prepare_file(words.get(), end, memory);
    char process[16];
    std::snprintf(process, sizeof process, "%d", getpid());
    *end++ = g_Printer;
    *end++ = process;
    const int count = static_cast<int>(end - words.get());
    return file == nullptr ? kNoAnswer : run_and_print(file, count, words.get(), dialog);
}

int printing_process(int argc, char** argv)
{
    char** const end = argv + argc;
    char** const printer = find_word(argv, end, g_Printer);
    return printer == end || printer[1] == nullptr ? 0 : std::atoi(printer[1]);
}
