// ShellState.h: the process-wide variables of the shell. They are set up for one run of Main per
// process, are null or 0 before it, and are used on its thread alone.
#pragma once

#include "util/Owned.h"

#include <cstdint>

typedef struct _GtkWidget GtkWidget;
typedef struct _WebKitWebView WebKitWebView;

extern WebKitWebView* g_WebView; // wa_gui_start: the one web view
extern GtkWidget* g_MainWindow; // wa_gui_show: the one window
extern std::uint32_t g_Size; // wa_gui_show: packed pair, the reference of every later resize
extern OwnedText g_Status; // wa_web_action_Exit: status from the page; Main releases it
extern OwnedText g_Response; // wa_web_action_Exit: response from the page; Main releases it
extern OwnedText g_URL; // wa_translate_url: start URL; Main releases it
extern OwnedText g_Content; // wa_translate_url: start page as HTML; Main releases it
