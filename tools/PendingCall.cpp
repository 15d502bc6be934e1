#include "tools/PendingCall.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr std::array kSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

/// Written by begin() and end(), read by the handler.
constinit char g_CrashLine[1024] = "";
constinit std::array<struct sigaction, kSignals.size()> g_Former = {};

/// Shows the call, and leaves the rest to the former action: the fault happens again, and what was
/// sent is sent again.
void crash_cb(int number, siginfo_t* info, void* /*context*/)
{
    if (syscall(SYS_gettid) == getpid()) {
        static_cast<void>(!write(STDERR_FILENO, g_CrashLine, std::strlen(g_CrashLine)));
    }
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        if (kSignals[i] == number) {
            sigaction(number, &g_Former[i], nullptr);
        }
    }
    if (info->si_code <= 0) {
        std::raise(number);
    }
}

void set_handlers()
{
    struct sigaction action = {};
    action.sa_sigaction = crash_cb;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &action, &g_Former[i]);
    }
}

/// A handler that the plug-in has set in the call stays.
void reset_handlers()
{
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        struct sigaction current = {};
        sigaction(kSignals[i], nullptr, &current);
        if ((current.sa_flags & SA_SIGINFO) != 0 && current.sa_sigaction == crash_cb) {
            sigaction(kSignals[i], &g_Former[i], nullptr);
        }
    }
}

} // namespace

PendingCall::PendingCall(std::function<void(const std::string&)> print, std::string prefix)
    : m_print(std::move(print))
    , m_prefix(std::move(prefix))
{
    // Signals are for the threads of the process that the plug-in runs in.
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    m_thread = std::thread(&PendingCall::watch, this);
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

PendingCall::~PendingCall()
{
    end();
    {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void PendingCall::begin(const std::string& call)
{
    end();
    std::snprintf(g_CrashLine, sizeof g_CrashLine,
        "%s%s WRONG crash: the process ends in this call\n", m_prefix.c_str(), call.c_str());
    set_handlers();
    {
        const std::lock_guard lock(m_mutex);
        m_call = call;
        ++m_number;
    }
    m_changed.notify_one();
}

void PendingCall::end()
{
    const std::lock_guard lock(m_mutex);
    if (!m_call.empty()) {
        reset_handlers();
        m_call.clear();
    }
}

void PendingCall::watch()
{
    std::unique_lock lock(m_mutex);
    while (!m_ended) {
        const unsigned long number = m_number;
        const auto isOver = [&] { return m_ended || m_number != number; };
        if (!m_changed.wait_for(lock, std::chrono::seconds(1), isOver) && !m_call.empty()) {
            m_print(m_call + " WRONG hang: has not returned after 1 s");
        }
        if (!isOver()) {
            m_changed.wait(lock, isOver);
        }
    }
}
