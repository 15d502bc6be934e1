// StartPage.h: turns the page name of "-url" into what the view loads, g_URL or g_Content, and
// finds the files of the user interface.
#pragma once

#include "util/Owned.h"

/// Resolves the page name `url` against an argument vector. "res://" and a path is a page from the
/// plug-in, left in g_Content; any other name holding "://" is a URL, and the rest are files of
/// the user interface, both left in g_URL. What cannot be found leaves its variable null.
void wa_translate_url(int argc, char** argv, const char* url);

/// The resource branch of wa_translate_url(): the plug-in's page with the URL query of the
/// arguments written into it.
void wa_translate_url_resource(int argc, char** argv, const char* url);

/// The URL and file branch: a `url` without "?" is given the URL query of the arguments.
void wa_translate_url_path(int argc, char** argv, const char* url);

/// Path of an existing user-interface file, a new array owned by the caller, or null: beside this
/// library, under "-root" (its value directly followed by `name`), or in "/etc/<brand>/".
char* wa_gui_file_path(const char* name);

/// wa_gui_file_path() of the window icon, "logo.ico".
char* wa_gui_icon_path();

/// Points `*query` at the text behind the "?" of the first argument that contains "://" and
/// returns 1; 0, with `*query` as it was, when that argument has none or there is no such one.
int get_url_arguments(int argc, char** argv, const char** query);

/// get_url_arguments() over the process arguments.
int wa_get_url_arguments(const char** query);

/// Writes `query` as it is between the two double quotes that follow the first "STARTUP_ARG" of
/// the page. A page without that mark, or with another literal behind it, is returned unchanged.
OwnedText wa_insert_startup_argument(OwnedText page, const char* query);
