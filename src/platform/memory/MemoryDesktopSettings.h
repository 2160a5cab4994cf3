#pragma once

#include "platform/DesktopSettings.h"

#include <map>
#include <set>

namespace quillet {

/// A desktop whose settings tests change behind the program's back.
class MemoryDesktopSettings : public DesktopSettings {
public:
    bool isDark() const override { return m_isDark; }
    bool isMotionReduced() const override { return m_isMotionReduced; }
    void toggleDark(Completion completion) override {
        m_isDark ^= letsToggleDark;
        completion(letsToggleDark);
    }
    QVariant fileManagerValue(FileManagerKey key) const override {
        const auto value = m_fileManager.find(key);
        return value == m_fileManager.end() ? QVariant() : value->second;
    }
    void setFileManagerValue(FileManagerKey key, bool value) override {
        m_fileManager[key] = value;
        written.emplace_back(key, value);
    }
    QString cause(FileManagerKey key) const override {
        return missing.contains(key) ? QStringLiteral("Not in this memory.") : QString();
    }
    void whenKnown(std::function<void()> task) override { task(); }
    void openSettings() override { ++timesOpened; }

    /// What somebody else does.
    void setDark(bool dark) {
        m_isDark = dark;
        notify();
    }
    void setMotionReduced(bool reduced) {
        m_isMotionReduced = reduced;
        notify();
    }
    void store(FileManagerKey key, const QVariant& value) {
        m_fileManager[key] = value;
        notify();
    }

    bool letsToggleDark = true;
    std::set<FileManagerKey> missing; ///< settings that cannot be changed

    std::vector<std::pair<FileManagerKey, bool>> written;
    int timesOpened = 0;

private:
    bool m_isDark = false;
    bool m_isMotionReduced = false;
    std::map<FileManagerKey, QVariant> m_fileManager;
};

} // namespace quillet
