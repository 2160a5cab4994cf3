#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/dbus/Buses.h"
#include "platform/linux/dbus/LinuxDesktopSettings.h"
#include "platform/linux/dbus/LinuxPower.h"
#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/proc/ProcHostStatistics.h"
#include "platform/linux/ProcessCommands.h"
#include "platform/linux/sound/PulseSoundPlayer.h"
#include "platform/linux/x11/X11Access.h"
#include "platform/linux/x11/X11DisplayPower.h"
#include "platform/linux/x11/X11FocusedWindow.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11KeyboardGrab.h"
#include "platform/linux/x11/X11KeySynthesis.h"
#include "platform/linux/x11/X11Panels.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "platform/linux/x11/X11Screens.h"
#include "platform/linux/x11/X11Workspace.h"

namespace quillet {

namespace {

using namespace Qt::StringLiterals;

struct X11Foundation {
    explicit X11Foundation(std::unique_ptr<X11Connection> opened) : connection(std::move(opened)) {}

    std::unique_ptr<X11Connection> connection;
    X11RawInput rawInput{*connection};
};

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
    std::unique_ptr<X11Connection> opened = X11Connection::open();
    if (!opened)
        return u"There is no X11 display with the XFixes extension."_s;
    auto foundation = std::make_shared<X11Foundation>(std::move(opened));
    X11Connection& connection = *foundation->connection;

    Platform platform;
    platform.name = u"x11"_s;
    platform.scheduler = std::make_unique<LinuxScheduler>();
    platform.preferences = std::make_unique<JsonPreferences>(preferencesFile);
    platform.commands = std::make_unique<ProcessCommands>();
    const Buses buses = Buses::standard();
    platform.desktop = std::make_unique<LinuxDesktopSettings>(
        buses.session, *platform.commands, *platform.scheduler, *platform.preferences);
    platform.sounds = std::make_unique<PulseSoundPlayer>();
    platform.statistics = std::make_unique<ProcHostStatistics>();
    auto screens = std::make_unique<X11Screens>(connection);
    auto workspace = std::make_unique<X11Workspace>(
        connection, DesktopEntries(DesktopEntries::standardFolders()));
    platform.focusedWindow =
        std::make_unique<X11FocusedWindow>(connection, *screens, *platform.scheduler);
    auto pasteboard = std::make_unique<X11Pasteboard>(connection, *platform.scheduler);
    auto panels = std::make_unique<X11Panels>(connection, foundation->rawInput, *screens,
                                              *platform.scheduler);
    auto hotKeys = std::make_unique<X11HotKeys>(connection, foundation->rawInput, *panels,
                                                *platform.scheduler);
    platform.access = std::make_unique<X11Access>(connection, *platform.commands);
    auto power = std::make_unique<LinuxPower>(
        buses, *platform.commands, *platform.scheduler,
        std::make_unique<X11DisplayPower>(connection, *platform.scheduler));
    platform.capabilities = [&workspace = *workspace, &pasteboard = *pasteboard,
                             &access = *platform.access, &panels = *panels, &hotKeys = *hotKeys,
                             &desktop = *platform.desktop, &power = *power] {
        const auto setting = [&desktop](const QString& name, DesktopSettings::FileManagerKey key) {
            return capability(name, desktop.cause(key).isEmpty(), desktop.cause(key));
        };
        const auto permission = [&access](const QString& name, Access::Kind kind) {
            return capability(name, access.isGranted(kind), access.cause(kind));
        };
        return std::vector{
            capability(u"clipboard"_s, true, {}),
            capability(u"clipboardManager"_s, pasteboard.isClipboardManager(),
                       u"Another program keeps the clipboard of programs that quit."_s),
            setting(u"desktopIcons"_s, DesktopSettings::FileManagerKey::createDesktop),
            capability(u"displaySleep"_s, power.whyNoDisplaySleep().isEmpty(),
                       power.whyNoDisplaySleep()),
            capability(u"frontmostApplication"_s, workspace.knowsFrontmost(),
                       u"The window manager does not tell which window is active."_s),
            capability(u"globalShortcuts"_s, hotKeys.isAvailable(),
                       u"The X server lacks the keyboard extension."_s),
            setting(u"hiddenFiles"_s, DesktopSettings::FileManagerKey::showAllFiles),
            capability(u"keepAwake"_s, power.whyNotAwake().isEmpty(), power.whyNotAwake()),
            permission(u"keyboardLock"_s, Access::Kind::accessibility),
            permission(u"paste"_s, Access::Kind::accessibility),
            permission(u"screenRecording"_s, Access::Kind::screenRecording),
            capability(u"translucency"_s, panels.isTranslucent(), u"No compositor is running."_s)};
    };
    platform.workspace = std::move(workspace);
    platform.pasteboard = std::move(pasteboard);
    platform.keys = std::make_unique<X11KeySynthesis>(connection, *panels, *platform.preferences,
                                                      *platform.scheduler);
    platform.keyboard = std::make_unique<X11KeyboardGrab>(connection, *panels, *platform.scheduler);
    platform.power = std::move(power);
    platform.screens = std::move(screens);
    platform.hotKeys = std::move(hotKeys);
    platform.panels = std::move(panels);
    platform.foundation = std::move(foundation);
    return platform;
}

} // namespace quillet
