#include "SigningPlugin.h"

#include "Lists.h"
#include "Settings.h"

#include <chrono>
#include <glib.h>

namespace {

std::atomic<SigningPlugin*> g_plugin = nullptr;

/// Ends the plug-in before the exit handlers of the module. These are younger than the plug-in's
/// instance, so that at the end of the process they run before the plug-in is finalised; this
/// object is younger than they are.
void end_before_the_module()
{
    static const struct Ending {
        ~Ending()
        {
            if (SigningPlugin* const plugin = g_plugin) {
                plugin->end();
            }
        }
    } ending;
}

std::string base64(const std::string& bytes)
{
    char* const text = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    std::string answer(text);
    g_free(text);
    return answer;
}

} // namespace

SigningPlugin::SigningPlugin()
{
    g_plugin = this;
}

SigningPlugin::~SigningPlugin()
{
    end();
    g_plugin = nullptr;
}

void SigningPlugin::set_property(std::string_view name, std::string_view value)
{
    if (name == "Pin") {
        m_pin.assign(value);
        return;
    }
    const std::pair<std::string_view, std::string*> texts[]
        = {{"WorkingDirectory", &m_folder}, {"Module", &m_module}, {"Document", &m_document},
            {"Token", &m_token}, {"Key", &m_key}, {"Scheme", &m_scheme}};
    for (const auto& [known, text] : texts) {
        if (name == known) {
            *text = value;
        }
    }
}

const char* SigningPlugin::property(std::string_view name)
{
    collect();
    if (name == "State") {
        m_answer = is_running() ? m_progress.step.load() : m_hasRun ? "done" : "idle";
    } else if (name == "Progress") {
        m_answer = std::to_string(m_progress.percent);
    } else if (name == "Status") {
        m_answer = std::to_string(m_last.status);
    } else if (name == "Reason") {
        m_answer = m_last.reason;
    } else if (name == "Digest") {
        m_answer = base64(m_digest);
    } else if (name == "Signature") {
        m_answer = base64(m_last.signature);
    } else if (name == "UserAgentId") {
        m_answer = "TovikSigning/1.0";
    } else if (name == "ConfigGlobal:Command:App") {
        m_answer = "-url signing.html -title \"Signature\" -size 0x01E002C0";
    } else {
        return nullptr;
    }
    return m_answer.c_str();
}

const char* SigningPlugin::list(std::string_view name, std::string_view id)
{
    collect();
    const std::optional<std::string> entry = list_entry(m_tokens, m_token, name, id);
    m_answer = entry.value_or("");
    return entry ? m_answer.c_str() : nullptr;
}

CK_RV SigningPlugin::invoke(std::string_view command)
{
    if (command == "Wait") {
        if (m_running.valid()) {
            m_running.wait();
        }
        collect();
        return m_last.status;
    }
    if (is_running()) {
        return CKR_OPERATION_ACTIVE;
    }
    collect();
    if (command == "ReadDocument") {
        start("document", [this, path = m_document] { return read_document(path, m_progress); });
    } else if (command == "ListTokens") {
        start("module", [this, path = m_module.empty() ? configured_module(m_folder) : m_module] {
            return list_tokens(m_open, path, end_before_the_module, m_progress);
        });
    } else if (command == "Sign") {
        return start_signing();
    } else {
        return CKR_FUNCTION_NOT_SUPPORTED;
    }
    return CKR_OK;
}

CK_RV SigningPlugin::start_signing()
{
    Order order;
    order.pin = std::move(m_pin); // a PIN is for one signature, even for one that does not begin
    const Token* const chosen = with_id(m_tokens, m_token);
    if (chosen == nullptr) {
        return CKR_TOKEN_NOT_PRESENT;
    }
    const Key* const key = with_id(chosen->keys, m_key);
    if (key == nullptr) {
        return CKR_KEY_HANDLE_INVALID;
    }
    if (m_digest.empty()) {
        return CKR_DATA_INVALID;
    }
    order.token = *chosen;
    order.key = *key;
    order.digest = m_digest;
    order.scheme = key->type == CKK_EC ? Scheme::Ecdsa
        : m_scheme == "pss"            ? Scheme::RsaPss
                                       : Scheme::RsaPkcs1;
    start("login",
        [this, held = std::move(order)]() mutable { return sign(m_open, held, m_progress); });
    return CKR_OK;
}

/// Runs a command on a thread of its own. Its outcome is handed over when it has ended, so that
/// the two threads share nothing but the progress.
template <typename Work> void SigningPlugin::start(const char* step, Work work)
{
    m_progress.step = step;
    m_progress.percent = 0;
    m_running = std::async(std::launch::async, std::move(work));
}

bool SigningPlugin::is_running() const
{
    return m_running.valid()
        && m_running.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
}

/// Takes over what a command has found out, once it has ended.
void SigningPlugin::collect()
{
    if (!m_running.valid() || is_running()) {
        return;
    }
    m_last = m_running.get();
    m_hasRun = true;
    if (m_last.tokens) {
        m_tokens = *m_last.tokens;
    }
    if (m_last.digest) {
        m_digest = *m_last.digest;
    }
}

void SigningPlugin::end()
{
    m_progress.stop = true;
    if (m_running.valid()) {
        m_running.wait();
    }
    m_open.close();
}
