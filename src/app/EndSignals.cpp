#include "app/EndSignals.h"

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace quillet {

namespace {

constexpr int endSignals[]{SIGTERM, SIGINT, SIGHUP};

int wakeUp = -1; // a signal handler reaches nothing but globals

void onEndSignal(int) {
    const eventfd_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
}

void handleWith(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : endSignals)
        sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals(std::function<void()> onSignal) {
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    m_notifier = std::make_unique<QSocketNotifier>(wakeUp, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [onSignal = std::move(onSignal)] {
                         eventfd_t count = 0;
                         eventfd_read(wakeUp, &count);
                         onSignal();
                     });
    handleWith(onEndSignal);
}

EndSignals::~EndSignals() {
    handleWith(SIG_DFL);
    m_notifier.reset();
    close(wakeUp);
}

} // namespace quillet
