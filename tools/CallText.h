// CallText.h: calls of a plug-in in words for its author, without what is secret.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which properties are secret: those whose name holds one of the words, in any case.
class SecretNames {
public:
    /// list  words separated by commas, which stand in for "pin,password,secret"; after a "+" they
    ///       are added to these; null for these alone
    explicit SecretNames(const char* list);

    /// Whether the name holds a word; a null one does not.
    bool holds(const char* name) const;

    /// The text in quotes, fit for a terminal and a line, or "null". What follows "=" or ":" after
    /// one of the words is hidden.
    std::string shown(const char* text) const;

private:
    std::vector<std::string> m_words;
};

/// In place of a text that is secret.
inline constexpr char kHidden[] = "(hidden)";

/// The environment variable with the list of secret names.
inline constexpr char kSecretNamesVariable[] = "TOVIK_SECRET_NAMES";

/// A status as a page receives it, as a hexadecimal number, and by its name in PKCS #11 where it
/// has one: "160 0xA0 CKR_PIN_INCORRECT".
std::string status_text(unsigned long status);
