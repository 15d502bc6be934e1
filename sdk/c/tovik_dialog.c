#define _GNU_SOURCE

#include <tovik/dialog.h>

#include <ctype.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#define MILLISECONDS_OF_GRACE 2000

/* The options of the program: first those with a value, then the flags. */
static const char* const kValued[] = {"-url", "-root", "-store", "-title", "-icon", "-size",
    "-position", "-useragent", "-wait", "-plugin", "-config", "--parent", NULL};
static const char* const kFlags[] = {"-fullscreen", "-resizing", "-system", "-verbose", "--print",
    "--console", "--inspect", "--help", "--version", NULL};

/* Whether the word is one of these options, perhaps with a value of its own after "=". */
static bool is_one_of(const char* word, const char* const* names)
{
    const size_t length = strcspn(word, "=");
    while (*names != NULL && (strncmp(word, *names, length) != 0 || (*names)[length] != '\0')) {
        ++names;
    }
    return *names != NULL;
}

/* Whether the value of an option is an option itself: the program would read it as one. */
static bool has_option_as_value(const char* const* words)
{
    for (; words[0] != NULL && words[1] != NULL; ++words) {
        if (is_one_of(words[0], kValued)
            && (is_one_of(words[1], kValued) || is_one_of(words[1], kFlags))) {
            return true;
        }
    }
    return false;
}

/* Starts the program in a process group of its own with `output` as its standard output. Returns
 * an error number. */
static int start(pid_t* child, char* const* words, int output)
{
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    int error = posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    if (error == 0) {
        error = posix_spawnp(child, words[0], &files, &attributes, words, environ);
    }
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    return error;
}

/* Starts the program with "--print" as its first argument and a pipe as its standard output.
 * Returns the end of the pipe to read from, or -1. */
static int start_printing(pid_t* child, const char* const* arguments)
{
    size_t count = 0;
    while (arguments[count] != NULL) {
        ++count;
    }
    int ends[2];
    const char** words = calloc(count + 2, sizeof *words);
    if (words == NULL || count == 0 || has_option_as_value(arguments)
        || pipe2(ends, O_CLOEXEC) != 0) {
        free(words);
        return -1;
    }
    words[0] = arguments[0];
    words[1] = "--print";
    memcpy(words + 2, arguments + 1, (count - 1) * sizeof *words);
    const int error = start(child, (char* const*)words, ends[1]);
    free(words);
    close(ends[1]);
    if (error != 0) {
        close(ends[0]);
        return -1;
    }
    return ends[0];
}

static long long now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000LL + time.tv_nsec / 1000000;
}

/* Waits for the child until a time in milliseconds, or for ever when that is negative; false when
 * it has not ended by then. */
static bool has_ended(pid_t child, long long until, int* status)
{
    const struct timespec pause = {0, 10000000};
    for (;;) {
        const pid_t ended = waitpid(child, status, until < 0 ? 0 : WNOHANG);
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
    int status = 0;
    kill(-child, SIGTERM);
    if (!has_ended(child, now() + MILLISECONDS_OF_GRACE, &status)) {
        kill(-child, SIGKILL);
        has_ended(child, -1, &status);
    }
}

/* Waits until there is something to read or the pipe has ended; false at the same time limit. */
static bool is_readable(int source, long long until)
{
    struct pollfd entry = {source, POLLIN, 0};
    for (;;) {
        const long long left = until - now();
        const int bounded = left < 0 ? 0 : left > INT_MAX ? INT_MAX : (int)left;
        const int ready = poll(&entry, 1, until < 0 ? -1 : bounded);
        if (ready > 0) {
            return true;
        }
        if (until >= 0 && now() >= until) {
            return false;
        }
    }
}

/* Reads the pipe to its end; released with free(). Null when the end does not come until the same
 * time, or when memory runs out. */
static char* read_text(int source, long long until)
{
    size_t length = 0;
    size_t room = 4096;
    char* text = malloc(room);
    while (text != NULL && is_readable(source, until)) {
        const ssize_t part = read(source, text + length, room - length - 1);
        if (part == 0) {
            text[length] = '\0';
            return text;
        }
        length += part < 0 ? 0 : (size_t)part;
        if (length + 1 == room) {
            char* larger = realloc(text, room *= 2);
            if (larger == NULL) {
                break;
            }
            text = larger;
        }
    }
    free(text);
    return NULL;
}

/* What a text and an exit status of "--print" mean; the text loses its line end. */
static enum tovik_outcome outcome_of(char* text, int status)
{
    if (WIFEXITED(status) && WEXITSTATUS(status) == 4) {
        return TOVIK_CRASHED;
    }
    const size_t length = strlen(text);
    if (length < 2 || text[length - 1] != '\n' || !WIFEXITED(status)) {
        return TOVIK_NOT_SHOWN;
    }
    text[length - 1] = '\0';
    if (WEXITSTATUS(status) == 1 && strcmp(text, "CKR_CANCEL") == 0) {
        return TOVIK_CANCELLED;
    }
    return WEXITSTATUS(status) == 0 ? TOVIK_ANSWERED : TOVIK_NOT_SHOWN;
}

enum tovik_outcome tovik_dialog(const char* const* arguments, unsigned int seconds, char** answer)
{
    *answer = NULL;
    pid_t child = 0;
    int status = 0;
    const long long until = seconds == 0 ? -1 : now() + seconds * 1000LL;
    const int source = start_printing(&child, arguments);
    if (source < 0) {
        return TOVIK_NOT_SHOWN;
    }
    char* text = read_text(source, until);
    enum tovik_outcome outcome = TOVIK_TIMED_OUT;
    if (text != NULL && has_ended(child, until, &status)) {
        outcome = outcome_of(text, status);
    } else {
        end_group(child);
    }
    close(source);
    if (outcome == TOVIK_ANSWERED) {
        *answer = text;
    } else {
        free(text);
    }
    return outcome;
}

/* Appends the text with all but letters and digits as "%XX"; returns the end. */
static char* append_encoded(char* end, const char* text)
{
    for (; *text != '\0'; ++text) {
        const unsigned char byte = (unsigned char)*text;
        end += sprintf(end, isalnum(byte) && byte < 128 ? "%c" : "%%%02X", byte);
    }
    return end;
}

char* tovik_query(const char* const* pairs)
{
    size_t room = sizeof "query://";
    for (const char* const* text = pairs; *text != NULL; ++text) {
        room += 3 * strlen(*text) + 1;
    }
    char* const word = malloc(room);
    if (word == NULL) {
        return NULL;
    }
    char* end = strcpy(word, "query://") + strlen("query://");
    for (size_t i = 0; pairs[i] != NULL; ++i) {
        *end++ = i == 0 ? '?' : i % 2 == 0 ? '&' : '=';
        end = append_encoded(end, pairs[i]);
    }
    *end = '\0';
    return word;
}
