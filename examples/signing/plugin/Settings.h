// Settings.h: what the product's configuration file says.
#pragma once

#include <string>

/// The PKCS #11 library that the file BRAND.conf in this folder names by a line "module = PATH";
/// p11-kit's proxy, which offers all modules that are registered on the machine, when none does.
/// The brand is that of the plug-in's own file, libBRAND.so.
std::string configured_module(const std::string& folder);
