#include "DemoPlugin.h"

#include "Pages.h"

#include <fstream>
#include <random>
#include <sys/utsname.h>
#include <tovik/plugin.h>

namespace {

constexpr char kPin[] = "2468";

/// The system in the form of which the shell makes its part of the user agent:
/// "name major.minor;machine".
std::string machine_info()
{
    std::string name = "Linux";
    std::string version;
    std::ifstream release("/etc/os-release");
    for (std::string line; std::getline(release, line);) {
        const auto value = [&line](const std::string& key) {
            std::string text = line.starts_with(key) ? line.substr(key.size()) : "";
            std::erase(text, '"');
            return text;
        };
        name = value("ID=").empty() ? name : value("ID=");
        version = value("VERSION_ID=").empty() ? version : value("VERSION_ID=");
    }
    if (version.find('.') == std::string::npos) {
        version += ".0";
    }
    utsname system = {};
    uname(&system);
    return name + " " + version + ";" + system.machine;
}

/// A text that a calling program can tell from any other run's.
std::string new_token()
{
    std::random_device random;
    std::string token = "TOKEN-";
    for (int i = 0; i < 16; ++i) {
        token += "0123456789ABCDEF"[random() % 16];
    }
    return token;
}

} // namespace

void DemoPlugin::set_property(const std::string& name, const std::string& value)
{
    m_properties[name] = value;
}

const char* DemoPlugin::property(const std::string& name)
{
    if (name == "ProductInfo") {
        m_answer = "TovikDemo;example;0100,release"; // version 01.00
    } else if (name == "MachineInfo") {
        m_answer = machine_info();
    } else if (name == "ConfigGlobal:Command:App") {
        m_answer = "-url dialog.html -title \"Confirm PIN\" -size 0x01A40276";
    } else if (name.starts_with("Web:")) {
        m_answer = encoded_page(name.substr(4));
    } else {
        const auto found = m_properties.find(name);
        m_answer = found == m_properties.end() ? "" : found->second;
    }
    return m_answer.c_str();
}

const char* DemoPlugin::next_property(const std::string& prefix, const std::string& previous)
{
    auto next = m_properties.upper_bound(previous);
    while (next != m_properties.end() && !next->first.starts_with(prefix)) {
        ++next;
    }
    m_answer = next == m_properties.end() ? "" : next->first;
    return m_answer.c_str();
}

unsigned long DemoPlugin::invoke(const std::string& command)
{
    if (command == "ConfirmPin") {
        return confirm_pin();
    }
    if (command == "Reset") {
        set_tries(kTries);
        return TOVIK_OK;
    }
    return TOVIK_FUNCTION_NOT_SUPPORTED;
}

unsigned long DemoPlugin::confirm_pin()
{
    // The page hands the PIN over for this one comparison.
    const std::string pin = m_properties["Pin"];
    m_properties.erase("Pin");
    if (m_triesLeft == 0) {
        return TOVIK_PIN_LOCKED;
    }
    if (pin != kPin) {
        set_tries(m_triesLeft - 1);
        return m_triesLeft == 0 ? TOVIK_PIN_LOCKED : TOVIK_PIN_INCORRECT;
    }
    set_tries(kTries);
    m_properties["Token"] = new_token();
    return TOVIK_OK;
}

void DemoPlugin::set_tries(int left)
{
    m_triesLeft = left;
    m_properties["TriesLeft"] = std::to_string(left);
}
