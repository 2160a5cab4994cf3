#include "stats/StatsSampler.h"
#include "platform/memory/MemoryHostStatistics.h"

#include <gtest/gtest.h>
#include <limits>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QString menu = u"popover"_s;
const QString title = u"menubar"_s;

class StatsSamplerTest : public testing::Test {
protected:
    StatsSamplerTest() {
        host.interfaces->push_back({.isUp = true});
        sampler.onTick = [this] { ++samples; };
    }

    NetworkInterface& link() { return host.interfaces->front(); }
    void setBattery(std::optional<int64_t> current, std::optional<int64_t> max, bool charging) {
        host.sources = {
            {.currentCapacity = 1, .maxCapacity = 2, .isCharging = true},
            {PowerSource::Type::internalBattery, current, max, charging},
        };
    }
    void nextSample() { scheduler.advance(StatsSampler::interval); }

    MemoryScheduler scheduler;
    MemoryHostStatistics host{scheduler};
    StatsSampler sampler{host, scheduler};
    int samples = 0;
};

TEST_F(StatsSamplerTest, samplesAreTakenOnlyWhileSomebodyIsAttached) {
    sampler.attach(menu);
    sampler.attach(title);
    EXPECT_EQ(samples, 1) << "one at once, for the first only";
    nextSample();
    EXPECT_EQ(samples, 2);

    sampler.detach(menu);
    sampler.detach(u"nobody"_s);
    nextSample();
    EXPECT_EQ(samples, 3);
    sampler.detach(title);
    EXPECT_TRUE(scheduler.isIdle()) << "nothing is left that could wake the machine";
}

TEST_F(StatsSamplerTest, theLoadIsTheShareOfTicksThatWereNotIdle) {
    struct Row {
        CPUTicks before, after;
        double load;
    };
    constexpr uint32_t top = std::numeric_limits<uint32_t>::max();
    for (const Row& row : {Row{{100, 100, 100, 100}, {110, 120, 160, 110}, 0.4},
                           Row{{top - 4, 0, top, 0}, {5, 0, 29, 0}, 0.25}, // wrapped
                           Row{{7, 7, 7, 7}, {7, 7, 7, 7}, 0}}) {
        StatsSampler fresh(host, scheduler);
        host.ticks = row.before;
        fresh.attach(menu);
        EXPECT_EQ(fresh.cpu(), 0) << "the first sample has nothing to compare with";
        host.ticks = row.after;
        nextSample();
        EXPECT_DOUBLE_EQ(fresh.cpu(), row.load);
    }
}

TEST_F(StatsSamplerTest, memoryInUseIsWhatNobodyWouldGiveBack) {
    const std::pair<MemoryPages, uint64_t> rows[] = {
        {{.internal = 10, .purgeable = 4, .wired = 3, .compressor = 2, .pageSize = 1024}, 11264},
        {{.internal = 10, .purgeable = 11, .wired = 1, .pageSize = 4096}, 4096},
        {{.internal = uint64_t{1} << 32, .pageSize = 16384}, uint64_t{1} << 46},
    };
    for (const auto& [pages, used] : rows) {
        StatsSampler fresh(host, scheduler);
        host.pages = pages;
        fresh.attach(menu);
        EXPECT_EQ(fresh.memoryUsed(), used);
    }
    host.physical = 0;
    StatsSampler unknown(host, scheduler);
    unknown.attach(menu);
    EXPECT_EQ(unknown.memoryHistory().back(), 0);
}

TEST_F(StatsSamplerTest, ratesCountLinksThatAreUpAndLeadElsewhere) {
    host.interfaces = {{.isUp = true, .received = 100},
                       {.isUp = true, .received = 50, .sent = 10},
                       {.isUp = false, .received = 7, .sent = 7},
                       {.isUp = true, .isLoopback = true, .received = 7, .sent = 7}};
    sampler.attach(menu);
    EXPECT_EQ(sampler.downBytesPerSec(), 0);
    for (NetworkInterface& interface : *host.interfaces) {
        interface.received += 1000;
        interface.sent += 300;
    }
    nextSample();
    EXPECT_EQ(sampler.downBytesPerSec(), 1000);
    EXPECT_EQ(sampler.upBytesPerSec(), 300);

    host.interfaces = {{.isUp = true, .isLoopback = true}};
    nextSample();
    nextSample();
    EXPECT_EQ(sampler.downBytesPerSec(), 0) << "no link is left";
}

