// Pages.h: the pages that the plug-in delivers itself, for start pages of the form res://PATH.
#pragma once

#include <string>

/// The page at `path` in base64, the form in which the host asks for it; empty when none exists.
std::string encoded_page(const std::string& path);
