// A plug-in for Tovik. The class is yours to change; below it are the six entry points that the
// host calls, as tovik/plugin.h describes them.
#include <exception>
#include <map>
#include <new>
#include <string>
#include <tovik/plugin.h>

namespace {

class Plugin {
public:
    void set_property(const std::string& name, const std::string& value)
    {
        m_properties[name] = value;
    }

    /// Value of a property; the text lives until the next call. Null when there is none.
    const char* property(const std::string& name)
    {
        if (name == "ProductInfo") {
            m_answer = "MyProduct;plug-in;0100,first"; // version 01.00, for the user agent
        } else {
            const auto found = m_properties.find(name);
            if (found == m_properties.end()) {
                return nullptr;
            }
            m_answer = found->second;
        }
        return m_answer.c_str();
    }

    /// The value of `first`, or of `second` where there is none.
    const char* either(const std::string& first, const std::string& second)
    {
        const char* value = property(first);
        return value != nullptr ? value : property(second);
    }

    unsigned long invoke(const std::string& command)
    {
        if (command == "Greet") {
            m_properties["Greeting"] = "Hello, " + m_properties["Name"];
            return TOVIK_OK;
        }
        return TOVIK_FUNCTION_NOT_SUPPORTED;
    }

private:
    std::map<std::string, std::string> m_properties;
    std::string m_answer;
};

Plugin& plugin_of(void* instance)
{
    return *static_cast<Plugin*>(instance);
}

const char* text_or_empty(const char* text)
{
    return text == nullptr ? "" : text;
}

/// What `work` returns, or `failed` when it throws: nothing may leave an entry point.
template <typename Work, typename Result> Result guarded(Result failed, const Work& work)
{
    try {
        return work();
    } catch (const std::exception&) {
        return failed;
    }
}

} // namespace

#ifdef OLDER_SET
#define ENTRY(name) P_##name

void* P_Initialize(const char*, const char*, const char*, void (*)(const char*, unsigned long))
{
    return new (std::nothrow) Plugin;
}
#else
#define ENTRY(name) Plg##name

void* PlgInitialize(void*, void*, void*, void*, void** instance)
{
    *instance = new (std::nothrow) Plugin;
    return *instance;
}
#endif

void ENTRY(Finalize)(void* instance)
{
    delete &plugin_of(instance);
}

void ENTRY(SetProperty)(void* instance, const char* name, const char* value)
{
    guarded(false, [=] {
        plugin_of(instance).set_property(text_or_empty(name), text_or_empty(value));
        return true;
    });
}

const char* ENTRY(GetProperty)(void* instance, const char* name)
{
    return guarded(static_cast<const char*>(nullptr),
        [=] { return plugin_of(instance).property(text_or_empty(name)); });
}

const char* ENTRY(EnumProperty)(void* instance, const char* first, const char* second)
{
    return guarded(static_cast<const char*>(nullptr),
        [=] { return plugin_of(instance).either(text_or_empty(first), text_or_empty(second)); });
}

unsigned long ENTRY(Invoke)(void* instance, const char* name)
{
    return guarded(
        TOVIK_FUNCTION_FAILED, [=] { return plugin_of(instance).invoke(text_or_empty(name)); });
}
