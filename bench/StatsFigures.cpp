#include "StatsFigures.h"

#include "FigureTable.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/proc/ProcHostStatistics.h"
#include "stats/StatsSampler.h"

#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct Machine {
    LinuxScheduler scheduler;
    ProcHostStatistics host;
    StatsSampler sampler{host, scheduler};
};

double millisecondsPerSample() {
    constexpr int samples = 5'000;
    Machine machine;
    const std::clock_t begin = std::clock();
    for (int i = 0; i < samples; ++i) {
        machine.sampler.attach(u"bench"_s);
        machine.sampler.detach(u"bench"_s);
    }
    return static_cast<double>(std::clock() - begin) * 1'000 / CLOCKS_PER_SEC / samples;
}

/// How often this process was woken while its event loop ran, the end of the time not counted.
long wakeUps(std::chrono::milliseconds span) {
    QEventLoop loop;
    QTimer::singleShot(span, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    loop.exec();
    getrusage(RUSAGE_SELF, &after);
    return after.ru_nvcsw - before.ru_nvcsw - 1;
}

/// The machine's counters as the usual tools read them.
struct Reading {
    double seconds, busy, idle, memory, down, up;

    static Reading take() {
        static const QString script = uR"(
            links=$(ls -d /sys/class/net/*/device 2>/dev/null | cut -d/ -f5)
            [ "$links" ] || links=$(awk '$2 == "00000000" { print $1; exit }' /proc/net/route)
            date +%s.%N
            awk '$1 == "cpu" { print $2 + $3 + $4 + $7 + $8 + $9; print $5 + $6 }' /proc/stat
            free -b | awk '$1 == "Mem:" { print $2 - $7 }'
            tr : ' ' < /proc/net/dev | awk -v links="$links" '
                BEGIN { split(links, list); for (i in list) counted[list[i]] }
                $1 in counted { down += $2; up += $10 }
                END { printf "%.0f\n%.0f\n", down, up }')"_s;
        QProcess shell;
        shell.start(u"/bin/sh"_s, {u"-c"_s, script});
        shell.waitForFinished();
        QList<QByteArray> lines = shell.readAllStandardOutput().split('\n');
        if (lines.size() != 7)
            qFatal("the counters cannot be read: %s", shell.readAllStandardError().constData());
        const auto number = [&] { return lines.takeFirst().toDouble(); };
        return {number(), number(), number(), number(), number(), number()};
    }
};

/// Keeps the machine somewhat busy and sends bytes to an address that nobody has.
class Load {
public:
    ~Load() {
        m_end = true;
        m_worker.join();
    }

private:
    void work() const {
        const int out = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_in nobody{};
        nobody.sin_family = AF_INET;
        nobody.sin_port = htons(9);
        inet_pton(AF_INET, "198.51.100.1", &nobody.sin_addr);
        const std::array<char, 1'200> datagram{};
        while (!m_end) {
            for (const std::clock_t end = std::clock() + CLOCKS_PER_SEC / 50; std::clock() < end;) {
            }
            for (int i = 0; i < 50; ++i)
                sendto(out, datagram.data(), datagram.size(), 0,
                       reinterpret_cast<const sockaddr*>(&nobody), sizeof nobody);
            std::this_thread::sleep_for(20ms);
        }
        close(out);
    }

    std::atomic<bool> m_end = false;
    std::thread m_worker{[this] { work(); }};
};

double percentOff(double value, double other) {
    return other == 0 ? std::abs(value) * 100 : std::abs(value / other - 1) * 100;
}

void compareWithOthers(FigureTable& table) {
    Machine machine;
    const Load load;
    const Reading before = Reading::take();
    machine.sampler.attach(u"begin"_s);
    machine.sampler.detach(u"begin"_s);
    std::this_thread::sleep_for(10s);
    machine.sampler.attach(u"end"_s);
    const Reading after = Reading::take();

    const StatsSampler& stats = machine.sampler;
    const double busy = after.busy - before.busy;
    const double cpu = busy / (busy + after.idle - before.idle);
    const double seconds = after.seconds - before.seconds;
    const double down = (after.down - before.down) / seconds;
    const double up = (after.up - before.up) / seconds;
    std::printf("load %.4f, others read %.4f; memory %.0f, %.0f; down %.0f, %.0f; up %.0f, %.0f\n",
                stats.cpu(), cpu, static_cast<double>(stats.memoryUsed()), after.memory,
                stats.downBytesPerSec(), down, stats.upBytesPerSec(), up);
    table.add("load, off from what others read", percentOff(stats.cpu(), cpu), 2, "%");
    table.add("memory, off from what others read",
              percentOff(static_cast<double>(stats.memoryUsed()), after.memory), 2, "%");
    // Some requests of the neighbourhood come in at any time and are worth nothing.
    if (down > 10'000)
        table.add("bytes received, off from what others read",
                  percentOff(stats.downBytesPerSec(), down), 2, "%");
    table.add("bytes sent, off from what others read", percentOff(stats.upBytesPerSec(), up), 2,
              "%");
}

} // namespace

void measureStatistics(FigureTable& table) {
    table.add("processor time per sample of the statistics", millisecondsPerSample(), 0.5, "ms");
    Machine machine;
    machine.sampler.attach(u"bench"_s);
    machine.sampler.detach(u"bench"_s);
    table.add("wake-ups in 10 s while nobody looks", static_cast<double>(wakeUps(10s)), 0, "");
    compareWithOthers(table);
}

} // namespace quillet
