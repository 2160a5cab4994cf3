#include "platform/linux/proc/NetworkLinks.h"

#include <algorithm>
#include <array>
#include <net/if.h>

namespace quillet {

namespace fs = std::filesystem;

NetworkLinks::Link::Link(const fs::path& folder)
    : flags(folder / "flags"),
      received(folder / "statistics/rx_bytes"),
      sent(folder / "statistics/tx_bytes") {}

NetworkLinks::NetworkLinks(const fs::path& proc, const fs::path& sys)
    : m_folder(sys / "class/net"), m_routes(proc / "net/route") {}

std::optional<std::vector<NetworkInterface>> NetworkLinks::read() {
    const auto names = carriers();
    if (!names) {
        m_links.clear();
        return std::nullopt;
    }
    std::erase_if(m_links, [&](const auto& entry) { return !names->contains(entry.first); });
    std::vector<NetworkInterface> interfaces;
    for (const std::string& name : *names) {
        const auto link = m_links.try_emplace(name, m_folder / name).first;
        if (const auto interface = read(link->second))
            interfaces.push_back(*interface);
        else
            m_links.erase(link); // it counts from anew when it can be read again
    }
    return interfaces;
}

std::optional<std::set<std::string>> NetworkLinks::carriers() {
    std::error_code error;
    fs::directory_iterator entry(m_folder, error);
    if (error)
        return std::nullopt;
    std::set<std::string> names;
    std::set<std::string> masters;
    for (; entry != fs::directory_iterator(); entry.increment(error)) {
        if (!fs::exists(entry->path() / "device", error))
            continue;
        names.insert(entry->path().filename());
        const fs::path master = fs::read_symlink(entry->path() / "master", error);
        if (!error)
            masters.insert(master.filename());
    }
    // Virtual machines have masters with hardware of their own.
    for (const std::string& master : masters)
        names.erase(master);
    if (names.empty()) {
        if (const std::string name = defaultRoute(); !name.empty())
            names.insert(name);
    }
    return names;
}

std::string NetworkLinks::defaultRoute() {
    std::array<char, 4096> buffer;
    std::string_view routes = m_routes.read(buffer).value_or(std::string_view());
    while (!routes.empty()) {
        std::string_view line = routes.substr(0, routes.find('\n'));
        routes.remove_prefix(std::min(line.size() + 1, routes.size()));
        std::array<std::string_view, 8> columns; // name, destination, … and mask
        std::generate(columns.begin(), columns.end(), [&] { return takeWord(line); });
        if (columns[1] == "00000000" && columns[7] == "00000000")
            return std::string(columns[0]);
    }
    return {};
}

std::optional<NetworkInterface> NetworkLinks::read(Link& link) {
    const auto flags = link.flags.readNumber<unsigned>(16);
    const auto received = link.received.readNumber<uint64_t>();
    const auto sent = link.sent.readNumber<uint64_t>();
    if (!flags || !received || !sent)
        return std::nullopt;
    const bool isUp = *flags & IFF_UP;
    if (!isUp)
        link.origin.reset();
    else if (!link.origin || *received < link.origin->first || *sent < link.origin->second)
        link.origin.emplace(*received, *sent);
    const auto [receivedBefore, sentBefore] = link.origin.value_or(std::pair(*received, *sent));
    return NetworkInterface{.isUp = isUp,
                            .isLoopback = (*flags & IFF_LOOPBACK) != 0,
                            .received = *received - receivedBefore,
                            .sent = *sent - sentBefore};
}

} // namespace quillet
