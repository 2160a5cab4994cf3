#include "platform/memory/MemoryWorkspace.h"

#include <algorithm>

namespace quillet {

bool MemoryWorkspace::activate(const RunningApplication& application) {
    if (std::find(m_running.begin(), m_running.end(), application) == m_running.end())
        return false;
    activated.push_back(application);
    m_frontmost = application;
    return true;
}

std::optional<QString> MemoryWorkspace::applicationName(const QString& bundleID) const {
    const auto application = installed.find(bundleID);
    if (application == installed.end())
        return std::nullopt;
    return application->second;
}

std::optional<QString> MemoryWorkspace::applicationLocation(const QString& bundleID) const {
    return installed.contains(bundleID) ? std::optional(locationOf(bundleID)) : std::nullopt;
}

QImage MemoryWorkspace::icon(const QString& path, int pixels) const {
    const auto icon = icons.find(path);
    if (icon == icons.end() || std::max(icon->second.width(), icon->second.height()) <= pixels)
        return icon == icons.end() ? QImage() : icon->second;
    return icon->second.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QString MemoryWorkspace::locationOf(const QString& bundleID) {
    return QStringLiteral("/applications/") + bundleID;
}

bool MemoryWorkspace::open(const QUrl& url) {
    if (!canOpen)
        return false;
    opened.push_back(url);
    return true;
}

void MemoryWorkspace::setFrontmost(std::optional<RunningApplication> application) {
    m_frontmost = std::move(application);
    if (m_frontmost &&
        std::find(m_running.begin(), m_running.end(), *m_frontmost) == m_running.end())
        m_running.push_back(*m_frontmost);
}

} // namespace quillet
