#include "Session.h"

#include "Failure.h"

Session::Session(const Module& module, CK_SLOT_ID slot)
    : m_module(module)
{
    check(m_module->C_OpenSession(slot, CKF_SERIAL_SESSION, nullptr, nullptr, &m_session));
}

Session::~Session()
{
    if (m_isLoggedIn) {
        m_module->C_Logout(m_session);
    }
    m_module->C_CloseSession(m_session);
}

void Session::log_in(CK_USER_TYPE user, const std::optional<Secret>& pin)
{
    const std::string_view text = pin ? pin->text() : "";
    // The function only reads the PIN, although its argument is not const.
    auto* const bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
    const CK_RV status = m_module->C_Login(m_session, user, pin ? bytes : nullptr, text.size());
    if (status != CKR_USER_ALREADY_LOGGED_IN) { // by another part of the process
        check(status);
        m_isLoggedIn = true;
    }
}

std::vector<CK_OBJECT_HANDLE> Session::find(std::vector<CK_ATTRIBUTE> wanted) const
{
    check(m_module->C_FindObjectsInit(m_session, wanted.data(), wanted.size()));
    std::vector<CK_OBJECT_HANDLE> found;
    CK_RV status = CKR_OK;
    for (unsigned long count = 1; count == 1;) {
        CK_OBJECT_HANDLE object = CK_INVALID_HANDLE;
        status = m_module->C_FindObjects(m_session, &object, 1, &count);
        if (status != CKR_OK || count == 0) {
            break;
        }
        found.push_back(object);
    }
    m_module->C_FindObjectsFinal(m_session);
    check(status);
    return found;
}

std::string Session::text(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const
{
    CK_ATTRIBUTE attribute = {type, nullptr, 0};
    constexpr unsigned long kMost = 4096; // a module that has no length answers with all bits set
    if (m_module->C_GetAttributeValue(m_session, object, &attribute, 1) != CKR_OK
        || attribute.ulValueLen > kMost) {
        return "";
    }
    std::string bytes(attribute.ulValueLen, '\0');
    attribute.pValue = bytes.data();
    const CK_RV status = m_module->C_GetAttributeValue(m_session, object, &attribute, 1);
    return status == CKR_OK ? bytes.substr(0, attribute.ulValueLen) : "";
}
