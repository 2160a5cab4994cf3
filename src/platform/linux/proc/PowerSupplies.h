#pragma once

#include "platform/HostStatistics.h"
#include "platform/linux/proc/KernelFile.h"

#include <map>
#include <string>

namespace quillet {

/// The machine's batteries, all packs as one, and the uninterruptible supplies it stands at. Mains
/// and the batteries of mice and headsets are none of these; the latter are never asked for their
/// charge, which may take seconds over the air.
class PowerSupplies {
public:
    /// `sys` is the folder that is usually mounted under this name.
    explicit PowerSupplies(const std::filesystem::path& sys);

    /// Absent where the system tells of no supplies at all, and while there are batteries of which
    /// none can be read.
    std::optional<std::vector<PowerSource>> read();

private:
    enum class Kind { internalBattery, uninterruptible, elsewhere };

    struct Charge {
        int64_t now = 0;
        int64_t full = 0;
        bool isEnergy = false; ///< in millionths of a watt hour, so that packs can be added up
    };

    struct Supply {
        explicit Supply(const std::filesystem::path& folder);

        Kind kind();
        bool isPresent();
        bool isCharging();
        std::optional<Charge> charge();

        KernelFile type;
        KernelFile scope;
        KernelFile present;
        KernelFile status;
        KernelFile percent;
        KernelFile energyNow;
        KernelFile energyFull;
        KernelFile chargeNow;
        KernelFile chargeFull;
        KernelFile nominalVoltage;
        KernelFile voltage;
    };

    static Charge total(const std::vector<Charge>& packs);

    std::filesystem::path m_folder;
    std::map<std::string, Supply> m_supplies;
};

} // namespace quillet
