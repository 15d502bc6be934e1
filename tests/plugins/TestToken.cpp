// A PKCS #11 module that passes everything on to the one that TEST_TOKEN_MODULE names, except for
// the trouble that the words of TEST_TOKEN ask for. With a PIN still in memory it never signs.
#include <p11-kit/pkcs11.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <set>
#include <string>

namespace {

CK_FUNCTION_LIST* g_inner = nullptr;
CK_FUNCTION_LIST g_own;
const unsigned char* g_pin = nullptr;
std::size_t g_pinSize = 0;
int g_wrongPins = 0;
bool g_isRemoved = false;
bool g_isConfirmed = false;

/// Whether the exit handlers of the module have run.
bool g_isOver = false;
const struct Statics {
    ~Statics() { g_isOver = true; }
} g_Statics;

/// Appends a line to the file that the environment names.
void write_down(const std::string& line)
{
    if (const char* const path = std::getenv("TEST_PLUGIN_LOG")) {
        std::ofstream(path, std::ios::app) << line + '\n';
    }
}

/// The text after "word" or "word=" in TEST_TOKEN; null when the word is not among the words.
const char* asked(const char* word)
{
    const char* const words = std::getenv("TEST_TOKEN");
    const char* const found = words == nullptr ? nullptr : std::strstr(words, word);
    return found == nullptr ? nullptr
                            : found + std::strlen(word) + (std::strchr(found, '=') ? 1 : 0);
}

CK_RV finalize(void* reserved)
{
    write_down(g_isOver ? "finalize too late" : "finalize in time");
    return g_inner->C_Finalize(reserved);
}

CK_RV get_slot_list(unsigned char present, CK_SLOT_ID* slots, unsigned long* count)
{
    const CK_RV status = g_inner->C_GetSlotList(present, slots, count);
    *count = g_isRemoved ? 0 : *count;
    return status;
}

CK_RV get_token_info(CK_SLOT_ID slot, CK_TOKEN_INFO* info)
{
    const CK_RV status = g_inner->C_GetTokenInfo(slot, info);
    if (asked("latin")) {
        std::memcpy(info->label, "Zo\xeb\0x", 5);
    }
    static std::set<CK_SLOT_ID> known;
    if (!known.insert(slot).second && asked("exchanged")) {
        info->serialNumber[0] = 'x';
    }
    if (asked("reader")) {
        info->flags |= CKF_PROTECTED_AUTHENTICATION_PATH;
    }
    if (asked("open")) {
        info->flags &= ~CKF_LOGIN_REQUIRED;
    }
    if (asked("locks")) {
        info->flags |= g_wrongPins == 0 ? 0
            : g_wrongPins == 1          ? CKF_USER_PIN_COUNT_LOW
            : g_wrongPins == 2          ? CKF_USER_PIN_FINAL_TRY
                                        : CKF_USER_PIN_LOCKED;
    }
    return status;
}

CK_RV login(CK_SESSION_HANDLE session, CK_USER_TYPE user, unsigned char* pin, unsigned long size)
{
    g_pin = pin;
    g_pinSize = size;
    if (user == CKU_CONTEXT_SPECIFIC) {
        g_isConfirmed = size == 4 && std::memcmp(pin, "2468", size) == 0;
        return CKR_OK;
    }
    unsigned char typed[] = "2468"; // at the keys of the reader
    const CK_RV status = asked("locks") && g_wrongPins >= 3
        ? CKR_PIN_LOCKED
        : g_inner->C_Login(
            session, user, asked("reader") ? typed : pin, asked("reader") ? 4 : size);
    g_wrongPins = status == CKR_OK ? 0 : g_wrongPins + 1;
    write_down("login " + std::to_string(status));
    return status;
}

CK_RV get_attributes(
    CK_SESSION_HANDLE session, CK_OBJECT_HANDLE object, CK_ATTRIBUTE* wanted, unsigned long count)
{
    const CK_RV status = g_inner->C_GetAttributeValue(session, object, wanted, count);
    if (wanted->type == CKA_ALWAYS_AUTHENTICATE && asked("confirms")) {
        *static_cast<CK_BBOOL*>(wanted->pValue) = CK_TRUE;
    }
    return status;
}

CK_RV sign_init(CK_SESSION_HANDLE session, CK_MECHANISM* mechanism, CK_OBJECT_HANDLE key)
{
    if (const char* const status = asked("refuses")) {
        return std::strtoul(status, nullptr, 0);
    }
    if (const char* const status = asked("removed")) {
        g_isRemoved = true;
        return std::strtoul(status, nullptr, 0);
    }
    return g_inner->C_SignInit(session, mechanism, key);
}

CK_RV sign(CK_SESSION_HANDLE session, unsigned char* data, unsigned long size,
    unsigned char* signature, unsigned long* length)
{
    if (asked("confirms") && !g_isConfirmed) {
        return CKR_USER_NOT_LOGGED_IN;
    }
    if (!std::all_of(g_pin, g_pin + g_pinSize, [](unsigned char byte) { return byte == 0; })) {
        return CKR_PIN_INVALID;
    }
    return g_inner->C_Sign(session, data, size, signature, length);
}

} // namespace

extern "C" __attribute__((visibility("default"))) CK_RV C_GetFunctionList(CK_FUNCTION_LIST** list)
{
    void* const module = dlopen(std::getenv("TEST_TOKEN_MODULE"), RTLD_NOW);
    reinterpret_cast<CK_C_GetFunctionList>(dlsym(module, "C_GetFunctionList"))(&g_inner);
    g_own = *g_inner;
    g_own.C_Finalize = finalize;
    g_own.C_GetSlotList = get_slot_list;
    g_own.C_GetTokenInfo = get_token_info;
    g_own.C_Login = login;
    g_own.C_GetAttributeValue = get_attributes;
    g_own.C_SignInit = sign_init;
    g_own.C_Sign = sign;
    *list = &g_own;
    return CKR_OK;
}
