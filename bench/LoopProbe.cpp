#include "LoopProbe.h"

#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <optional>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

// Stands between a program and the functions by which it waits: for events, and for replies of the
// X server, on whatever connection and in whatever library.

namespace {

using quillet::LoopRecord;

LoopRecord* openRecord() {
    const char* path = std::getenv(LoopRecord::variable);
    unsetenv("LD_PRELOAD"); // programs started from here are not measured
    const int file = path ? open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0)
        std::abort();
    void* memory = mmap(nullptr, sizeof(LoopRecord), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (memory == MAP_FAILED)
        std::abort();
    return static_cast<LoopRecord*>(memory);
}

LoopRecord& record() {
    static LoopRecord* const opened = openRecord();
    return *opened;
}

template<typename Function>
Function* original(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool isMainThread() {
    static thread_local const bool isMain = gettid() == getpid();
    return isMain;
}

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// How long the main thread has been ready while no processor was free.
double delay() {
    static const int file = open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
    char text[96] = {};
    char* rest = nullptr;
    if (pread(file, text, sizeof text - 1, 0) <= 0)
        std::abort();
    std::strtoull(text, &rest, 10);
    return static_cast<double>(std::strtoull(rest, nullptr, 10)) / 1e6;
}

/// How long the main thread has waited for replies.
double waited = 0;

struct Moment {
    double wall = milliseconds(CLOCK_MONOTONIC);
    double processor = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    double idle = delay() + waited;
};

std::optional<Moment> turnBegin;

void endTurn() {
    if (!turnBegin)
        return;
    const Moment now;
    const double whole = now.wall - turnBegin->wall;
    const double held = whole - (now.idle - turnBegin->idle);
    LoopRecord& seen = record();
    seen.turn[seen.turns % seen.turn.size()] = {
        static_cast<float>(now.processor - turnBegin->processor), static_cast<float>(held),
        static_cast<float>(whole)};
    ++seen.turns;
}

/// Counts a wait for a reply when it is over, and takes its time.
class Wait {
public:
    explicit Wait(const void* caller) : m_caller(caller) {
        if (isMainThread())
            m_begin.emplace();
    }
    ~Wait() {
        if (!m_begin)
            return;
        const Moment now;
        // The time until a processor was free again counts as that already.
        waited += now.wall - m_begin->wall - (now.idle - m_begin->idle);
        ++(isOfProgram(m_caller) ? record().ownWaits : record().libraryWaits);
    }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

private:
    /// The functions for the single requests leave it to the one that waits to return to their
    /// caller, so that the program's own requests return into the program.
    static bool isOfProgram(const void* caller) {
        static link_map* const program = [] {
            link_map* map = nullptr;
            dlinfo(dlopen(nullptr, RTLD_LAZY), RTLD_DI_LINKMAP, &map);
            return map;
        }();
        Dl_info found{};
        dladdr(caller, &found);
        return reinterpret_cast<uintptr_t>(found.dli_fbase) == program->l_addr;
    }

    const void* m_caller;
    std::optional<Moment> m_begin;
};

} // namespace

extern "C" {

int poll(pollfd* files, nfds_t count, int timeout) {
    static const auto real = original(&poll, "poll");
    // One file alone is an X connection that waits for a reply, in the middle of a turn.
    const bool endsTurn = isMainThread() && count > 1 && timeout != 0;
    if (endsTurn)
        endTurn();
    const int ready = real(files, count, timeout);
    if (endsTurn)
        turnBegin.emplace();
    return ready;
}

void* xcb_wait_for_reply(xcb_connection_t* connection, unsigned int request,
                         xcb_generic_error_t** error) {
    static const auto real = original(&xcb_wait_for_reply, "xcb_wait_for_reply");
    void* reply = nullptr;
    if (xcb_poll_for_reply(connection, request, &reply, error))
        return reply;
    const Wait wait(__builtin_return_address(0));
    return real(connection, request, error);
}

void* xcb_wait_for_reply64(xcb_connection_t* connection, uint64_t request,
                           xcb_generic_error_t** error) {
    static const auto real = original(&xcb_wait_for_reply64, "xcb_wait_for_reply64");
    void* reply = nullptr;
    if (xcb_poll_for_reply64(connection, request, &reply, error))
        return reply;
    const Wait wait(__builtin_return_address(0));
    return real(connection, request, error);
}

xcb_generic_error_t* xcb_request_check(xcb_connection_t* connection, xcb_void_cookie_t cookie) {
    static const auto real = original(&xcb_request_check, "xcb_request_check");
    const Wait wait(__builtin_return_address(0));
    return real(connection, cookie);
}

} // extern "C"
