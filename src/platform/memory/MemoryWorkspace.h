#pragma once

#include "platform/Workspace.h"

#include <map>
#include <vector>

namespace quillet {

/// A desktop of scripted applications that remembers what it was asked to do.
class MemoryWorkspace : public Workspace {
public:
    std::optional<RunningApplication> frontmost() const override { return m_frontmost; }
    bool activate(const RunningApplication& application) override;
    std::optional<QString> applicationName(const QString& bundleID) const override;
    std::optional<QString> applicationLocation(const QString& bundleID) const override;
    QImage icon(const QString& path, int pixels) const override;
    bool open(const QUrl& url) override;
    void reveal(const QStringList& paths) override { revealed += paths; }
    void beep() override { ++beeps; }

    /// Brings an application to the front, as its user does; it runs from then on.
    void setFrontmost(std::optional<RunningApplication> application);

    /// Closes all windows of an application. It stays frontmost until another takes over.
    void quit(const RunningApplication& application) { std::erase(m_running, application); }

    /// Installed applications: identifier and name.
    std::map<QString, QString> installed;

    /// Icons by the paths of their files; an application's is at locationOf() its identifier.
    std::map<QString, QImage> icons;
    static QString locationOf(const QString& bundleID);

    bool canOpen = true;

    std::vector<RunningApplication> activated;
    std::vector<QUrl> opened;
    QStringList revealed;
    int beeps = 0;

private:
    std::optional<RunningApplication> m_frontmost;
    std::vector<RunningApplication> m_running;
};

} // namespace quillet
