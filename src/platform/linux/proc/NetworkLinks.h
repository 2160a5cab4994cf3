#pragma once

#include "platform/HostStatistics.h"
#include "platform/linux/proc/KernelFile.h"

#include <array>
#include <map>
#include <set>
#include <string>

namespace quillet {

/// The links with hardware behind them. What the system stacks on these (bridges, bonds, tunnels)
/// or keeps to itself (ends of containers) would count bytes twice. Where there is no hardware, as
/// inside a container, the link that the default route takes stands for it. The loopback is listed
/// too: without it, a machine that has lost its only link would look as if it could not be
/// measured.
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
    static std::optional<NetworkInterface> read(Link& link);

    /// A list of routes, and in which columns its lines tell what.
    struct Routes {
        KernelFile file;
        std::size_t destination;
        std::size_t mask;
        std::size_t link;
    };
    static std::string defaultRoute(Routes& routes);

    std::filesystem::path m_folder;
    std::array<Routes, 2> m_routes;
    std::map<std::string, Link> m_links;
};

} // namespace quillet
