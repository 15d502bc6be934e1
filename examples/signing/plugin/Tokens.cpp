#include "Tokens.h"

#include "Failure.h"

#include <algorithm>
#include <glib.h>
#include <tuple>

namespace {

/// A text of PKCS #11, which should be UTF-8 and has no other length than a fixed one, for a page.
std::string readable(const std::string& text)
{
    const std::string cut(text.c_str(), std::min(text.size(), text.find('\0')));
    const std::string trimmed = cut.substr(0, cut.find_last_not_of(' ') + 1);
    char* const valid = g_utf8_make_valid(trimmed.data(), static_cast<gssize>(trimmed.size()));
    std::string answer(valid);
    g_free(valid);
    return answer;
}

template <std::size_t size> std::string readable(const unsigned char (&field)[size])
{
    return readable(std::string(field, field + size));
}

std::string hexadecimal(const std::string& bytes)
{
    std::string digits;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        digits += "0123456789abcdef"[byte >> 4U];
        digits += "0123456789abcdef"[byte & 15U];
    }
    return digits;
}

template <typename Named> void sort_by_name(std::vector<Named>& list)
{
    std::sort(list.begin(), list.end(), [](const Named& a, const Named& b) {
        return std::tie(a.label, a.id) < std::tie(b.label, b.id);
    });
}

CK_ATTRIBUTE attribute(CK_ATTRIBUTE_TYPE type, void* value, unsigned long size)
{
    return {type, value, size};
}

std::vector<Key> read_keys(const Session& session)
{
    std::vector<Key> keys;
    for (CK_OBJECT_CLASS kind : {CKO_PRIVATE_KEY, CKO_PUBLIC_KEY}) {
        for (const auto object : session.find({attribute(CKA_CLASS, &kind, sizeof kind)})) {
            Key key;
            key.type = session.value<CK_KEY_TYPE>(object, CKA_KEY_TYPE, CKK_VENDOR_DEFINED);
            if (key.type != CKK_RSA && key.type != CKK_EC) {
                continue;
            }
            key.objectId = session.text(object, CKA_ID);
            key.label = readable(session.text(object, CKA_LABEL));
            key.id = hexadecimal(key.objectId) + (key.type == CKK_RSA ? "-rsa" : "-ec");
            const bool isKnown = std::any_of(
                keys.begin(), keys.end(), [&key](const Key& known) { return known.id == key.id; });
            if (!isKnown) {
                keys.push_back(key);
            }
        }
    }
    sort_by_name(keys);
    return keys;
}

/// Everything about a token but its keys.
Token read_token(const Module& module, CK_SLOT_ID slot)
{
    CK_TOKEN_INFO info = {};
    check(module->C_GetTokenInfo(slot, &info));
    Token token;
    token.slot = slot;
    token.id = std::to_string(slot) + "-" + readable(info.serialNumber);
    token.label = readable(info.label);
    token.flags = info.flags;
    token.minimumPin = info.ulMinPinLen;
    return token;
}

} // namespace

std::vector<Token> read_tokens(const Module& module)
{
    unsigned long count = 0;
    check(module->C_GetSlotList(CK_TRUE, nullptr, &count));
    std::vector<CK_SLOT_ID> slots(count);
    check(module->C_GetSlotList(CK_TRUE, slots.data(), &count));
    slots.resize(count);

    std::vector<Token> tokens;
    for (const CK_SLOT_ID slot : slots) {
        try {
            Token token = read_token(module, slot);
            if ((token.flags & CKF_TOKEN_INITIALIZED) != 0) {
                token.keys = read_keys(Session(module, slot));
                tokens.push_back(std::move(token));
            }
        } catch (const Failure&) {
            continue;
        }
    }
    sort_by_name(tokens);
    return tokens;
}

void check_presence(const Module& module, const Token& token)
{
    if (read_token(module, token.slot).id != token.id) {
        throw Failure(CKR_TOKEN_NOT_PRESENT);
    }
}

CK_OBJECT_HANDLE private_key(const Session& session, const Key& key)
{
    CK_OBJECT_CLASS kind = CKO_PRIVATE_KEY;
    CK_KEY_TYPE type = key.type;
    std::string id = key.objectId;
    const auto found = session.find({attribute(CKA_CLASS, &kind, sizeof kind),
        attribute(CKA_KEY_TYPE, &type, sizeof type), attribute(CKA_ID, id.data(), id.size())});
    if (found.empty()) {
        throw Failure(CKR_KEY_HANDLE_INVALID);
    }
    return found.front();
}
