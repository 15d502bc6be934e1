#include "tools/UserAgent.h"

#include "bridge/WebBridge.h"
#include "util/Owned.h"

namespace {

/// The start of WebKit's own agent. Whether WebKit accepts a text depends also on what follows.
constexpr char kEngineAgent[] = " Mozilla/5.0";

/// Why WebKit refuses `text` with `rest` after it; empty when it accepts both together.
std::string refusal(const std::string& text, const std::string& rest)
{
    const std::string whole = text + rest;
    const char* fault = wa_user_agent_fault(whole.c_str());
    if (fault == nullptr) {
        return "";
    }
    const auto place = static_cast<std::size_t>(fault - whole.c_str());
    return "\"" + text + "\" is refused by WebKit at "
        + (place < text.size() ? '"' + text.substr(place) + '"' : "its end")
        + "; write words of ASCII letters, digits and -._, each with one /version at most, and "
          "anything else in ()";
}

void examine_plugin_agent(Report& report)
{
    char info[kUserAgentInfoCapacity];
    if (!wa_user_agent_info(info, sizeof info)) {
        report.ok("user agent", "WebKit's own");
        return;
    }
    char product[kUserAgentInfoCapacity / 2];
    wa_client_info(product, sizeof product);
    const std::string refusedProduct = refusal(product, kEngineAgent);
    const std::string refusedInfo = refusal(info, kEngineAgent);
    if (!refusedProduct.empty()) {
        report.wrong("user agent", "the product's part is left out: " + refusedProduct);
    } else if (!refusedInfo.empty()) {
        report.wrong("user agent", "the system's part is left out: " + refusedInfo);
    }
    const OwnedText agent(wa_plugin_user_agent(kEngineAgent + 1));
    const std::string used = agent ? agent.get() : "";
    report.ok("user agent",
        agent ? used.substr(0, used.size() - (sizeof kEngineAgent - 1)) + " before WebKit's own"
              : "WebKit's own");
}

} // namespace

void examine_user_agent(const char* given, Report& report)
{
    if (given == nullptr || *given == 0) {
        examine_plugin_agent(report);
        return;
    }
    const std::string refused = refusal(given, "");
    report.add(refused.empty() ? Level::ok : Level::wrong, "user agent",
        refused.empty() ? given : "-useragent has no effect: " + refused);
}
