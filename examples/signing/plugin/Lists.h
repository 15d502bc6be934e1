// Lists.h: tokens and keys in the form in which a page asks for them, with two texts.
#pragma once

#include "Tokens.h"

#include <algorithm>
#include <optional>
#include <string_view>

/// The element of this id, or null.
template <typename Element>
const Element* with_id(const std::vector<Element>& elements, std::string_view id)
{
    const auto found = std::find_if(elements.begin(), elements.end(),
        [id](const Element& element) { return element.id == id; });
    return found == elements.end() ? nullptr : &*found;
}

/// What the list `name` says about `id`; empty when nothing, and no value when there is no such
/// list.
///
///     Token         id of the token after this one; the empty id begins, and is the end
///     TokenLabel    its name
///     TokenTries    "low", "final" or "locked" when the PIN has been wrong, else ""
///     TokenLogin    "pin", "reader" (which has keys of its own for the PIN), or "none"
///     TokenMinimum  number of bytes that a PIN has at least
///     Key           id of the key of the chosen token after this one
///     KeyLabel      its name
///     KeyType       "RSA" or "EC"
std::optional<std::string> list_entry(const std::vector<Token>& tokens,
    std::string_view chosenToken, std::string_view name, std::string_view id);
