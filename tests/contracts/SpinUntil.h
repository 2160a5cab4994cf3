#pragma once

#include <chrono>
#include <QEventLoop>
#include <QTimer>

namespace quillet {

/// Runs the event loop until `condition` holds; false when it did not within `deadline`.
template<typename Condition>
bool spinUntil(Condition condition, std::chrono::milliseconds deadline = std::chrono::seconds(10)) {
    QEventLoop loop;
    QTimer poll;
    poll.callOnTimeout([&] {
        if (condition())
            loop.quit();
    });
    poll.start(std::chrono::milliseconds(2));
    QTimer::singleShot(deadline, &loop, &QEventLoop::quit);
    if (!condition())
        loop.exec();
    return condition();
}

/// Runs the event loop for a while.
inline void spinFor(std::chrono::milliseconds span) {
    QEventLoop loop;
    QTimer::singleShot(span, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace quillet
