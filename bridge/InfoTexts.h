// InfoTexts.h: the parts of the user agent, built from the URL-encoded info texts of the plug-in.
//
// Of a version, a major and a minor number of at most two digits each are kept. A leading zero is
// dropped, except from the minor number of a system; missing characters are left out.
#pragma once

#include <cstddef>

/// Writes "Product/major.minor" from "Product;...;MMmm,..." into `buffer` of `size` bytes. False,
/// with nothing written, when `text` is null, a separator is missing, or the result does not fit.
bool wa_format_client_info(const char* text, char* buffer, std::size_t size);

/// The same for "System name/major.minor" from "System name MM.mm...;...".
bool wa_format_system_info(const char* text, char* buffer, std::size_t size);
