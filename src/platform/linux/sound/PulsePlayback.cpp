#include "platform/linux/sound/PulsePlayback.h"

#include "platform/linux/sound/Wave.h"

#include <cmath>
#include <memory>
#include <pulse/pulseaudio.h>
#include <QLoggingCategory>
#include <vector>

namespace quillet {

namespace {

Q_LOGGING_CATEGORY(lcSound, "quillet.platform", QtWarningMsg)

template<auto release>
struct Release {
    template<typename Handle>
    void operator()(Handle* handle) const {
        release(handle);
    }
};

void closeContext(pa_context* context) {
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void closeStream(pa_stream* stream) {
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

using Loop = std::unique_ptr<pa_mainloop, Release<pa_mainloop_free>>;
using Context = std::unique_ptr<pa_context, Release<closeContext>>;
using Stream = std::unique_ptr<pa_stream, Release<closeStream>>;
using Operation = std::unique_ptr<pa_operation, Release<pa_operation_unref>>;

/// Lets the loop turn until `reached` holds. False when the playback was stopped or the loop quit.
template<typename Condition>
bool turnUntil(pa_mainloop* loop, const std::stop_token& stop, Condition reached) {
    while (!reached()) {
        if (stop.stop_requested() || pa_mainloop_iterate(loop, 1, nullptr) < 0)
            return false;
    }
    return !stop.stop_requested();
}

std::vector<qint16> atVolume(std::span<const qint16> samples, double volume) {
    std::vector<qint16> scaled;
    scaled.reserve(samples.size());
    for (const qint16 sample : samples)
        scaled.push_back(static_cast<qint16>(std::lround(sample * volume)));
    return scaled;
}

} // namespace

PulsePlayback::PulsePlayback(std::span<const qint16> samples, double volume)
    : m_thread([this, samples, volume](std::stop_token stop) {
          run(std::move(stop), samples, volume);
          m_running = false;
      }) {}

void PulsePlayback::run(std::stop_token stop, std::span<const qint16> samples, double volume) {
    const Loop loop(pa_mainloop_new());
    if (!loop)
        return;
    const std::stop_callback wake(stop, [&] { pa_mainloop_wakeup(loop.get()); });

    const Context context(pa_context_new(pa_mainloop_get_api(loop.get()), "Quillet"));
    if (!context ||
        pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        qCDebug(lcSound, "No sound server");
        return;
    }
    const auto state = [&] { return pa_context_get_state(context.get()); };
    if (!turnUntil(loop.get(), stop,
                   [&] { return state() == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state()); }))
        return;
    if (state() != PA_CONTEXT_READY) {
        qCDebug(lcSound, "No sound server: %s", pa_strerror(pa_context_errno(context.get())));
        return;
    }

    constexpr pa_sample_spec format{PA_SAMPLE_S16NE, sampleRate, 1};
    const Stream stream(pa_stream_new(context.get(), "Event sound", &format, nullptr));
    const auto streamState = [&] { return pa_stream_get_state(stream.get()); };
    if (!stream ||
        pa_stream_connect_playback(stream.get(), nullptr, nullptr, PA_STREAM_NOFLAGS, nullptr,
                                   nullptr) < 0 ||
        !turnUntil(loop.get(), stop, [&] { return streamState() != PA_STREAM_CREATING; }) ||
        streamState() != PA_STREAM_READY)
        return;

    // The server takes all of a short sound at once, which leaves nothing to do until its end.
    const std::vector<qint16> scaled = atVolume(samples, volume);
    pa_stream_write(stream.get(), scaled.data(), scaled.size() * sizeof(qint16), nullptr, 0,
                    PA_SEEK_RELATIVE);
    const Operation drain(pa_stream_drain(stream.get(), nullptr, nullptr));
    turnUntil(loop.get(), stop, [&] {
        return !drain || pa_operation_get_state(drain.get()) != PA_OPERATION_RUNNING;
    });
}

} // namespace quillet
