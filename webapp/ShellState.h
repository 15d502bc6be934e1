// ShellState.h: the process-wide variables of the shell, each with its writers. They are null or 0
// before Main runs and are used on its thread alone.
#pragma once

#include "util/Owned.h"

#include <cstdint>

typedef struct _GtkWidget GtkWidget;
typedef struct _WebKitWebView WebKitWebView;

extern WebKitWebView* g_WebView; // wa_create_view: the one web view
extern GtkWidget* g_MainWindow; // wa_gui_show: the one window, null again after its run
extern std::uint32_t g_Size; // wa_gui_show: packed pair, the reference of every later resize
extern OwnedText g_Status; // wa_web_action_Exit: status from the page; Main releases it
extern OwnedText g_Response; // wa_web_action_Exit: response from the page; Main releases it
extern OwnedText g_URL; // wa_translate_url_path: start URL; Main releases it
extern OwnedText g_Content; // wa_translate_url_resource: page as HTML; Main releases it
