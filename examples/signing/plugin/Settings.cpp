#include "Settings.h"

#include <dlfcn.h>
#include <fstream>

namespace {

std::string brand()
{
    Dl_info own = {};
    dladdr(reinterpret_cast<void*>(&configured_module), &own);
    const std::string path = own.dli_fname == nullptr ? "" : own.dli_fname;
    const std::string name = path.substr(path.rfind('/') + 1);
    const bool isPlugin = name.starts_with("lib") && name.ends_with(".so");
    return isPlugin ? name.substr(3, name.size() - 6) : "tovik";
}

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string::npos
        ? ""
        : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

} // namespace

std::string configured_module(const std::string& folder)
{
    std::string module = "p11-kit-proxy.so";
    std::ifstream file(folder + brand() + ".conf");
    for (std::string line; std::getline(file, line);) {
        const auto sign = line.find('=');
        if (sign != std::string::npos && trimmed(line.substr(0, sign)) == "module") {
            module = trimmed(line.substr(sign + 1));
        }
    }
    return module;
}
