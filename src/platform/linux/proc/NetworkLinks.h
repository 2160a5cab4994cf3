#pragma once

#include "platform/HostStatistics.h"
#include "platform/linux/proc/KernelFile.h"

#include <map>
#include <set>
#include <string>

namespace quillet {

/// The links with hardware behind them. What the system stacks on these (bridges, bonds, tunnels)
/// or keeps to itself (ends of containers) would count bytes twice. Where there is no hardware, as
/// inside a container, the link that the default route takes stands for it.
class NetworkLinks {
public:
    /// `proc` and `sys` are the folders that are usually mounted under these names.
    NetworkLinks(const std::filesystem::path& proc, const std::filesystem::path& sys);

    std::optional<std::vector<NetworkInterface>> read();

private:
    struct Link {
        explicit Link(const std::filesystem::path& folder);

        KernelFile flags;
        KernelFile received;
        KernelFile sent;
        /// What the counters stood at when it came up. Many drivers count on from before, and a
        /// week's traffic must not look as if it came in an instant.
        std::optional<std::pair<uint64_t, uint64_t>> origin{};
    };

    std::optional<std::set<std::string>> carriers();
    std::string defaultRoute();
    static std::optional<NetworkInterface> read(Link& link);

    std::filesystem::path m_folder;
    KernelFile m_routes;
    std::map<std::string, Link> m_links;
};

} // namespace quillet
