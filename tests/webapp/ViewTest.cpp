// Calls what no page can cause while TLS errors are ignored and only one window exists.
#include "webapp/View.h"

#include "bridge/WebBridge.h"
#include "tests/support/TempDirectory.h"
#include "util/StringUtil.h"
#include "webapp/OwnedObject.h"
#include "webapp/ShellState.h"
#include "webapp/Window.h"

#include <gtest/gtest.h>

namespace {

std::string g_AllowedHost;

} // namespace

extern "C" void __wrap_webkit_web_context_allow_tls_certificate_for_host(
    WebKitWebContext*, GTlsCertificate*, const char* host)
{
    g_AllowedHost = host;
}

TEST(TlsFailure, AllowsTheCertificateAndLoadsTheStartPageAgain)
{
    ASSERT_TRUE(gtk_init_check(nullptr, nullptr)) << "run it under xvfb-run";
    const TempDirectory directory;
    const std::string file = directory / "pem";
    const std::string request = "openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=x -keyout "
                                "/dev/null 2>/dev/null -out "
        + file;
    ASSERT_EQ(system(request.c_str()), 0);
    const OwnedObject<GTlsCertificate> certificate(
        g_tls_certificate_new_from_file(file.c_str(), nullptr));
    ASSERT_NE(wa_gui_start("agent"), nullptr);
    g_URL.reset(tovik::_strnew("about:blank"));
    const auto fails = [&certificate](std::string uri) {
        return wa_web_load_failed_tls_cb(
            g_WebView, uri.data(), certificate.get(), G_TLS_CERTIFICATE_UNKNOWN_CA, nullptr);
    };
    EXPECT_FALSE(fails("no scheme"));
    EXPECT_EQ(webkit_web_view_get_uri(g_WebView), nullptr);
    for (const auto& [uri, host] :
        {std::pair("https://host:8443/path", "host:8443"), {"https://host", "host"}, {"://", ""}}) {
        webkit_web_view_load_uri(g_WebView, "about:srcdoc");
        EXPECT_TRUE(fails(uri)) << uri;
        EXPECT_STREQ(webkit_web_view_get_uri(g_WebView), "about:blank") << uri;
        EXPECT_EQ(g_AllowedHost, host);
    }
}

TEST(Window, HasAnIconThatLaterWindowsHaveToo)
{
    ASSERT_TRUE(gtk_init_check(nullptr, nullptr)) << "run it under xvfb-run";
    g_idle_add_once([](void*) { gtk_main_quit(); }, nullptr);
    wa_gui_show(wa_gui_start("agent"), ICON, "title", 0, 0, 320, 512, 0, 0, 0);
    GList* icons = gtk_window_get_default_icon_list();
    EXPECT_NE(icons, nullptr);
    g_list_free(icons);
}

TEST(UserAgent, IsAcceptedExactlyWhereWebKitAcceptsIt)
{
    const GLogLevelFlags fatal = g_log_set_always_fatal(G_LOG_LEVEL_ERROR);
    const GLogFunc log = g_log_set_default_handler([](auto...) {}, nullptr);
    const OwnedObject<WebKitSettings> settings(webkit_settings_new());
    const auto check = [&settings](const std::string& text) {
        webkit_settings_set_user_agent(settings.get(), "former");
        webkit_settings_set_user_agent(settings.get(), text.c_str());
        const bool accepted = text == webkit_settings_get_user_agent(settings.get());
        EXPECT_EQ(wa_user_agent_fault(text.c_str()) == nullptr, accepted) << text;
    };
    for (gunichar value = 1; value < 0x300; ++value) {
        char character[8] = "";
        g_unichar_to_utf8(value, character);
        for (std::string text : {"?x", "x?", "x?y", "x/?", "x (?)", "x (\\?)"}) {
            check(text.replace(text.find('?'), 1, character));
        }
    }
    // Every text of up to five of these after an "x".
    const std::string alphabet = "a/ \t()\\\xC3\xA9";
    for (unsigned int number = 0; number < 100000; ++number) {
        std::string text = "x";
        for (unsigned int rest = number; rest % 10 != 0; rest /= 10) {
            text += alphabet[rest % 10 - 1];
        }
        check(text);
    }
    g_log_set_default_handler(log, nullptr);
    g_log_set_always_fatal(fatal);
}
