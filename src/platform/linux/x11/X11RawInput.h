#pragma once

#include "platform/linux/x11/X11Connection.h"

namespace quillet {

/// Buttons and keys of all devices, whoever has the pointer or the keyboard. The server is asked
/// for them only while somebody watches. Outlives its watches.
class X11RawInput {
public:
    enum class Kind { buttonPress, keyRelease };

    /// Called with the button's number or the key's code, and the server's time.
    using Watcher = std::function<void(uint32_t detail, xcb_timestamp_t time)>;

    /// Ends the watching when destroyed.
    using Watch = std::shared_ptr<void>;

    explicit X11RawInput(X11Connection& connection);
    X11RawInput(const X11RawInput&) = delete;
    X11RawInput& operator=(const X11RawInput&) = delete;

    /// Null where the server lacks the input extension.
    [[nodiscard]] Watch watch(Kind kind, Watcher watcher);

private:
    struct Entry {
        Kind kind;
        Watcher watcher;
    };

    void select();
    void handle(const xcb_generic_event_t& event);

    X11Connection& m_connection;
    uint8_t m_opcode = 0; ///< 0 where there is no such extension
    std::vector<std::weak_ptr<Entry>> m_entries;
    X11Connection::Listening m_listening;
};

} // namespace quillet
