// SigningPlugin.h: what a page sees of the plug-in. A command only begins what it is about and
// returns at once; the page asks for the state until it is "done".
#pragma once

#include "Commands.h"

#include <future>
#include <string_view>

class SigningPlugin {
public:
    SigningPlugin();
    SigningPlugin(const SigningPlugin&) = delete;
    SigningPlugin& operator=(const SigningPlugin&) = delete;
    ~SigningPlugin();

    /// "Document", "Token", "Key", "Scheme" ("pss", or anything else for PKCS #1), "Pin", which is
    /// used once, and "Module", which counts until one is open. Other names are passed over.
    void set_property(std::string_view name, std::string_view value);

    /// "State" ("idle", a step of Commands.h, "done"), "Progress" (per cent of the
    /// document), and of the last command "Status", "Reason", "Digest" and "Signature". The text
    /// lives until the next call; null when the name is unknown.
    const char* property(std::string_view name);

    /// An entry of the lists of tokens and keys, as Lists.h describes them. The text lives until
    /// the next call; null when the list is unknown.
    const char* list(std::string_view name, std::string_view id);

    /// "ReadDocument", "ListTokens" and "Sign" begin, unless another command runs. "Wait" returns
    /// the status of the last command when it has ended; pages do without it.
    CK_RV invoke(std::string_view command);

    /// Stops what runs and closes the module.
    void end();

private:
    bool is_running() const;
    void collect();
    template <typename Work> void start(const char* step, Work work);
    CK_RV start_signing();

    // Written by the page.
    std::string m_folder;
    std::string m_module;
    std::string m_document;
    std::string m_token;
    std::string m_key;
    std::string m_scheme;
    Secret m_pin;

    // Of the commands that have ended.
    Outcome m_last;
    std::vector<Token> m_tokens;
    std::string m_digest;
    bool m_hasRun = false;

    std::string m_answer;

    // Used by the thread of the command that runs, which ends first.
    Module m_open;
    Progress m_progress;
    std::future<Outcome> m_running;
};
