#include "Lists.h"

namespace {

/// The id after this one; empty at the end and after an unknown one.
template <typename Element>
std::string next_id(const std::vector<Element>& elements, std::string_view id)
{
    const Element* const last = with_id(elements, id);
    const auto next = last != nullptr ? static_cast<std::size_t>(last - elements.data() + 1)
        : id.empty()                  ? 0
                                      : elements.size();
    return next < elements.size() ? elements[next].id : "";
}

std::string tries_of(const Token& token)
{
    return (token.flags & CKF_USER_PIN_LOCKED) != 0   ? "locked"
        : (token.flags & CKF_USER_PIN_FINAL_TRY) != 0 ? "final"
        : (token.flags & CKF_USER_PIN_COUNT_LOW) != 0 ? "low"
                                                      : "";
}

std::string login_of(const Token& token)
{
    return (token.flags & CKF_LOGIN_REQUIRED) == 0               ? "none"
        : (token.flags & CKF_PROTECTED_AUTHENTICATION_PATH) != 0 ? "reader"
                                                                 : "pin";
}

std::string about_token(std::string_view what, const Token& token)
{
    return what == "TokenLabel" ? token.label
        : what == "TokenTries"  ? tries_of(token)
        : what == "TokenLogin"  ? login_of(token)
                                : std::to_string(token.minimumPin);
}

std::string about_key(std::string_view what, const Key& key)
{
    return what == "KeyLabel" ? key.label : key.type == CKK_RSA ? "RSA" : "EC";
}

} // namespace

std::optional<std::string> list_entry(const std::vector<Token>& tokens,
    std::string_view chosenToken, std::string_view name, std::string_view id)
{
    const std::vector<Key> none;
    const Token* const chosen = with_id(tokens, chosenToken);
    const std::vector<Key>& keys = chosen == nullptr ? none : chosen->keys;
    if (name == "Token") {
        return next_id(tokens, id);
    }
    if (name == "Key") {
        return next_id(keys, id);
    }
    for (const char* const known : {"TokenLabel", "TokenTries", "TokenLogin", "TokenMinimum"}) {
        if (name == known) {
            const Token* const token = with_id(tokens, id);
            return token == nullptr ? "" : about_token(name, *token);
        }
    }
    if (name == "KeyLabel" || name == "KeyType") {
        const Key* const key = with_id(keys, id);
        return key == nullptr ? "" : about_key(name, *key);
    }
    return std::nullopt;
}
