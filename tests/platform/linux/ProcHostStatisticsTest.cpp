#include "platform/linux/proc/ProcHostStatistics.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QTemporaryDir>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::UnorderedElementsAre;

/// A machine whose kernel's files a test writes.
class ProcHostStatisticsTest : public testing::Test {
protected:
    void write(const fs::path& path, const std::string& text) {
        fs::create_directories((m_root / path).parent_path());
        std::ofstream(m_root / path) << text;
    }
    void remove(const fs::path& path) { fs::remove_all(m_root / path); }

    struct Link {
        std::string name;
        uint64_t received = 0;
        uint64_t sent = 0;
        std::string flags = "0x1003";
    };
    void setLink(const Link& link) {
        const fs::path folder = fs::path("sys/class/net") / link.name;
        write(folder / "flags", link.flags + "\n");
        write(folder / "statistics/rx_bytes", std::to_string(link.received) + "\n");
        write(folder / "statistics/tx_bytes", std::to_string(link.sent) + "\n");
    }
    void setHardwareLink(const Link& link) {
        setLink(link);
        write(fs::path("sys/class/net") / link.name / "device/vendor", "0x8086\n");
    }
    void enslave(const std::string& link, const std::string& master) {
        fs::create_symlink("../" + master, m_root / "sys/class/net" / link / "master");
    }

    /// Attributes with their values, as in "type=Battery status=Full".
    void setSupply(const std::string& name, const std::string& attributes) {
        remove(fs::path("sys/class/power_supply") / name);
        std::string_view rest = attributes;
        for (auto word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
            const std::size_t split = word.find('=');
            write(fs::path("sys/class/power_supply") / name / word.substr(0, split),
                  std::string(word.substr(split + 1)) + "\n");
        }
    }

private:
    QTemporaryDir m_folder;
    fs::path m_root = m_folder.path().toStdString();

protected:
    ProcHostStatistics host{m_root / "proc", m_root / "sys"};
};

TEST(KernelFileTest, aFileThatTheKernelTellsInPiecesIsReadOnceFromItsStart) {
    KernelFile maps("/proc/self/maps");
    static std::array<char, 1 << 20> buffer;
    for (int i = 0; i < 2; ++i) {
        const std::string_view text = maps.read(buffer).value_or("");
        EXPECT_GT(text.size(), 5000u);
        EXPECT_TRUE(text.ends_with('\n'));
        EXPECT_EQ(text.rfind(text.substr(0, text.find('\n'))), 0u);
    }
}

TEST_F(ProcHostStatisticsTest, everyColumnOfTheProcessorsTimeGoesWhereItBelongs) {
    struct Row {
        std::string line;
        std::optional<CPUTicks> ticks;
    };
    const Row rows[] = {
        {"cpu  100 20 30 400 50 6 7 8 90 10\ncpu0 1 2 3 4\n", CPUTicks{100, 51, 450, 20}},
        {"cpu  110 20 30 410\n", CPUTicks{110, 51, 450, 20}}, // of an old kernel; some columns fell
        {"cpu  4294967301 20 30 410 0\n", CPUTicks{5, 51, 450, 20}},
        {"cpu  1 2 3 many\n", {}},
        {"", {}},
        {"cpu  4294967301 20 31 415 0\n", CPUTicks{5, 52, 455, 20}},
    };
    EXPECT_FALSE(host.cpuTicks());
    for (const Row& row : rows) {
        write("proc/stat", row.line);
        EXPECT_EQ(host.cpuTicks(), row.ticks) << row.line;
    }
}

TEST_F(ProcHostStatisticsTest, memoryInUseIsWhatIsNotAvailableWithoutTheCacheOfZfs) {
    EXPECT_EQ(host.physicalMemory(), 0u);
    EXPECT_FALSE(host.memoryPages());
    write("proc/meminfo", "MemTotal:       16000 kB\nMemFree:         200 kB\n");
    EXPECT_FALSE(host.memoryPages());
    write("proc/meminfo", "MemTotal:  16000 kB\nMemFree:  200 kB\nMemAvailable:  12000 kB\n");
    EXPECT_EQ(host.physicalMemory(), 16'384'000u);
    EXPECT_THAT(host.memoryPages(), Optional(MemoryPages{.internal = 4000, .pageSize = 1024}));

    const std::string arcstats = "9 1 0x01 147 39984 2 3\nname  type data\nhits  4  7\n"
                                 "c_min  4  1048576\nc_max  4  9\nsize  4  3145728\n";
    write("proc/spl/kstat/zfs/arcstats", arcstats);
    EXPECT_EQ(host.memoryPages()->purgeable, 2048u);
}

