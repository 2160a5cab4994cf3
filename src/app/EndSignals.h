#pragma once

#include <functional>
#include <memory>
#include <QSocketNotifier>

namespace quillet {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the event loop, for as long as it lives. One
/// per process.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> onSignal);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quillet
