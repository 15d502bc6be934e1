#include "tools/CallText.h"

#include "tools/Report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace {

/// More than escaped() shows of a text.
constexpr std::size_t kSearched = 4096;

constexpr unsigned long kVendorDefined = 0x80000000;

struct StatusName {
    unsigned long status;
    const char* name;
};

constexpr StatusName kStatusNames[] = {
    {0x000, "CKR_OK"},
    {0x001, "CKR_CANCEL"},
    {0x002, "CKR_HOST_MEMORY"},
    {0x003, "CKR_SLOT_ID_INVALID"},
    {0x005, "CKR_GENERAL_ERROR"},
    {0x006, "CKR_FUNCTION_FAILED"},
    {0x007, "CKR_ARGUMENTS_BAD"},
    {0x008, "CKR_NO_EVENT"},
    {0x009, "CKR_NEED_TO_CREATE_THREADS"},
    {0x00A, "CKR_CANT_LOCK"},
    {0x010, "CKR_ATTRIBUTE_READ_ONLY"},
    {0x011, "CKR_ATTRIBUTE_SENSITIVE"},
    {0x012, "CKR_ATTRIBUTE_TYPE_INVALID"},
    {0x013, "CKR_ATTRIBUTE_VALUE_INVALID"},
    {0x01B, "CKR_ACTION_PROHIBITED"},
    {0x020, "CKR_DATA_INVALID"},
    {0x021, "CKR_DATA_LEN_RANGE"},
    {0x030, "CKR_DEVICE_ERROR"},
    {0x031, "CKR_DEVICE_MEMORY"},
    {0x032, "CKR_DEVICE_REMOVED"},
    {0x040, "CKR_ENCRYPTED_DATA_INVALID"},
    {0x041, "CKR_ENCRYPTED_DATA_LEN_RANGE"},
    {0x050, "CKR_FUNCTION_CANCELED"},
    {0x051, "CKR_FUNCTION_NOT_PARALLEL"},
    {0x054, "CKR_FUNCTION_NOT_SUPPORTED"},
    {0x060, "CKR_KEY_HANDLE_INVALID"},
    {0x062, "CKR_KEY_SIZE_RANGE"},
    {0x063, "CKR_KEY_TYPE_INCONSISTENT"},
    {0x064, "CKR_KEY_NOT_NEEDED"},
    {0x065, "CKR_KEY_CHANGED"},
    {0x066, "CKR_KEY_NEEDED"},
    {0x067, "CKR_KEY_INDIGESTIBLE"},
    {0x068, "CKR_KEY_FUNCTION_NOT_PERMITTED"},
    {0x069, "CKR_KEY_NOT_WRAPPABLE"},
    {0x06A, "CKR_KEY_UNEXTRACTABLE"},
    {0x070, "CKR_MECHANISM_INVALID"},
    {0x071, "CKR_MECHANISM_PARAM_INVALID"},
    {0x082, "CKR_OBJECT_HANDLE_INVALID"},
    {0x090, "CKR_OPERATION_ACTIVE"},
    {0x091, "CKR_OPERATION_NOT_INITIALIZED"},
    {0x0A0, "CKR_PIN_INCORRECT"},
    {0x0A1, "CKR_PIN_INVALID"},
    {0x0A2, "CKR_PIN_LEN_RANGE"},
    {0x0A3, "CKR_PIN_EXPIRED"},
    {0x0A4, "CKR_PIN_LOCKED"},
    {0x0B0, "CKR_SESSION_CLOSED"},
    {0x0B1, "CKR_SESSION_COUNT"},
    {0x0B3, "CKR_SESSION_HANDLE_INVALID"},
    {0x0B4, "CKR_SESSION_PARALLEL_NOT_SUPPORTED"},
    {0x0B5, "CKR_SESSION_READ_ONLY"},
    {0x0B6, "CKR_SESSION_EXISTS"},
    {0x0B7, "CKR_SESSION_READ_ONLY_EXISTS"},
    {0x0B8, "CKR_SESSION_READ_WRITE_SO_EXISTS"},
    {0x0C0, "CKR_SIGNATURE_INVALID"},
    {0x0C1, "CKR_SIGNATURE_LEN_RANGE"},
    {0x0D0, "CKR_TEMPLATE_INCOMPLETE"},
    {0x0D1, "CKR_TEMPLATE_INCONSISTENT"},
    {0x0E0, "CKR_TOKEN_NOT_PRESENT"},
    {0x0E1, "CKR_TOKEN_NOT_RECOGNIZED"},
    {0x0E2, "CKR_TOKEN_WRITE_PROTECTED"},
    {0x0F0, "CKR_UNWRAPPING_KEY_HANDLE_INVALID"},
    {0x0F1, "CKR_UNWRAPPING_KEY_SIZE_RANGE"},
    {0x0F2, "CKR_UNWRAPPING_KEY_TYPE_INCONSISTENT"},
    {0x100, "CKR_USER_ALREADY_LOGGED_IN"},
    {0x101, "CKR_USER_NOT_LOGGED_IN"},
    {0x102, "CKR_USER_PIN_NOT_INITIALIZED"},
    {0x103, "CKR_USER_TYPE_INVALID"},
    {0x104, "CKR_USER_ANOTHER_ALREADY_LOGGED_IN"},
    {0x105, "CKR_USER_TOO_MANY_TYPES"},
    {0x110, "CKR_WRAPPED_KEY_INVALID"},
    {0x112, "CKR_WRAPPED_KEY_LEN_RANGE"},
    {0x113, "CKR_WRAPPING_KEY_HANDLE_INVALID"},
    {0x114, "CKR_WRAPPING_KEY_SIZE_RANGE"},
    {0x115, "CKR_WRAPPING_KEY_TYPE_INCONSISTENT"},
    {0x120, "CKR_RANDOM_SEED_NOT_SUPPORTED"},
    {0x121, "CKR_RANDOM_NO_RNG"},
    {0x130, "CKR_DOMAIN_PARAMS_INVALID"},
    {0x140, "CKR_CURVE_NOT_SUPPORTED"},
    {0x150, "CKR_BUFFER_TOO_SMALL"},
    {0x160, "CKR_SAVED_STATE_INVALID"},
    {0x170, "CKR_INFORMATION_SENSITIVE"},
    {0x180, "CKR_STATE_UNSAVEABLE"},
    {0x190, "CKR_CRYPTOKI_NOT_INITIALIZED"},
    {0x191, "CKR_CRYPTOKI_ALREADY_INITIALIZED"},
    {0x1A0, "CKR_MUTEX_BAD"},
    {0x1A1, "CKR_MUTEX_NOT_LOCKED"},
    {0x1B0, "CKR_NEW_PIN_MODE"},
    {0x1B1, "CKR_NEXT_OTP"},
    {0x1B5, "CKR_EXCEEDED_MAX_ITERATIONS"},
    {0x1B6, "CKR_FIPS_SELF_TEST_FAILED"},
    {0x1B7, "CKR_LIBRARY_LOAD_FAILED"},
    {0x1B8, "CKR_PIN_TOO_WEAK"},
    {0x1B9, "CKR_PUBLIC_KEY_INVALID"},
    {0x200, "CKR_FUNCTION_REJECTED"},
};

