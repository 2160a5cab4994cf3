#pragma once

#include "platform/Preferences.h"

namespace quillet {

/// The settings of the clipboard history.
namespace ClipboardPreferences {
inline const PreferenceKey<bool> enabled{QStringLiteral("clipboard.enabled"), true};

/// Identifiers of the applications whose copies are never recorded.
inline const PreferenceKey<QStringList> ignoredApps{
    QStringLiteral("clipboard.ignoredApps"),
    {QStringLiteral("com.apple.keychainaccess"), QStringLiteral("com.apple.Passwords"),
     QStringLiteral("com.1password.1password"), QStringLiteral("com.agilebits.onepassword7"),
     QStringLiteral("com.bitwarden.desktop"), QStringLiteral("com.lastpass.LastPass")}};

/// How long and how many unpinned items are kept. Below 1 counts as 1.
inline const PreferenceKey<int> historyDays{QStringLiteral("clipboard.historyDays"), 30};
inline const PreferenceKey<int> maxItems{QStringLiteral("clipboard.maxItems"), 500};

/// Larger copies are not recorded.
inline const PreferenceKey<int> maxTextBytes{QStringLiteral("clipboard.maxTextBytes"), 16 << 20};
inline const PreferenceKey<int> maxImageBytes{QStringLiteral("clipboard.maxImageBytes"), 64 << 20};

inline void registerDefaults(Preferences& preferences) {
    preferences.registerDefault(enabled);
    preferences.registerDefault(ignoredApps);
    preferences.registerDefault(historyDays);
    preferences.registerDefault(maxItems);
    preferences.registerDefault(maxTextBytes);
    preferences.registerDefault(maxImageBytes);
}
} // namespace ClipboardPreferences

} // namespace quillet
