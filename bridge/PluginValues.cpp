#include "bridge/PluginValues.h"

#include "bridge/InfoTexts.h"
#include "bridge/PluginLoader.h"
#include "bridge/UserAgent.h"
#include "plugin/plugin.h"
#include "util/StringUtil.h"
#include "util/Utility.h"

namespace {

/// Value of a plug-in property, the plug-in's own text; null without it or without a plug-in.
const char* plugin_property(const char* name)
{
    return P_GetProperty(wa_GetPlugin(), name);
}

/// `info`, a blank and `own` as a new text; null when WebKit refuses that.
char* accepted_user_agent(const char* info, const char* own)
{
    OwnedText agent(tovik::_strconcat(info, " ", own));
    return wa_user_agent_fault(agent.get()) == nullptr ? agent.release() : nullptr;
}

} // namespace

bool wa_client_info(char* buffer, unsigned long size)
{
    if (size == 0) {
        return false;
    }
    buffer[0] = 0;
    void* plugin = wa_GetPlugin();
    const char* agent = P_GetProperty(plugin, "UserAgentId");
    const std::size_t length = tovik::_strlen(agent);
    if (length == 0) {
        return wa_format_client_info(P_GetProperty(plugin, "ProductInfo"), buffer, size);
    }
    if (length >= size) {
        return false;
    }
    tovik::_strcpy(buffer, agent);
    return true;
}

bool wa_system_info(char* buffer, unsigned long size)
{
    return wa_format_system_info(plugin_property("MachineInfo"), buffer, size);
}

bool wa_user_agent_info(char* buffer, unsigned long size)
{
    if (!wa_client_info(buffer, size / 2)) {
        if (size > 0) {
            buffer[0] = 0;
        }
        return false;
    }
    const std::size_t length = tovik::_strlen(buffer);
    tovik::_strcpy(buffer + length, " ");
    if (!wa_system_info(buffer + length + 1, size - 1 - length)) {
        buffer[length] = 0;
    }
    return true;
}

char* wa_plugin_user_agent(const char* own)
{
    char info[kUserAgentInfoCapacity];
    if (own == nullptr || !wa_user_agent_info(info, sizeof info)) {
        return nullptr;
    }
    char* agent = accepted_user_agent(info, own);
    if (agent == nullptr && wa_client_info(info, sizeof info / 2)) {
        agent = accepted_user_agent(info, own);
    }
    return agent;
}

char* wa_load_url_resource(const char* url)
{
    const OwnedText name(tovik::_strconcat("Web:", url + tovik::_strlen("res://")));
    OwnedText page(tovik::_strnew(plugin_property(name.get())));
    if (page) {
        base64_decode(reinterpret_cast<unsigned char*>(page.get()), tovik::_strlen(page.get()));
    }
    return page.release();
}

char** wa_load_argument_list(int* count)
{
    const char* options = plugin_property("ConfigGlobal:Command:App");
    return tovik::_strlen(options) == 0 ? nullptr : alloc_argument_list(options, count);
}

char** wa_get_default_argument_list(char** arguments, int* count)
{
    int defaultCount = 0;
    const OwnedList defaults(wa_load_argument_list(&defaultCount));
    char** list = append_argument_list(arguments, *count, defaults.get(), defaultCount);
    if (list != nullptr) {
        *count += defaultCount;
    }
    return list;
}