std::string lower_case(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return lower;
}

} // namespace

SecretNames::SecretNames(const char* list)
{
    std::string words = lower_case(list == nullptr ? "+" : list);
    if (words.starts_with('+')) {
        words.replace(0, 1, "pin,password,secret,");
    }
    for (std::size_t at = 0; at < words.size();) {
        const std::size_t end = std::min(words.find(',', at), words.size());
        if (end > at) {
            m_words.push_back(words.substr(at, end - at));
        }
        at = end + 1;
    }
}

bool SecretNames::holds(const char* name) const
{
    const std::string lower = lower_case(name == nullptr ? "" : name);
    return std::any_of(m_words.begin(), m_words.end(),
        [&](const std::string& word) { return lower.find(word) != std::string::npos; });
}

std::string SecretNames::shown(const char* text) const
{
    if (text == nullptr) {
        return "null";
    }
    const std::string_view whole(text);
    const std::string lower = lower_case(whole.substr(0, kSearched));
    std::size_t secret = std::string::npos;
    for (const std::string& word : m_words) {
        const std::size_t at = lower.find(word);
        if (at != std::string::npos) {
            secret = std::min(secret, lower.find_first_of("=:", at + word.size()));
        }
    }
    return secret == std::string::npos ? '"' + escaped(whole) + '"'
                                       : '"' + escaped(whole.substr(0, secret + 1)) + kHidden + '"';
}

std::string status_text(unsigned long status)
{
    std::array<char, 32> number = {};
    std::snprintf(number.data(), number.size(), "%d 0x%lX",
        static_cast<int>(static_cast<std::uint32_t>(status)), status);
    const auto* found = std::find_if(std::begin(kStatusNames), std::end(kStatusNames),
        [status](const StatusName& row) { return row.status == status; });
    if (found != std::end(kStatusNames)) {
        return std::string(number.data()) + ' ' + found->name;
    }
    const bool own = status >= kVendorDefined && status <= UINT32_MAX;
    return std::string(number.data()) + (own ? " (the plug-in's own)" : " (no name)");
}
