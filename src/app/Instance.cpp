#include "app/Instance.h"

#include "app/AppDelegate.h"
#include "app/BackgroundStart.h"
#include "app/Client.h"
#include "app/ControlService.h"
#include "app/EndSignals.h"
#include "app/Identity.h"
#include "app/RuntimeFolder.h"
#include "app/StandardStreams.h"
#include "app/VerbResult.h"

#include <cstdlib>
#include <QApplication>
#include <QStandardPaths>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

int fail(const QString& message) {
    printError(message);
    return int(ExitCode::failed);
}

QString dataFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/quillet"_s;
}

QString cacheFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/quillet"_s;
}

// An exit handler reaches nothing but globals.
struct Running {
    AppDelegate* delegate = nullptr;
    ControlService* control = nullptr;
} running;

void terminate() {
    const auto [delegate, control] = std::exchange(running, {});
    if (!delegate)
        return;
    // The end may take its time, and who is started meanwhile is meant to run after it.
    control->close();
    delegate->applicationWillTerminate();
}

int runInstance(Verb verb, int& argc, char** argv, const QString& folder, const Backend& backend) {
    if (const auto obstacle = backend.obstacle())
        return fail(*obstacle);
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Quillet"_s);
    QApplication::setApplicationVersion(Identity::version());
    QApplication::setDesktopFileName(Identity::applicationID);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0); // fields draw their own caret

    AppDelegate delegate;
    ControlService control(folder, [&](const Command& command, const ControlService::Reply& reply) {
        delegate.run(command, reply);
    });
    // The name may belong to one with another runtime folder.
    if (!control.open())
        return Client(folder).activate() ? 0 : fail(u"the running Quillet does not answer"_s);

    const EndSignals endSignals([] { QCoreApplication::quit(); });
    auto platform = backend.makePlatform();
    if (const auto* reason = std::get_if<QString>(&platform))
        return fail(*reason);
    if (const auto error = delegate.applicationDidFinishLaunching(
            std::move(std::get<Platform>(platform)), dataFolder(), cacheFolder())) {
        printPlainError(*error);
        return int(ExitCode::failed);
    }
    if (verb == Verb::service)
        moveStandardErrorToLog(folder);

    // The toolkit calls exit() when the display goes away.
    running = {&delegate, &control};
    std::atexit(terminate);
    const int code = QApplication::exec();
    terminate();
    return code;
}

} // namespace

int startQuillet(const Command& command, int& argc, char** argv, const Backend& backend) {
    const auto folder = runtimeFolder();
    if (!folder)
        return int(ExitCode::failed);
    InstanceLock lock(*folder);
    if (lock.acquire())
        return runInstance(command.verb, argc, argv, *folder, backend);
    if (command.verb == Verb::service)
        return int(ExitCode::done);

    const QCoreApplication application(argc, argv);
    if (Client(*folder).activate())
        return int(ExitCode::done);
    if (lock.isHeldElsewhere())
        return fail(u"the running Quillet does not answer"_s);
    // The other one has just ended, so this one takes its place, from a clean start.
    execv("/proc/self/exe", argv);
    return fail(u"Quillet could not be started"_s);
}

} // namespace quillet
