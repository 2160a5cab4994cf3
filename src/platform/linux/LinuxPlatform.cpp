#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/ProcessCommands.h"
#include "platform/linux/sound/PulseSoundPlayer.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "platform/linux/x11/X11Screens.h"
#include "platform/linux/x11/X11Workspace.h"

namespace quillet {

namespace {

using namespace Qt::StringLiterals;

Capability capability(const QString& name, bool available, const QString& cause) {
    return {name, available, available ? QString() : cause};
}

} // namespace

std::optional<QString> whyNoDisplay() {
    if (X11Connection::displayAnswers())
        return std::nullopt;
    const QString display = qEnvironmentVariable("DISPLAY");
    return display.isEmpty() ? u"No display: DISPLAY is not set."_s
                             : u"The display \"%1\" does not answer."_s.arg(display);
}

std::variant<Platform, QString> makeLinuxPlatform(const QString& preferencesFile) {
    std::shared_ptr<X11Connection> connection = X11Connection::open();
    if (!connection)
        return u"There is no X11 display with the XFixes extension."_s;

    Platform platform;
    platform.name = u"x11"_s;
    platform.scheduler = std::make_unique<LinuxScheduler>();
    platform.preferences = std::make_unique<JsonPreferences>(preferencesFile);
    platform.commands = std::make_unique<ProcessCommands>();
    platform.sounds = std::make_unique<PulseSoundPlayer>();
    platform.screens = std::make_unique<X11Screens>(*connection);
    auto workspace = std::make_unique<X11Workspace>(
        *connection, DesktopEntries(DesktopEntries::standardFolders()));
    auto pasteboard = std::make_unique<X11Pasteboard>(*connection, *platform.scheduler);
    platform.capabilities = [&workspace = *workspace, &pasteboard = *pasteboard] {
        return std::vector{
            capability(u"clipboard"_s, true, {}),
            capability(u"clipboardManager"_s, pasteboard.isClipboardManager(),
                       u"Another program keeps the clipboard of programs that quit."_s),
            capability(u"frontmostApplication"_s, workspace.knowsFrontmost(),
                       u"The window manager does not tell which window is active."_s)};
    };
    platform.workspace = std::move(workspace);
    platform.pasteboard = std::move(pasteboard);
    platform.foundation = std::move(connection);
    return platform;
}

} // namespace quillet
