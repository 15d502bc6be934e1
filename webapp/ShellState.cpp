#include "webapp/ShellState.h"

constinit WebKitWebView* g_WebView = nullptr;
constinit GtkWidget* g_MainWindow = nullptr;
constinit std::uint32_t g_Size = 0;
constinit OwnedText g_Status;
constinit OwnedText g_Response;
constinit OwnedText g_URL;
constinit OwnedText g_Content;
