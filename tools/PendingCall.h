// PendingCall.h: names the call of a plug-in that does not return, or that ends the process.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// Watches one call at a time, made by the main thread: after a second in a thread of its own, and
/// by signal handlers that are in place during the call.
class PendingCall {
public:
    /// print   shows a line; called in the thread
    /// prefix  what stands before a call in the line of a crash
    PendingCall(std::function<void(const std::string&)> print, std::string prefix);
    ~PendingCall();
    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;

    /// A call begins; one that has begun before counts no longer.
    void begin(const std::string& call);

    /// The call has returned.
    void end();

private:
    void watch();

    std::function<void(const std::string&)> m_print;
    std::string m_prefix;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_call; // empty for none; with the two below guarded by the mutex
    unsigned long m_number = 0;
    bool m_ended = false;
    std::thread m_thread;
};
