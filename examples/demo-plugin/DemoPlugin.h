// DemoPlugin.h: a token with a PIN, the native side of the demo dialog. It knows nothing of the
// entry points, so that one class serves both generations of them.
#pragma once

#include <map>
#include <string>

class DemoPlugin {
public:
    /// Sets a property of the page's own, for example "Pin".
    void set_property(const std::string& name, const std::string& value);

    /// Value of a property, empty when it does not exist. The text lives until the next call.
    const char* property(const std::string& name);

    /// Name of the first property after `previous`, in the order of names, that begins with
    /// `prefix`; empty at the end. Starting with an empty `previous`, a page reads them all.
    const char* next_property(const std::string& prefix, const std::string& previous);

    /// Runs "ConfirmPin", which compares the property "Pin" and sets "TriesLeft" and, on success,
    /// "Token"; or "Reset", which unlocks the token. Returns a status of tovik/plugin.h.
    unsigned long invoke(const std::string& command);

private:
    static constexpr int kTries = 3;

    unsigned long confirm_pin();
    void set_tries(int left);

    int m_triesLeft = kTries;
    std::map<std::string, std::string> m_properties = {
        {"Reader", "Demo reader 00"},
        {"TriesLeft", std::to_string(kTries)},
    };
    std::string m_answer;
};
