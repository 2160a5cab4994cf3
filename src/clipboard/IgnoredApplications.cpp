#include "clipboard/IgnoredApplications.h"

#include <algorithm>
#include <vector>

namespace quillet {

namespace {

struct Aliases {
    QLatin1StringView listed;
    std::vector<QLatin1StringView> identifiers;
};

/// Desktop-file ids and window classes, lower case, since programs spell their class both ways.
const std::vector<Aliases>& aliasTable() {
    using namespace Qt::Literals::StringLiterals;
    static const std::vector<Aliases> table{
        {"com.apple.keychainaccess"_L1,
         {"org.gnome.seahorse.application"_L1, "org.gnome.seahorse"_L1, "seahorse"_L1,
          "org.kde.kwalletmanager5"_L1, "kwalletmanager5"_L1, "org.kde.kwalletmanager"_L1,
          "kwalletmanager"_L1}},
        {"com.apple.Passwords"_L1,
         {"org.gnome.world.secrets"_L1, "org.gnome.passwordsafe"_L1, "org.keepassxc.keepassxc"_L1,
          "keepassxc"_L1, "keepass2"_L1, "keepassx"_L1}},
        {"com.1password.1password"_L1, {"1password"_L1, "com.onepassword.onepassword"_L1}},
        {"com.agilebits.onepassword7"_L1, {"1password"_L1, "com.onepassword.onepassword"_L1}},
        {"com.bitwarden.desktop"_L1, {"bitwarden"_L1, "com.bitwarden.desktop"_L1}},
        {"com.lastpass.LastPass"_L1, {"lastpass"_L1, "com.lastpass.lastpass"_L1}},
    };
    return table;
}

} // namespace

namespace {

bool isIgnoredIdentifier(const QString& bundleID, const QStringList& ignored) {
    if (bundleID.isEmpty())
        return false;
    if (ignored.contains(bundleID))
        return true;
    const QString identifier = bundleID.toLower();
    return std::ranges::any_of(aliasTable(), [&](const Aliases& row) {
        return ignored.contains(row.listed) &&
               std::ranges::find(row.identifiers, identifier) != row.identifiers.end();
    });
}

} // namespace

bool isIgnoredApplication(const RunningApplication& application, const QStringList& ignored) {
    // A launcher may have any name; what the windows call themselves tells as well.
    return isIgnoredIdentifier(application.bundleID, ignored) ||
           std::ranges::any_of(application.otherIDs,
                               [&](const QString& id) { return isIgnoredIdentifier(id, ignored); });
}

} // namespace quillet
