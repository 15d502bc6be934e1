// InfoTexts.h: the parts of the user agent, built from the plug-in's URL-encoded info texts.
//
// A version is cut down to a major and a minor number of at most two digits each; a leading zero
// is dropped where the rule asks for a leading digit, and a missing character counts as none.
#pragma once

#include <cstddef>

/// Writes "Product/major.minor" from "Product;...;MMmm,..." into `buffer` of `size` bytes. False,
/// with nothing written, when `text` is null, a separator is missing, or it does not fit.
bool wa_format_client_info(const char* text, char* buffer, std::size_t size);

/// Writes "System/major.minor" from "System name MM.mm...;...", likewise.
bool wa_format_system_info(const char* text, char* buffer, std::size_t size);
