#include "clipboard/ClipboardPreferences.h"
#include "FigureTable.h"
#include "LargeHistory.h"
#include "support/SamplePictures.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <limits>
#include <QCoreApplication>
#include <QFile>

using namespace quillet;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

FigureTable figures;

double milliseconds(std::clock_t ticks) {
    return double(ticks) * 1000 / CLOCKS_PER_SEC;
}

/// What this process has handed to the system for writing so far.
double bytesWritten() {
    QFile file(u"/proc/self/io"_s);
    file.open(QIODevice::ReadOnly);
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("wchar:"))
            return line.sliced(6).trimmed().toDouble();
    }
    return std::numeric_limits<double>::infinity();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void addTextClip(benchmark::State& state) {
    LargeHistory history(smallPng());
    World& world = history.world;
    // The second time at the limit, where each new clip removes an old one.
    const bool isFull = state.range(0) == 1;
    if (isFull)
        world.preferences.set(ClipboardPreferences::maxItems, 2000);
    std::vector<double> durations;
    std::vector<double> bytes;
    for ([[maybe_unused]] auto _ : state) {
        world.pasteboard.copyText(LargeHistory::text(100'000 + int(durations.size())));
        const double before = bytesWritten();
        const auto start = std::chrono::steady_clock::now();
        world.scheduler.advance(400ms);
        const std::chrono::duration<double, std::milli> duration =
            std::chrono::steady_clock::now() - start;
        durations.push_back(duration.count());
        bytes.push_back(bytesWritten() - before);
        state.SetIterationTime(duration.count() / 1000);
        world.letPoll(); // what runs in the background is not part of adding
    }
    const std::string name = isFull ? "add a text clip to a full history" : "add a text clip";
    figures.add(name + ", median", median(durations), 5, "ms");
    figures.add(name + ", written", median(bytes) / 1024, 64, "KiB");
}
BENCHMARK(addTextClip)->Arg(0)->Arg(1)->Iterations(200)->UseManualTime();

void openHistory(benchmark::State& state) {
    LargeHistory history(smallPng());
    std::vector<double> durations;
    for ([[maybe_unused]] auto _ : state) {
        history.world.quit();
        const auto start = std::chrono::steady_clock::now();
        history.world.launch();
        const std::chrono::duration<double, std::milli> duration =
            std::chrono::steady_clock::now() - start;
        durations.push_back(duration.count());
        state.SetIterationTime(duration.count() / 1000);
    }
    figures.add("open the history", median(durations), 60, "ms");
}
BENCHMARK(openHistory)->Iterations(20)->UseManualTime();

void idlePoll(benchmark::State& state) {
    World world;
    const auto start = std::clock();
    for ([[maybe_unused]] auto _ : state) {
        world.pasteboard.onChange(); // though nothing has changed
        world.scheduler.advance(400ms);
    }
    figures.add("one idle poll",
                milliseconds(std::clock() - start) * 1000 / double(state.iterations()), 2, "us");
}
BENCHMARK(idlePoll)->Iterations(200'000);

/// Processor time of one recorded copy, on all threads, from the poll to the saved item.
void recordLargeCopy(benchmark::State& state) {
    const bool isImage = state.range(0) == 1;
    World world;
    const QByteArray png = pngOf(sampleScreenshot(QSize(3840, 2160)));
    const QByteArray text = QByteArray("one more line of text\n").repeated(10'000'000 / 22);
    std::vector<double> durations;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const QByteArray number = QByteArray::number(durations.size()); // another copy each time
        world.pasteboard.copyFrom({{isImage ? PasteboardType::png : PasteboardType::string,
                                    (isImage ? png : text) + number}});
        state.ResumeTiming();
        const auto start = std::clock();
        world.letPoll();
        durations.push_back(milliseconds(std::clock() - start));
    }
    figures.add(isImage ? "record a PNG of 3840 x 2160, processor"
                        : "record 10 MB of text, processor",
                median(durations), 100, "ms");
}
BENCHMARK(recordLargeCopy)->Arg(0)->Arg(1)->Iterations(9)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return figures.allWithinLimits() ? 0 : 1;
}
