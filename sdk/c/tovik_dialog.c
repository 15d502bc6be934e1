#define _POSIX_C_SOURCE 200809L

#include <tovik/dialog.h>

#include <errno.h>
#include <signal.h>
#include <spawn.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

extern char** environ;

#define NAME_LENGTH 256
#define MILLISECONDS_OF_GRACE 2000

/* Makes a new folder for this user alone under `parent`, and the name of a file in it. */
static bool make_place_under(const char* parent, char* folder, char* file)
{
    const int length = snprintf(folder, NAME_LENGTH, "%s/tovik-XXXXXX", parent);
    if (length < 0 || length + 8 > NAME_LENGTH || mkdtemp(folder) == NULL) {
        return false;
    }
    return snprintf(file, NAME_LENGTH, "%s/answer", folder) > 0;
}

static bool make_place(char* folder, char* file)
{
    const char* runtime = getenv("XDG_RUNTIME_DIR");
    return (runtime != NULL && *runtime == '/' && make_place_under(runtime, folder, file))
        || make_place_under("/tmp", folder, file);
}

/* Starts the program in a process group of its own; its standard output, where a host with
 * "--print" repeats the answer, leads nowhere. Returns an error number. */
static int start(pid_t* child, char* const* words)
{
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    int error = posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", 1, 0);
    if (error == 0) {
        error = posix_spawnp(child, words[0], &files, &attributes, words, environ);
    }
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    return error;
}

/* The arguments with "--print" behind the program and "-store" at the end. With the first, a
 * host that knows it waits for a restarted dialog too and takes it along when it is ended. */
static int start_with_options(pid_t* child, const char* const* arguments, const char* file)
{
    size_t count = 0;
    while (arguments[count] != NULL) {
        ++count;
    }
    const char** words = calloc(count + 4, sizeof *words);
    if (words == NULL || count == 0) {
        free(words);
        return ENOMEM;
    }
    words[0] = arguments[0];
    words[1] = "--print";
    memcpy(words + 2, arguments + 1, (count - 1) * sizeof *words);
    words[count + 1] = "-store";
    words[count + 2] = file;
    const int error = start(child, (char* const*)words);
    free(words);
    return error;
}

static long long now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000LL + time.tv_nsec / 1000000;
}

/* Waits for the child until a time in milliseconds, or for ever when that is negative. */
static bool has_ended(pid_t child, long long until)
{
    const struct timespec pause = {0, 10000000};
    for (;;) {
        const pid_t ended = waitpid(child, NULL, until < 0 ? 0 : WNOHANG);
        if (ended == child || (ended < 0 && errno != EINTR)) {
            return true;
        }
        if (until >= 0 && now() >= until) {
            return false;
        }
        if (ended == 0) {
            nanosleep(&pause, NULL);
        }
    }
}

static void end_group(pid_t child)
{
    kill(-child, SIGTERM);
    if (!has_ended(child, now() + MILLISECONDS_OF_GRACE)) {
        kill(-child, SIGKILL);
        has_ended(child, -1);
    }
}

/* The file's text, released with free(); null when it is missing or empty. */
static char* read_answer(const char* name)
{
    FILE* file = fopen(name, "rb");
    char* text = NULL;
    if (file != NULL && fseek(file, 0, SEEK_END) == 0) {
        const long length = ftell(file);
        rewind(file);
        text = length > 0 ? calloc((size_t)length + 1, 1) : NULL;
        if (text != NULL && fread(text, 1, (size_t)length, file) != (size_t)length) {
            free(text);
            text = NULL;
        }
    }
    if (file != NULL) {
        fclose(file);
    }
    return text;
}

static enum tovik_outcome run(
    const char* const* arguments, unsigned int seconds, const char* file, char** answer)
{
    pid_t child = 0;
    if (start_with_options(&child, arguments, file) != 0) {
        return TOVIK_NOT_SHOWN;
    }
    if (!has_ended(child, seconds == 0 ? -1 : now() + seconds * 1000LL)) {
        end_group(child);
        return TOVIK_TIMED_OUT;
    }
    char* text = read_answer(file);
    if (text == NULL) {
        return TOVIK_NOT_SHOWN;
    }
    if (strcmp(text, "CKR_CANCEL") == 0) {
        free(text);
        return TOVIK_CANCELLED;
    }
    *answer = text;
    return TOVIK_ANSWERED;
}

enum tovik_outcome tovik_dialog(const char* const* arguments, unsigned int seconds, char** answer)
{
    char folder[NAME_LENGTH];
    char file[NAME_LENGTH];
    *answer = NULL;
    if (!make_place(folder, file)) {
        return TOVIK_NOT_SHOWN;
    }
    const enum tovik_outcome outcome = run(arguments, seconds, file, answer);
    unlink(file);
    rmdir(folder);
    return outcome;
}
