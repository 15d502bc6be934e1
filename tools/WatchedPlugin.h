// WatchedPlugin.h: a plug-in of either generation whose every call is shown in a line, with what
// is wrong about it.
#pragma once

#include "plugin/WrapperPlugin.h"
#include "tools/CallText.h"

#include <functional>
#include <string>
#include <vector>

/// Forwards the calls. After each answer it overwrites the memory that the plug-in has given back,
/// and so finds an answer that does not live until the next call.
class WatchedPlugin : public CWrapperPlugin {
public:
    /// Receives, before a call that may not return, the call in words.
    using Begin = std::function<void(const std::string& call)>;

    /// Receives a line for each call that has returned: the call, its result and its time, then
    /// the words "WRONG" or "NOTE" where something is to be said about it.
    using Print = std::function<void(const std::string& line, bool wrong)>;

    WatchedPlugin(Begin begin, Print print);

    bool Initialize(const char* text, const char* globalConfig, const char* localConfig,
        PluginCallback callback) override;
    void Finalize() override;
    void SetProperty(const char* name, const char* value) override;
    const char* GetProperty(const char* name) override;
    const char* EnumProperty(const char* first, const char* second) override;
    unsigned long Invoke(const char* name) override;

private:
    struct Line {
        std::string call;
        double milliseconds = 0;
        std::string result = {};
        std::vector<std::string> faults = {};
    };

    /// Makes the call and measures its time.
    Line watch(const std::string& call, const std::function<void()>& work);
    void print(const Line& line) const;
    void judge_answer(Line& line, const char* answer, bool secret);
    bool last_answer_has_changed();

    Begin m_begin;
    Print m_print;
    SecretNames m_secrets;
    std::string m_lastCall;
    std::string m_lastCopy; // of the start of the answer, with its zero
    const char* m_lastAnswer = nullptr; // null too when its fault has been shown
};
