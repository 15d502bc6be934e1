// StartPage.h: turns the page name of "-url" into g_URL or g_Content, which the view loads, and
// finds the files of the user interface.
#pragma once

#include "util/Owned.h"

/// Resolves the page name `url` against an argument vector. "res://" and a path names a page of the
/// plug-in, kept in g_Content. Any other name with "://" is a URL and all others are files of the
/// user interface, both kept in g_URL. The variable of a page that is not found is null.
void wa_translate_url(int argc, char** argv, const char* url);

/// wa_translate_url() for a page of the plug-in; writes the URL query of the arguments into it.
void wa_translate_url_resource(int argc, char** argv, const char* url);

/// wa_translate_url() for URLs and files; a `url` without "?" gets the URL query of the arguments.
void wa_translate_url_path(int argc, char** argv, const char* url);

/// Path of the first file `name` that exists beside this library, under "-root" (its value directly
/// followed by `name`), or in "/etc/<brand>/": a new array owned by the caller, or null.
char* wa_gui_file_path(const char* name);

/// wa_gui_file_path() of the window icon, "logo.ico".
char* wa_gui_icon_path();

/// Finds the first argument that contains "://". Points `*query` at the text after the next "?" in
/// it and returns 1; returns 0, with `*query` unchanged, without such an argument or "?".
int get_url_arguments(int argc, char** argv, const char** query);

/// get_url_arguments() over the process arguments.
int wa_get_url_arguments(const char** query);

/// Writes `query`, as it is, between the quotes of the empty literal after the first "STARTUP_ARG"
/// of the page. Returns a page without that mark, or with another literal first, unchanged.
OwnedText wa_insert_startup_argument(OwnedText page, const char* query);
