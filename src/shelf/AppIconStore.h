#pragma once

#include "platform/Workspace.h"

#include <map>
#include <QColor>
#include <QImage>

namespace quillet {

/// Icons of the applications that clips come from, and a colour for each that goes with its icon.
/// Both are looked up once and kept for the run.
class AppIconStore {
public:
    explicit AppIconStore(const Workspace& workspace) : m_workspace(workspace) {}

    /// Absent for an application that is not installed.
    std::optional<QImage> icon(const std::optional<QString>& bundleID);

    /// Gray where there is no icon to take a colour from.
    QColor tint(const std::optional<QString>& bundleID);

private:
    const Workspace& m_workspace;
    std::map<QString, QImage> m_icons;
    std::map<QString, QColor> m_tints;
};

/// The colour that an icon gives the impression of, dark enough to carry white text. Absent for an
/// icon that is all but transparent.
std::optional<QColor> dominantColor(const QImage& icon);

} // namespace quillet
