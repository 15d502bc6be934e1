// ReplyWindow.cpp: the reference of calls across processes: a plain window whose page may send the
// script message "bench" and receives a reply from this process.
#include "PageWindow.h"

#include <cstdio>

namespace {

/// Replies with the message itself. TRUE: the message is handled.
gboolean message_cb(
    WebKitUserContentManager*, JSCValue* message, WebKitScriptMessageReply* reply, void*) noexcept
{
    webkit_script_message_reply_return_value(reply, message);
    return TRUE;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s URL\n", argv[0]);
        return 2;
    }
    gtk_init(nullptr, nullptr);
    GtkWidget* view = webkit_web_view_new();
    WebKitUserContentManager* manager
        = webkit_web_view_get_user_content_manager(WEBKIT_WEB_VIEW(view));
    g_signal_connect(
        manager, "script-message-with-reply-received::bench", G_CALLBACK(message_cb), nullptr);
    webkit_user_content_manager_register_script_message_handler_with_reply(
        manager, "bench", nullptr);
    run_page_window(WEBKIT_WEB_VIEW(view), argv[1]);
    return 0;
}
