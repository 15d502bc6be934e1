// Session.h: a session with one token: log-in, and a look at its objects.
#pragma once

#include "Module.h"
#include "Secret.h"

#include <optional>
#include <vector>

class Session {
public:
    /// Opens a session that only reads; ends with a log-out. Throws Failure.
    Session(const Module& module, CK_SLOT_ID slot);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    /// Logs the user in, or with CKU_CONTEXT_SPECIFIC confirms the operation that has just begun.
    /// Without a PIN the token's reader asks for it. Throws Failure.
    void log_in(CK_USER_TYPE user, const std::optional<Secret>& pin);

    /// All objects with these attributes.
    std::vector<CK_OBJECT_HANDLE> find(std::vector<CK_ATTRIBUTE> wanted) const;

    /// Bytes of an attribute of variable length; empty when the object does not have it.
    std::string text(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const;

    /// Value of an attribute of a fixed size; `fallback` when the object does not have it.
    template <typename Value>
    Value value(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type, Value fallback) const
    {
        Value read = fallback;
        CK_ATTRIBUTE attribute = {type, &read, sizeof read};
        const CK_RV status = m_module->C_GetAttributeValue(m_session, object, &attribute, 1);
        return status == CKR_OK && attribute.ulValueLen == sizeof read ? read : fallback;
    }

    const Module& module() const { return m_module; }
    CK_SESSION_HANDLE handle() const { return m_session; }

private:
    const Module& m_module;
    CK_SESSION_HANDLE m_session = CK_INVALID_HANDLE;
    bool m_isLoggedIn = false;
};
