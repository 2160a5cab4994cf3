#include "contracts/DesktopSettingsContract.h"
#include "contracts/FocusedWindowContract.h"
#include "contracts/HotKeysContract.h"
#include "contracts/KeyboardGrabContract.h"
#include "contracts/PanelsContract.h"
#include "contracts/PasteboardContract.h"
#include "contracts/PreferencesContract.h"
#include "contracts/SchedulerContract.h"
#include "contracts/WorkspaceContract.h"
#include "platform/memory/MemoryPlatform.h"

namespace quillet {

using namespace Qt::StringLiterals;

/// What is under way arrives as soon as the time does not stand still.
struct MemoryBackend {
    MemoryScheduler scheduler;

    template<typename Condition>
    bool waitFor(Condition condition) {
        scheduler.advance(milliseconds(0));
        return condition();
    }
};

struct MemorySchedulerBackend {
    std::unique_ptr<Scheduler> scheduler = std::make_unique<MemoryScheduler>();

    void letPass(milliseconds span) {
        if (scheduler)
            static_cast<MemoryScheduler&>(*scheduler).advance(span);
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, SchedulerContract, MemorySchedulerBackend);

struct MemoryPreferencesBackend {
    MemoryPreferences stored;

    Preferences& preferences() { return stored; }
    void reopen() {}
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, PreferencesContract, MemoryPreferencesBackend);

struct MemoryPasteboardBackend : MemoryBackend {
    MemoryPasteboard memory;

    Pasteboard& pasteboard() { return memory; }
    void copyElsewhere(const std::vector<std::pair<QString, QByteArray>>& items) {
        std::vector<MemoryPasteboard::Item> copied;
        for (const auto& [type, bytes] : items)
            copied.push_back({type, bytes});
        memory.copyFrom(std::move(copied));
    }
    std::optional<QByteArray> pasteElsewhere(const QString& type) { return memory.bytes(type); }
    void holdAnswers() { memory.holdReads(); }
    void quitElsewhere() { memory.ownerQuits(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, PasteboardContract, MemoryPasteboardBackend);

struct MemoryWorkspaceBackend : MemoryBackend {
    MemoryWorkspace memory;

    Workspace& workspace() { return memory; }
    void showApplication(const QString& bundleID) {
        memory.setFrontmost(RunningApplication{bundleID, {}, 0});
    }
    void closeApplication(const QString& bundleID) { memory.quit({bundleID, {}, 0}); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, WorkspaceContract, MemoryWorkspaceBackend);

struct MemoryFocusedWindowBackend : MemoryBackend {
    MemoryFocusedWindow memory{scheduler};
    FocusedWindow::Identity opened = 0;

    FocusedWindow& windows() { return memory; }
    void open(const Rect& frame) { opened = memory.open(frame); }
    void close() { memory.close(opened); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, FocusedWindowContract, MemoryFocusedWindowBackend);

struct MemoryHotKeysBackend : MemoryBackend {
    MemoryHotKeys memory{scheduler};
    std::set<MemoryHotKeys::Combination> takenElsewhere;

    HotKeyService& hotKeys() { return memory; }
    void takeElsewhere(uint32_t keyCode, uint32_t modifiers) {
        takenElsewhere.insert({keyCode, modifiers});
        memory.taken = takenElsewhere;
    }
    void press(uint32_t keyCode, uint32_t modifiers) {
        memory.press({keyCode, modifiers});
        scheduler.advance(milliseconds(0));
    }
    void changeLayout(bool isFirst) {
        memory.changeKeyboard(isFirst ? takenElsewhere : std::set<MemoryHotKeys::Combination>());
        scheduler.advance(milliseconds(0));
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, HotKeysContract, MemoryHotKeysBackend);

struct MemoryPanelsBackend {
    MemoryPanels memory;

    Panels& panels() { return memory; }
    void clickOutside() { memory.clickOutside(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, PanelsContract, MemoryPanelsBackend);

struct MemoryKeyboardGrabBackend {
    MemoryKeyboardGrab memory;

    KeyboardGrab& keyboard() { return memory; }
    void takeElsewhere() { memory.isTakenElsewhere = true; }
    void giveBackElsewhere() { memory.isTakenElsewhere = false; }
    bool keysReachPrograms() { return !memory.isHeld(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, KeyboardGrabContract, MemoryKeyboardGrabBackend);

struct MemoryDesktopSettingsBackend : MemoryBackend {
    using Key = DesktopSettings::FileManagerKey;
    MemoryDesktopSettings memory;

    MemoryDesktopSettingsBackend() { memory.missing = {Key::createDesktop}; }

    DesktopSettings& desktop() { return memory; }
    bool showsHiddenFiles() { return memory.fileManagerValue(Key::showAllFiles).toBool(); }
    void setDarkElsewhere(bool dark) { memory.setDark(dark); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, DesktopSettingsContract, MemoryDesktopSettingsBackend);

} // namespace quillet
