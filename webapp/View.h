// View.h: the web view: its context, settings and user agent, the start page in it, and what it
// does with untrusted certificates and requests for credentials.
#pragma once

#include <webkit2/webkit2.h>

/// Creates the web view, with settings and signal handlers, and keeps it in g_WebView.
/// context    WebKit's default context, which is set to ignore TLS errors
/// userAgent  the user agent to present; null or empty for the plug-in's part before WebKit's own
void wa_create_view(WebKitWebContext* context, const char* userAgent);

/// Gives the view its settings: scripts on, clipboard and file access open, and the user agent.
void wa_update_settings(WebKitWebView* view, const char* userAgent);

/// Sets the user agent: `userAgent` itself or, when that is null or empty, the plug-in's part
/// before WebKit's own; without either it stays WebKit's own.
void wa_update_useragent(WebKitSettings* settings, const char* userAgent);

/// Loads the start page into the view: g_Content as a local document, or else g_URL.
void wa_open_view();

/// wa_open_view() for a page that may have changed the fragment of its address: the start page is
/// loaded, not merely an anchor of the page shown looked up. Returns at once.
void wa_open_view_again();

/// Handler of "load-failed-with-tls-errors": accepts the certificate for the host of the failing
/// URI, its port included, and loads the start page again. TRUE when it did; FALSE leaves the
/// failure to WebKit.
gboolean wa_web_load_failed_tls_cb(WebKitWebView* view, char* failingUri,
    GTlsCertificate* certificate, GTlsCertificateFlags errors, void* data) noexcept;

/// Handler of "authenticate": always TRUE, so that WebKit asks for no credentials, and none are
/// supplied.
gboolean wa_web_authenticate_cb(
    WebKitWebView* view, WebKitAuthenticationRequest* request, void* data) noexcept;
