#include "tools/Product.h"

#include "bridge/WebBridge.h"

#include <dlfcn.h>

namespace {

/// Written by read_values_from().
constinit const Product* g_Product = nullptr;
constinit void* g_Plugin = nullptr;

template <typename Function> bool bind(void* library, const char* name, Function*& function)
{
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

} // namespace

std::string load_product(const std::string& path, Product& product)
{
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const bool bound = library != nullptr && bind(library, "P_Available", product.available)
        && bind(library, "P_Initialize", product.initialize)
        && bind(library, "P_Finalize", product.finalize)
        && bind(library, "P_SetProperty", product.setProperty)
        && bind(library, "P_GetProperty", product.getProperty)
        && bind(library, "P_EnumProperty", product.enumProperty)
        && bind(library, "P_Invoke", product.invoke);
    return bound ? "" : dlerror();
}

void read_values_from(const Product& product, void* plugin)
{
    g_Product = &product;
    g_Plugin = plugin;
}

// The two functions that bridge/PluginValues.cpp asks for properties.

void* wa_GetPlugin()
{
    return g_Plugin;
}

const char* P_GetProperty(void* plugin, const char* name) noexcept
{
    return g_Product->getProperty(plugin, name);
}
