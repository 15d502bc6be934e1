// PluginCheck.h: drives a plug-in as the product does, and as no page should.
#pragma once

#include "tools/Child.h"
#include "tools/Product.h"

/// Reports on the plug-in library at `path`, a canonical one. Foreign code runs in this process.
void check_plugin(const Product& product, const std::string& path, Step& step, Report& report);
