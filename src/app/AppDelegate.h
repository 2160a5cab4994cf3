#pragma once

#include "app/CommandLine.h"
#include "app/Composition.h"
#include "app/VerbResult.h"

#include <optional>

namespace quillet {

/// The spine of the program: builds every long-lived service in a fixed order when launching has
/// finished, owns them for the life of the process, and takes them down again. Created empty by
/// the process's start, which also hands it the verbs of other processes.
class AppDelegate {
public:
    using Reply = std::function<void(VerbResult)>;

    AppDelegate();
    ~AppDelegate();

    /// The launch. Returns the fatal message when it cannot be completed.
    std::optional<QString> applicationDidFinishLaunching(Platform platform,
                                                         const QString& dataFolder,
                                                         const QString& cacheFolder);
    void applicationWillTerminate();

    /// Carries out a verb that concerns the running program. `reply` is called once, inside the
    /// call or, where the output takes its time, later.
    void run(const Command& command, const Reply& reply);

private:
    void followDesktop();
    void createPermissions();
    void createSwitches();
    void registerSoundDefaults();
    std::optional<QString> openContainer(const QString& dataFolder);
    void startClipboard();
    void createShelf(const QString& cacheFolder);
    void registerShortcuts();
    void createSetupGuide();
    void restoreKeepAwake();
    void releaseKeepAwake();
    void offerAlternatives();
    void welcome();
    void prepareShelf();
    void toggleShelf();

    VerbResult carryOut(const Command& command);
    VerbResult snap(const QString& where);
    void reportStats(const Command& command, const Reply& reply);
    QByteArray status() const;

    std::unique_ptr<Composition> m_services;
};

} // namespace quillet
