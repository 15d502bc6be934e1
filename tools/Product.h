// Product.h: the plug-in interface that the product's library exports, by which the product itself
// reaches a plug-in.
#pragma once

#include "plugin/plugin.h"

#include <string>

struct Product {
    decltype(&::P_Available) available;
    decltype(&::P_Initialize) initialize;
    decltype(&::P_Finalize) finalize;
    decltype(&::P_SetProperty) setProperty;
    decltype(&::P_GetProperty) getProperty;
    decltype(&::P_EnumProperty) enumProperty;
    decltype(&::P_Invoke) invoke;
};

/// Loads the library at `path` into this process, for its life, and binds its functions. Returns
/// the empty string, or why that failed.
std::string load_product(const std::string& path, Product& product);

/// Says which plug-in of which product the shell's own readers (bridge/PluginValues.h), which are
/// part of this tool, take their properties from.
void read_values_from(const Product& product, void* plugin);
