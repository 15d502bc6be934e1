// Options.h: all options in one table, and what a run reads from it. Knows no GTK. The host, which
// links to no room, uses the table alone.
#pragma once

#include "webapp/Geometry.h"

#include <string_view>

/// What the value of an option is.
enum class OptionKind : char {
    flag, // no value
    number, // read by string2number()
    text // used as it is
};

/// Where an option is read.
enum class OptionScope : char {
    run, // on the command line and, without "-url" there, among the plug-in's default options
    commandLine, // on the command line alone
    host // on the command line of the host; the library passes over it
};

/// One row of the table.
struct Option {
    const char* name; // with its hyphens
    OptionKind kind; // of its value
    OptionScope scope; // where it is read
    const char* value; // what the help calls the value; empty for a flag
    const char* fallback; // value when the option is absent; null for none
    const char* help; // lines separated by line ends
};

/// The options, in the order of the help.
inline constexpr Option kOptions[] = {
    {"-url", OptionKind::text, OptionScope::run, "PAGE", "index.html",
        "page to show: a file of the user interface, a URL, or res://PATH\n"
        "for a page of the plug-in"},
    {"-root", OptionKind::text, OptionScope::commandLine, "DIR/", nullptr,
        "where else files and plug-in are looked for: an absolute path that\n"
        "ends with \"/\". It must hold this library too, or pages have no\n"
        "plug-in"},
    {"-store", OptionKind::text, OptionScope::run, "FILE", nullptr,
        "write the answer to FILE when the window is gone"},
    {"-title", OptionKind::text, OptionScope::run, "TEXT", "Tovik", "window title"},
    {"-icon", OptionKind::text, OptionScope::run, "FILE", nullptr,
        "window icon, or \"none\"; without the option logo.ico, if it is found"},
    {"-size", OptionKind::number, OptionScope::run, "PAIR", nullptr,
        "0xWWWWHHHH, width and height in pixels, or percentages up to 100;\n"
        "without the option 320 and 512 pixels"},
    {"-position", OptionKind::number, OptionScope::run, "PAIR", nullptr,
        "0xXXXXYYYY, distance from the left and top edge, or with the top bit\n"
        "of a half set from the right or bottom one"},
    {"-fullscreen", OptionKind::flag, OptionScope::run, "", nullptr, "fill the work area"},
    {"-resizing", OptionKind::flag, OptionScope::run, "", nullptr,
        "let the user resize the window"},
    {"-system", OptionKind::flag, OptionScope::run, "", nullptr, "stay above other windows"},
    {"-useragent", OptionKind::text, OptionScope::run, "TEXT", nullptr, "user agent to present"},
    {"-wait", OptionKind::number, OptionScope::run, "MS", "3", "pause before the window is shown"},
    {"-plugin", OptionKind::text, OptionScope::commandLine, "FILE", nullptr, "plug-in library"},
    {"-config", OptionKind::text, OptionScope::commandLine, "FILE", nullptr,
        "configuration file for the plug-in"},
    {"-verbose", OptionKind::flag, OptionScope::commandLine, "", nullptr,
        "trace to standard output, with --print to standard error"},
    {"--print", OptionKind::flag, OptionScope::host, "", nullptr,
        "print the answer and a line end on standard output"},
    {"--parent", OptionKind::text, OptionScope::host, "HANDLE", nullptr,
        "show the dialog above a window of another program: x11:0xNUMBER,\n"
        "wayland:TOKEN, or the number of an X window"},
    {"--console", OptionKind::flag, OptionScope::host, "", nullptr,
        "what goes wrong in the page, and its console, on standard error"},
    {"--inspect", OptionKind::flag, OptionScope::host, "[=PORT]", nullptr,
        "let a browser on this machine inspect the page; prints the URL"},
    {"--help", OptionKind::flag, OptionScope::host, "", nullptr, "show this text"},
    {"--version", OptionKind::flag, OptionScope::host, "", nullptr, "show the version"},
};

/// The option of this name. A name that is not in the table does not compile, because the search
/// runs past its end.
consteval const Option& option(std::string_view name)
{
    const Option* candidate = kOptions;
    while (candidate->name != name) {
        ++candidate;
    }
    return *candidate;
}

/// The values of the options. A text points into the arguments or at a default of the table. It is
/// null when the option is absent and has no default, and empty when its value is missing.
struct ShellOptions {
    const char* url; // "-url"
    const char* userAgent; // "-useragent"
    const char* icon; // "-icon"
    const char* title; // "-title"
    const char* store; // "-store"
    unsigned int wait; // "-wait", in milliseconds
    WindowRectOptions rect; // "-size", "-fullscreen" and "-position"
    bool resizing; // "-resizing"
    bool system; // "-system"
};

/// Reads the options of an argument vector by the lookups of util/Arguments.h.
ShellOptions read_options(int count, char** list);