TEST_F(StatsSamplerTest, aTotalThatFellLeavesBothRatesAndTheNextSampleMeasuresFromIt) {
    link() = {.isUp = true, .received = 5000, .sent = 5000};
    sampler.attach(menu);
    struct Row {
        uint64_t received, sent;
        double down, up;
    };
    for (const Row& row : {Row{7000, 9000, 1000, 2000}, Row{100, 20000, 1000, 2000},
                           Row{500, 20000, 200, 0}, Row{9000, 100, 200, 0}}) {
        link() = {.isUp = true, .received = row.received, .sent = row.sent};
        nextSample();
        EXPECT_EQ(sampler.downBytesPerSec(), row.down);
        EXPECT_EQ(sampler.upBytesPerSec(), row.up);
    }
}

TEST_F(StatsSamplerTest, afterAPauseOrSleepTheFirstValuesAreAveragesOverIt) {
    sampler.attach(menu);
    sampler.detach(menu);
    scheduler.advance(5min);
    scheduler.setNow(scheduler.now().addDays(-1));
    host.ticks = CPUTicks{.user = 300, .idle = 900};
    link().received = 300'000;
    sampler.attach(menu);
    EXPECT_DOUBLE_EQ(sampler.cpu(), 0.25);
    EXPECT_DOUBLE_EQ(sampler.downBytesPerSec(), 1000);

    host.sleep(8h);
    link().received += 28'802'000;
    nextSample();
    EXPECT_DOUBLE_EQ(sampler.downBytesPerSec(), 1000);
}

TEST_F(StatsSamplerTest, theBatteryIsTheFirstInternalOneThatTellsItsCharge) {
    struct Row {
        std::optional<int64_t> current, max;
        std::optional<int> percent;
    };
    for (const Row& row : {Row{1, 3, 33}, Row{0, 1, 0}, Row{50'000'000, 60'000'000, 83},
                           Row{5, 0, {}}, Row{{}, 10, {}}, Row{10, {}, {}}}) {
        StatsSampler fresh(host, scheduler);
        setBattery(row.current, row.max, row.percent.has_value());
        fresh.attach(menu);
        EXPECT_EQ(fresh.battery(), row.percent);
        EXPECT_EQ(fresh.charging(), row.percent.has_value());
    }
    setBattery(80, 100, false);
    sampler.attach(menu);
    host.sources->clear(); // taken out
    nextSample();
    EXPECT_EQ(sampler.battery(), std::nullopt);
}

TEST_F(StatsSamplerTest, whatCannotBeMeasuredKeepsItsValueAndTheSampleGoesOn) {
    setBattery(80, 100, true);
    sampler.attach(menu);
    host.ticks = CPUTicks{.user = 1, .idle = 1};
    link().received = 2000;
    nextSample();

    host.ticks.reset();
    host.pages.reset();
    host.interfaces.reset();
    host.sources.reset();
    nextSample();
    host.interfaces.emplace();
    nextSample();
    EXPECT_EQ(samples, 4);
    EXPECT_EQ(sampler.cpuHistory().back(), 0.5);
    EXPECT_EQ(sampler.memoryHistory().back(), 0.5);
    EXPECT_EQ(sampler.downHistory().back(), 1000);
    EXPECT_EQ(sampler.battery(), 80);

    host.ticks = CPUTicks{.user = 1, .idle = 4};
    host.interfaces = std::vector<NetworkInterface>{{.isUp = true, .received = 8000}};
    nextSample();
    EXPECT_EQ(sampler.cpu(), 0) << "since the last reading that worked";
    EXPECT_EQ(sampler.downBytesPerSec(), 1000);
}

} // namespace
} // namespace quillet
