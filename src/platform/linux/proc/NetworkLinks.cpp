#include "platform/linux/proc/NetworkLinks.h"

#include <algorithm>
#include <array>
#include <net/if.h>

namespace quillet {

namespace fs = std::filesystem;

namespace {

constexpr const char* loopback = "lo";

} // namespace

NetworkLinks::Link::Link(const fs::path& folder)
    : flags(folder / "flags"),
      received(folder / "statistics/rx_bytes"),
      sent(folder / "statistics/tx_bytes") {}

NetworkLinks::NetworkLinks(const fs::path& proc, const fs::path& sys)
    : m_folder(sys / "class/net"),
      m_routes{{{KernelFile(proc / "net/route"), 1, 7, 0},
                {KernelFile(proc / "net/ipv6_route"), 0, 1, 9}}} {}

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
    for (Routes& routes : m_routes) {
        if (!names.empty())
            break;
        if (const std::string name = defaultRoute(routes); !name.empty())
            names.insert(name);
    }
    names.insert(loopback);
    return names;
}

/// Routes through the loopback say what cannot be reached.
std::string NetworkLinks::defaultRoute(Routes& routes) {
    const auto isZero = [](std::string_view word) {
        return !word.empty() && word.find_first_not_of('0') == std::string_view::npos;
    };
    std::array<char, 4096> buffer;
    std::string_view lines = routes.file.read(buffer).value_or(std::string_view());
    while (!lines.empty()) {
        std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        std::array<std::string_view, 10> columns;
        std::generate(columns.begin(), columns.end(), [&] { return takeWord(line); });
        const std::string_view link = columns[routes.link];
        if (isZero(columns[routes.destination]) && isZero(columns[routes.mask]) && link != loopback)
            return std::string(link);
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
