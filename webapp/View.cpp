#include "webapp/View.h"

#include "bridge/WebBridge.h"
#include "process/Trace.h"
#include "util/StringUtil.h"
#include "util/Utility.h"
#include "webapp/OwnedObject.h"
#include "webapp/PageActions.h"
#include "webapp/ShellState.h"

namespace {

using OwnedVariant = std::unique_ptr<GVariant, ReleaseWith<g_variant_unref>>;

/// Sets the address of the page to `start` when the two differ in the fragment alone. Loading an
/// address that differs in the fragment alone would scroll to an anchor and load nothing.
constexpr char kTakeStartAddress[] = "const page = url => url.split('#')[0];"
                                     "const address = new URL(start).href;"
                                     "if (page(address) === page(location.href)) {"
                                     "    history.replaceState(null, '', address);"
                                     "}";

/// Loads the start page, whether the script has succeeded or not.
void address_taken_cb(GObject* view, GAsyncResult* result, void*) noexcept
{
    GError* error = nullptr;
    const OwnedObject<JSCValue> value(webkit_web_view_call_async_javascript_function_finish(
        WEBKIT_WEB_VIEW(view), result, &error));
    const OwnedError dropped(error);
    wa_open_view();
}

} // namespace

void wa_create_view(WebKitWebContext* context, const char* userAgent)
{
    g_signal_connect(
        context, "initialize-web-extensions", G_CALLBACK(wa_web_init_web_extension_cb), nullptr);
    webkit_website_data_manager_set_tls_errors_policy(
        webkit_web_context_get_website_data_manager(context), WEBKIT_TLS_ERRORS_POLICY_IGNORE);
    g_WebView = WEBKIT_WEB_VIEW(webkit_web_view_new_with_context(context));
    wa_update_settings(g_WebView, userAgent);
    g_signal_connect(g_WebView, "decide-policy", G_CALLBACK(wa_web_decide_policy_cb), nullptr);
    g_signal_connect(
        g_WebView, "load-failed-with-tls-errors", G_CALLBACK(wa_web_load_failed_tls_cb), nullptr);
    g_signal_connect(g_WebView, "authenticate", G_CALLBACK(wa_web_authenticate_cb), nullptr);
}

void wa_update_settings(WebKitWebView* view, const char* userAgent)
{
    const OwnedObject<WebKitSettings> settings(webkit_settings_new());
    if (!settings) {
        return;
    }
    webkit_settings_set_enable_javascript(settings.get(), TRUE);
    webkit_settings_set_javascript_can_access_clipboard(settings.get(), TRUE);
    webkit_settings_set_allow_file_access_from_file_urls(settings.get(), TRUE);
    webkit_settings_set_allow_universal_access_from_file_urls(settings.get(), TRUE);
    wa_update_useragent(settings.get(), userAgent);
    webkit_web_view_set_settings(view, settings.get());
}

void wa_update_useragent(WebKitSettings* settings, const char* userAgent)
{
    OwnedText combined;
    if (tovik::_strlen(userAgent) == 0) {
        combined.reset(wa_plugin_user_agent(webkit_settings_get_user_agent(settings)));
        userAgent = combined.get();
    }
    // For a text that it refuses, WebKit writes a message and keeps its own.
    if (userAgent == nullptr || wa_user_agent_fault(userAgent) != nullptr) {
        return;
    }
    wa_trace("UserAgent:", userAgent);
    webkit_settings_set_user_agent(settings, userAgent);
}

void wa_open_view()
{
    if (g_Content) {
        webkit_web_view_load_html(g_WebView, g_Content.get(), "file://");
    } else if (g_URL) {
        webkit_web_view_load_uri(g_WebView, g_URL.get());
    }
}

void wa_open_view_again()
{
    const bool anchored = !g_Content && tovik::_strchr(g_URL.get(), '#') != nullptr;
    if (!anchored || g_utf8_validate(g_URL.get(), -1, nullptr) == FALSE) {
        wa_open_view();
        return;
    }
    const OwnedVariant arguments(
        g_variant_ref_sink(g_variant_new_parsed("{'start': <%s>}", g_URL.get())));
    // In a script world of its own, where the page cannot replace the functions that the script
    // calls.
    webkit_web_view_call_async_javascript_function(g_WebView, kTakeStartAddress, -1,
        arguments.get(), "tovik", nullptr, nullptr, address_taken_cb, nullptr);
}

gboolean wa_web_load_failed_tls_cb(WebKitWebView* view, char* failingUri,
    GTlsCertificate* certificate, GTlsCertificateFlags, void*) noexcept
{
    WebKitWebContext* context = webkit_web_view_get_context(view);
    const char* host = after_scheme(failingUri);
    if (context == nullptr || host == nullptr) {
        return FALSE;
    }
    const OwnedText name(tovik::_strnew(host));
    char* slash = tovik::_strchr(name.get(), '/');
    if (slash != nullptr) {
        *slash = 0;
    }
    webkit_web_context_allow_tls_certificate_for_host(context, certificate, name.get());
    wa_open_view();
    return TRUE;
}

gboolean wa_web_authenticate_cb(WebKitWebView*, WebKitAuthenticationRequest*, void*) noexcept
{
    return TRUE;
}
