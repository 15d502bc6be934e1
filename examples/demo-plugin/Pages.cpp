#include "Pages.h"

#include <cstdint>
#include <map>

namespace {

// The host writes the query of the command line between the quotes after STARTUP_ARG.
const std::map<std::string, const char*> kPages = {
    {"about.html",
        R"(<!doctype html><html lang="en"><head><meta charset="utf-8"><title>About</title>
<style>body { font: 16px/1.5 system-ui, sans-serif; margin: 2rem; background: #f8fafc; }</style>
</head><body><h1>About this token</h1><p id="reader">No plug-in</p>
<p><a href="tvk://exit?status=CKR_OK">Close</a></p>
<script>if (window.Tovik) {
  document.getElementById('reader').textContent = Tovik.GetProperty('Reader');
}</script></body></html>)"},
    {"start.html",
        R"(<!doctype html><html lang="en"><head><meta charset="utf-8"><title>Start</title>
</head><body><p id="query"></p>
<script>var STARTUP_ARG = "";
document.getElementById('query').textContent = STARTUP_ARG;
if (new URLSearchParams(STARTUP_ARG).has('auto')) {
  location.href = 'tvk://exit?status=CKR_OK&response=' + encodeURIComponent(STARTUP_ARG);
}</script></body></html>)"},
};

std::string base64(const std::string& bytes)
{
    constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    std::uint32_t held = 0;
    unsigned int bits = 0;
    for (const char byte : bytes) {
        held = held << 8 | static_cast<unsigned char>(byte);
        for (bits += 8; bits >= 6; bits -= 6) {
            text += kAlphabet[held >> (bits - 6) & 63];
        }
    }
    if (bits > 0) {
        text += kAlphabet[held << (6 - bits) & 63];
    }
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

} // namespace

std::string encoded_page(const std::string& path)
{
    const auto page = kPages.find(path);
    return page == kPages.end() ? "" : base64(page->second);
}
