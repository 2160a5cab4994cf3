#pragma once

#include "support/PrivateBus.h"

namespace quillet {

/// The portal through which a desktop shares its settings; of the older kind where it only knows
/// how to wrap them twice.
class FakePortal : public FakeService {
public:
    using Setting = std::pair<QString, QString>; ///< namespace and key
    static inline const Setting colorScheme{QStringLiteral("org.freedesktop.appearance"),
                                            QStringLiteral("color-scheme")};
    static inline const Setting reducedMotion{QStringLiteral("org.freedesktop.appearance"),
                                              QStringLiteral("reduced-motion")};
    static inline const Setting animations{QStringLiteral("org.gnome.desktop.interface"),
                                           QStringLiteral("enable-animations")};

    FakePortal(PrivateBus& bus, std::map<Setting, QVariant> stored, bool isOld = false);

    /// What somebody does in the desktop's settings.
    void change(const Setting& setting, const QVariant& value);

private:
    std::map<Setting, QVariant> m_values;
};

} // namespace quillet
