#pragma once

#include "platform/DesktopSettings.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace quillet {

/// A desktop whose settings tests change behind the program's back.
class MemoryDesktopSettings : public DesktopSettings {
public:
    bool isDark() const override { return m_isDark; }
    bool isMotionReduced() const override { return m_isMotionReduced; }
    void makeDark(bool dark, Completion completion) override {
        if (letsToggleDark)
            m_isDark = dark;
        if (!isSlow)
            return completion(letsToggleDark);
        m_toggles.push_back(std::move(completion));
        notify();
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
    void refresh(std::function<void()> task) override {
        for (const auto& [key, value] : std::exchange(unnoticed, {}))
            store(key, value);
        task();
    }
    void retry() override {}
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

    /// The toggles that a slow desktop works on come to their end.
    void endToggles() {
        for (const Completion& completion : std::exchange(m_toggles, {}))
            completion(letsToggleDark);
    }

    bool letsToggleDark = true;
    bool isSlow = false;                          ///< to toggle
    std::set<FileManagerKey> missing;             ///< settings that cannot be changed
    std::map<FileManagerKey, QVariant> unnoticed; ///< what somebody else stored; read at a refresh

    std::vector<std::pair<FileManagerKey, bool>> written;
    int timesOpened = 0;

private:
    bool m_isDark = false;
    bool m_isMotionReduced = false;
    std::vector<Completion> m_toggles;
    std::map<FileManagerKey, QVariant> m_fileManager;
};

} // namespace quillet