TEST_F(ProcHostStatisticsTest, trafficIsCountedWhereTheHardwareIs) {
    EXPECT_FALSE(host.networkInterfaces());
    setLink({.name = "lo", .flags = "0x9"});
    setLink({.name = "br0"});
    setLink({.name = "tun0", .flags = "0x1002"});
    write("proc/net/route", "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\n"
                            "tun0\t00000000\t0\t1\t0\t0\t0\t00000080\n"
                            "br0\t00000000\t0\t1\t0\t0\t0\t00000000\n");
    const NetworkInterface up{.isUp = true};
    const NetworkInterface lo{.isUp = true, .isLoopback = true};
    EXPECT_THAT(host.networkInterfaces(), Optional(UnorderedElementsAre(up, lo)));
    write("proc/net/route", "");
    EXPECT_THAT(host.networkInterfaces(), Optional(ElementsAre(lo)));
    const std::string none(32, '0');
    const auto route = [&](const std::string& prefix, const std::string& link) {
        return none + ' ' + prefix + ' ' + none + " 00 " + none + " 400 2 0 3 " + link + '\n';
    };
    write("proc/net/ipv6_route", route("80", "tun0") + route("00", "lo") + route("00", "br0"));
    EXPECT_THAT(host.networkInterfaces(), Optional(UnorderedElementsAre(up, lo)));

    setHardwareLink({.name = "eth0"});
    setHardwareLink({.name = "wlan0", .flags = "0x1002"});
    setHardwareLink({.name = "virtual"});
    enslave("eth0", "virtual");
    EXPECT_THAT(host.networkInterfaces(),
                Optional(UnorderedElementsAre(up, lo, NetworkInterface{})));
    write("proc/net/ipv6_route", "");
    for (const char* name : {"eth0", "wlan0", "virtual"})
        remove(fs::path("sys/class/net") / name);
    EXPECT_THAT(host.networkInterfaces(), Optional(ElementsAre(lo)));
}

TEST_F(ProcHostStatisticsTest, aLinkThatComesUpBringsNoBytesOfEarlierTimes) {
    constexpr uint64_t earlier = uint64_t{5} << 40;
    const auto seen = [&](const Link& link) {
        setHardwareLink(link);
        return host.networkInterfaces()->at(0);
    };
    EXPECT_EQ(seen({"eth0", earlier, earlier}), (NetworkInterface{.isUp = true}));
    const NetworkInterface counted{.isUp = true, .received = 70, .sent = 30};
    EXPECT_EQ(seen({"eth0", earlier + 70, earlier + 30}), counted);
    EXPECT_FALSE(seen({"eth0", earlier + 90, earlier + 90, "0x1002"}).isUp);
    EXPECT_EQ(seen({"eth0", earlier + 99, earlier + 99}), (NetworkInterface{.isUp = true}));
    // Made anew by its driver.
    EXPECT_EQ(seen({"eth0", 20, earlier + 110}), (NetworkInterface{.isUp = true}));
    write("sys/class/net/eth0/statistics/rx_bytes", "unknown\n");
    EXPECT_THAT(host.networkInterfaces(), Optional(IsEmpty()));
}

TEST_F(ProcHostStatisticsTest, allPacksOfTheMachineAreOneBatteryAndOthersAreNone) {
    struct Row {
        std::vector<std::string> supplies;
        std::optional<std::vector<PowerSource>> sources;
    };
    const auto battery = [](int64_t now, int64_t full, bool isCharging = false) {
        return std::vector{PowerSource{PowerSource::Type::internalBattery, now, full, isCharging}};
    };
    const std::string energies = "type=Battery status=Discharging capacity=9 "
                                 "energy_now=20000000 energy_full=50000000";
    const Row rows[] = {
        {{"type=Mains online=1", "type=USB"}, std::vector<PowerSource>()},
        {{"type=Battery scope=Device capacity=5 status=Charging"}, std::vector<PowerSource>()},
        {{"type=UPS capacity=90 status=Charging"},
         std::vector{PowerSource{PowerSource::Type::other, 90, 100, true}}},
        {{energies}, battery(20'000'000, 50'000'000)},
        {{"type=Battery status=Charging energy_now=9000000 energy_full=10000000", energies},
         battery(29'000'000, 60'000'000, true)},
        // In charge: 2 Ah of 4 Ah at 10 V.
        {{energies, "type=Battery present=1 charge_now=2000000 charge_full=4000000 "
                    "voltage_min_design=10000000 voltage_now=12000000"},
         battery(40'000'000, 90'000'000)},
        {{energies, "type=Battery status=Full capacity=100"}, battery(140, 200)},
        {{"type=Battery scope=System energy_now=80 energy_full=70"}, battery(70, 70)},
        {{energies, "type=Battery energy_now=? capacity="}, battery(20'000'000, 50'000'000)},
        {{"type=Battery energy_now=9999999999 energy_full=9999999999"}, {}},
        {{"type=Battery status=Charging"}, {}},
    };
    EXPECT_FALSE(host.powerSources());
    for (const Row& row : rows) {
        SCOPED_TRACE(row.supplies.back());
        remove("sys/class/power_supply");
        EXPECT_FALSE(host.powerSources());
        for (std::size_t i = 0; i < row.supplies.size(); ++i)
            setSupply(std::to_string(i), row.supplies[i]);
        EXPECT_EQ(host.powerSources(), row.sources);
    }
}

} // namespace
} // namespace quillet
