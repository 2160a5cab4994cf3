#include "platform/linux/proc/PowerSupplies.h"

#include <algorithm>
#include <array>
#include <set>

namespace quillet {

namespace fs = std::filesystem;

namespace {

bool says(KernelFile& file, std::string_view word) {
    std::array<char, 64> buffer;
    auto text = file.read(buffer);
    return text && takeWord(*text) == word;
}

/// No supply's figure is larger than the kernel's own type for them, so sums and products fit.
std::optional<int64_t> figure(KernelFile& file) {
    return file.readNumber<int32_t>();
}

} // namespace

PowerSupplies::Supply::Supply(const fs::path& folder)
    : type(folder / "type"),
      scope(folder / "scope"),
      present(folder / "present"),
      status(folder / "status"),
      percent(folder / "capacity"),
      energyNow(folder / "energy_now"),
      energyFull(folder / "energy_full"),
      chargeNow(folder / "charge_now"),
      chargeFull(folder / "charge_full"),
      nominalVoltage(folder / "voltage_min_design"),
      voltage(folder / "voltage_now") {}

PowerSupplies::Kind PowerSupplies::Supply::kind() {
    if (says(type, "UPS"))
        return Kind::uninterruptible;
    return says(type, "Battery") && !says(scope, "Device") ? Kind::internalBattery
                                                           : Kind::elsewhere;
}

bool PowerSupplies::Supply::isPresent() {
    return !says(present, "0");
}

bool PowerSupplies::Supply::isCharging() {
    return says(status, "Charging");
}

std::optional<PowerSupplies::Charge> PowerSupplies::Supply::charge() {
    const auto made = [](std::optional<int64_t> now, std::optional<int64_t> full,
                         bool isEnergy) -> std::optional<Charge> {
        if (!now || !full || *full < 1)
            return std::nullopt;
        // An old pack may hold more than it was last known to.
        return Charge{std::clamp<int64_t>(*now, 0, *full), *full, isEnergy};
    };
    if (const auto energy = made(figure(energyNow), figure(energyFull), true))
        return energy;
    if (auto charge = made(figure(chargeNow), figure(chargeFull), false)) {
        const auto nominal = figure(nominalVoltage);
        const int64_t volts = (nominal ? nominal : figure(voltage)).value_or(0);
        if (const int64_t energy = charge->full * volts / 1'000'000; energy > 0)
            return Charge{charge->now * volts / 1'000'000, energy, true};
        return charge;
    }
    return made(figure(percent), 100, false);
}

PowerSupplies::PowerSupplies(const fs::path& sys) : m_folder(sys / "class/power_supply") {}

std::optional<std::vector<PowerSource>> PowerSupplies::read() {
    std::error_code error;
    fs::directory_iterator entry(m_folder, error);
    if (error) {
        m_supplies.clear();
        return std::nullopt;
    }
    std::set<std::string> names;
    for (; entry != fs::directory_iterator(); entry.increment(error))
        names.insert(entry->path().filename());
    std::erase_if(m_supplies, [&](const auto& known) { return !names.contains(known.first); });

    std::vector<PowerSource> sources;
    std::vector<Charge> packs;
    bool hasBattery = false;
    bool isCharging = false;
    for (const std::string& name : names) {
        Supply& supply = m_supplies.try_emplace(name, m_folder / name).first->second;
        const Kind kind = supply.kind();
        if (kind == Kind::elsewhere || !supply.isPresent())
            continue;
        const auto charge = supply.charge();
        if (kind == Kind::internalBattery) {
            hasBattery = true;
            isCharging |= supply.isCharging();
            if (charge)
                packs.push_back(*charge);
        } else if (charge) {
            sources.push_back(
                {PowerSource::Type::other, charge->now, charge->full, supply.isCharging()});
        }
    }
    if (hasBattery && packs.empty())
        return std::nullopt;
    if (hasBattery) {
        const Charge battery = total(packs);
        sources.push_back(
            {PowerSource::Type::internalBattery, battery.now, battery.full, isCharging});
    }
    return sources;
}

PowerSupplies::Charge PowerSupplies::total(const std::vector<Charge>& packs) {
    if (packs.size() == 1)
        return packs.front();
    // Packs whose energies are not all known count the same each.
    const bool addUp =
        std::all_of(packs.begin(), packs.end(), [](const Charge& pack) { return pack.isEnergy; });
    Charge sum;
    for (const Charge& pack : packs) {
        sum.now += addUp ? pack.now : pack.now * 100 / pack.full;
        sum.full += addUp ? pack.full : 100;
    }
    return sum;
}

} // namespace quillet
