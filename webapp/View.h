// View.h: the web view: its context, settings, user agent and start page, and its answers to
// untrusted certificates and requests for credentials.
#pragma once

#include <webkit2/webkit2.h>

/// Creates the web view, with settings and signal handlers, and keeps it in g_WebView.
/// context    the default context of WebKit, which is set to ignore TLS errors
/// userAgent  as for wa_update_useragent()
void wa_create_view(WebKitWebContext* context, const char* userAgent);

/// Allows scripts, and clipboard and file access to them, and sets the user agent.
void wa_update_settings(WebKitWebView* view, const char* userAgent);

/// Sets the user agent to `userAgent` or, when that is null or empty, to wa_plugin_user_agent().
/// The user agent of WebKit stays when WebKit refuses the text or there is none.
void wa_update_useragent(WebKitSettings* settings, const char* userAgent);

/// Loads the start page into the view: g_Content as a local document, or else g_URL.
void wa_open_view();

/// wa_open_view() for a view that may show the start page already, with another fragment: loads it
/// again instead of scrolling to an anchor. Returns at once.
void wa_open_view_again();

/// Handler of "load-failed-with-tls-errors": accepts the certificate for the host and port of the
/// failing URI and loads the start page again. TRUE when it did; FALSE leaves the failure to
/// WebKit.
gboolean wa_web_load_failed_tls_cb(WebKitWebView* view, char* failingUri,
    GTlsCertificate* certificate, GTlsCertificateFlags errors, void* data) noexcept;

/// Handler of "authenticate": always TRUE, so that WebKit asks the user for no credentials. None
/// are supplied.
gboolean wa_web_authenticate_cb(
    WebKitWebView* view, WebKitAuthenticationRequest* request, void* data) noexcept;
