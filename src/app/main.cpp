#include "app/Client.h"
#include "app/CommandLine.h"
#include "app/Identity.h"
#include "app/Instance.h"
#include "app/Logging.h"
#include "app/RuntimeFolder.h"
#include "app/StandardStreams.h"
#include "app/VerbResult.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/memory/MemoryPlatform.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <malloc.h>
#include <QCoreApplication>
#include <QStandardPaths>
#include <QTimer>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

/// A clip of many megabytes passes through the heap now and then. Blocks of a page or more of
/// their own, few arenas and an early trim give its memory back to the system at once; by itself
/// the allocator would raise its thresholds after the first such block and keep what it got.
void giveMemoryBack() {
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
    mallopt(M_ARENA_MAX, 2);
}

/// File names and arguments are UTF-8 in whatever locale; Qt would say so at every start.
void ensureUtf8Locale() {
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

QString preferencesFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/quillet/preferences.json"_s;
}

/// Time in memory stands still unless somebody moves it.
std::variant<Platform, QString> makeLivingMemoryPlatform() {
    constexpr std::chrono::milliseconds step(10);
    Platform platform = makeMemoryPlatform();
    auto* clock = new QTimer(qApp);
    QObject::connect(clock, &QTimer::timeout,
                     [&time = MemoryFakes(platform).scheduler, step] { time.advance(step); });
    clock->start(step);
    return platform;
}

Backend backend() {
    if (qEnvironmentVariable("QUILLET_PLATFORM") == u"memory"_s)
        return {[] { return std::optional<QString>(); }, makeLivingMemoryPlatform};
    // In a Wayland session, too, the windows belong where the clipboard is. Programs that are
    // started from here are to decide for themselves.
    const bool decide = !qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (decide)
        qputenv("QT_QPA_PLATFORM", "xcb");
    return {whyNoDisplay, [decide] {
                if (decide)
                    qunsetenv("QT_QPA_PLATFORM");
                return makeLinuxPlatform(preferencesFile());
            }};
}

/// A file opened in the place of a closed standard stream would receive what is meant for that.
void fillStandardStreams() {
    int file = 0;
    do
        file = open("/dev/null", O_RDWR);
    while (file >= 0 && file <= STDERR_FILENO);
    if (file > STDERR_FILENO)
        close(file);
}

int runVerb(const Command& command, const QStringList& arguments, int& argc, char** argv) {
    const auto folder = runtimeFolder();
    if (!folder)
        return int(ExitCode::failed);
    const QCoreApplication application(argc, argv);
    return Client(*folder).run(command, arguments);
}

int print(const QByteArray& text) {
    return int(printOutput(text) ? ExitCode::done : ExitCode::failed);
}

int run(int argc, char** argv) {
    fillStandardStreams();
    giveMemoryBack();
    ensureUtf8Locale();
    keepLogQuiet();
    std::signal(SIGPIPE, SIG_IGN); // a closed pipe is an error that write() reports

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromUtf8(argv[i]);
    const auto parsed = parseCommandLine(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        printError(error->text);
        return int(ExitCode::usage);
    }
    const Command& command = std::get<Command>(parsed);
    switch (command.verb) {
    case Verb::help:
        return print(helpText(command.topic).toUtf8());
    case Verb::version:
        return print(Identity::versionLine());
    case Verb::start:
    case Verb::service:
        return startQuillet(command, argc, argv, backend());
    case Verb::status:
    case Verb::clipList:
    case Verb::clipCopy:
    case Verb::clipShow:
    case Verb::clipPin:
    case Verb::clipDelete:
    case Verb::clipClear:
    case Verb::shelfShow:
    case Verb::shelfHide:
    case Verb::shelfToggle:
    case Verb::snap:
    case Verb::awakeOn:
    case Verb::awakeOff:
    case Verb::awakeToggle:
    case Verb::awakeAllowDisplaySleep:
    case Verb::dark:
    case Verb::icons:
    case Verb::hidden:
    case Verb::displaySleep:
    case Verb::keyboardLock:
    case Verb::stats:
    case Verb::setup:
    case Verb::quit:
        // Without taking the process apart: the bus's thread may still be busy with a call that
        // failed, and needs what would be gone.
        std::quick_exit(runVerb(command, arguments, argc, argv));
    }
    return int(ExitCode::failed);
}

} // namespace

} // namespace quillet

int main(int argc, char** argv) {
    return quillet::run(argc, argv);
}
