#include "app/AppDelegate.h"

#include "app/ClipVerbs.h"
#include "app/Identity.h"
#include "app/Logging.h"
#include "app/look/Animation.h"
#include "app/StatsListing.h"
#include "app/SwitchVerbs.h"
#include "clipboard/ThumbnailCache.h"
#include "switches/ui/KeyboardLockHUD.h"

#include <algorithm>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

constexpr Scheduler::Duration idleAfterLaunch{700};

/// Once what runs now has come back, such as the answer to a verb.
void quitSoon() {
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

bool isKeptByDesktop(Verb verb) {
    return verb == Verb::dark || verb == Verb::icons || verb == Verb::hidden;
}

} // namespace

AppDelegate::AppDelegate() = default;
AppDelegate::~AppDelegate() = default;

std::optional<QString> AppDelegate::applicationDidFinishLaunching(Platform platform,
                                                                  const QString& dataFolder,
                                                                  const QString& cacheFolder) {
    m_services = std::make_unique<Composition>(std::move(platform));
    followDesktop();
    createPermissions();
    createSwitches();
    registerSoundDefaults();
    if (const auto error = openContainer(dataFolder))
        return u"Failed to create model container: "_s + *error;
    startClipboard();
    createShelf(cacheFolder);
    registerShortcuts();
    createSetupGuide();
    restoreKeepAwake();
    offerAlternatives();
    welcome();
    prepareShelf();
    return std::nullopt;
}

void AppDelegate::applicationWillTerminate() {
    if (!m_services)
        return;
    releaseKeepAwake();
    m_services->platform.pasteboard->handOver();
    Permissions::shared = nullptr;
    SetupWindow::shared = nullptr;
    m_services.reset();
}

void AppDelegate::followDesktop() {
    const auto follow = [this] {
        const DesktopSettings& desktop = *m_services->platform.desktop;
        m_services->theme.setAppearance(desktop.isDark() ? Appearance::dark : Appearance::light);
        Animation::setMotionReduced(desktop.isMotionReduced());
    };
    follow();
    m_services->desktopChanges = m_services->platform.desktop->observe(follow);
}

void AppDelegate::createPermissions() {
    const Platform& platform = m_services->platform;
    m_services->permissions = std::make_unique<Permissions>(
        Permissions::Services{*platform.access, *platform.workspace, *platform.commands,
                              *platform.scheduler},
        Permissions::Program{QCoreApplication::applicationFilePath(), quitSoon});
    Permissions::shared = m_services->permissions.get();
}

void AppDelegate::createSwitches() {
    const Platform& platform = m_services->platform;
    m_services->switches = std::make_unique<SwitchCenter>(
        SwitchCenter::Services{*platform.power, *platform.desktop, *platform.preferences,
                               *platform.scheduler, *m_services->permissions, *platform.keyboard},
        showKeyboardLockHUD({m_services->theme, *platform.scheduler, *platform.panels},
                            *platform.screens),
        [this] { m_services->setup->show(); });
}

void AppDelegate::registerSoundDefaults() {
    const Platform& platform = m_services->platform;
    m_services->sounds =
        std::make_unique<Sounds>(*platform.preferences, *platform.sounds, *platform.scheduler);
    m_services->sounds->registerDefaults();
}

std::optional<QString> AppDelegate::openContainer(const QString& dataFolder) {
    auto opening = ClipContainer::open(dataFolder, *m_services->platform.scheduler);
    m_services->container = std::move(opening.container);
    return m_services->container ? std::nullopt : std::optional(opening.error);
}

void AppDelegate::startClipboard() {
    const Platform& platform = m_services->platform;
    m_services->clipboard = std::make_unique<ClipboardStore>(
        m_services->container->mainContext(), *platform.pasteboard, *platform.preferences,
        *platform.scheduler, *platform.workspace, *m_services->sounds);
    m_services->clipboard->start();
    m_services->keeper =
        std::make_unique<ClipboardKeeper>(*m_services->clipboard, *platform.pasteboard);
}

void AppDelegate::createShelf(const QString& cacheFolder) {
    const Platform& platform = m_services->platform;
    m_services->dragFiles = std::make_unique<DragFiles>(cacheFolder + u"/drag"_s);
    m_services->shelf = std::make_unique<ShelfController>(
        ShelfController::Services{{*m_services->clipboard,
                                   *platform.pasteboard,
                                   *platform.workspace,
                                   *m_services->sounds,
                                   m_services->applications,
                                   ThumbnailCache::shared(),
                                   *m_services->dragFiles,
                                   {m_services->theme, *platform.scheduler, *platform.panels}},
                                  *platform.screens,
                                  *platform.keys,
                                  *platform.access,
                                  m_services->toast},
        [this] { m_services->setup->show(); });
}

void AppDelegate::registerShortcuts() {
    const Platform& platform = m_services->platform;
    m_services->hotKeys = std::make_unique<HotKeyCenter>(*platform.preferences, *platform.hotKeys,
                                                         *platform.scheduler);
    m_services->hotKeys->registerAction(HotKeyAction::clipboardShelf, [this] { toggleShelf(); });
    m_services->snapper = std::make_unique<WindowSnapper>(
        WindowSnapper::Services{*m_services->permissions, *platform.focusedWindow,
                                *platform.screens, *platform.workspace},
        [this] { m_services->setup->show(); });
    for (const SnapPositionRow& row : snapPositions()) {
        m_services->hotKeys->registerAction(
            row.action, [this, position = row.position] { m_services->snapper->snap(position); });
    }
}

void AppDelegate::createSetupGuide() {
    const Platform& platform = m_services->platform;
    m_services->setup = std::make_unique<SetupWindow>(
        SetupWindow::Services{{m_services->theme, *platform.scheduler, *platform.panels},
                              *m_services->permissions,
                              *m_services->hotKeys,
                              *platform.preferences,
                              *platform.screens});
    SetupWindow::shared = m_services->setup.get();
}

void AppDelegate::restoreKeepAwake() {
    if (m_services->platform.preferences->value(SwitchCenter::indefiniteKey()))
        m_services->switches->setKeepAwake(true, SwitchCenter::AwakeDuration::indefinitely);
}

/// Keeps the wish that it is on again in the next run.
void AppDelegate::releaseKeepAwake() {
    Preferences& preferences = *m_services->platform.preferences;
    const bool isIndefinite = preferences.value(SwitchCenter::indefiniteKey());
    m_services->switches->setKeepAwake(false, SwitchCenter::AwakeDuration::indefinitely);
    preferences.set(SwitchCenter::indefiniteKey(), isIndefinite);
}

/// New users have the guide to themselves: other news follow it.
void AppDelegate::welcome() {
    Preferences& preferences = *m_services->platform.preferences;
    if (preferences.value(SetupWindow::didOnboardKey()))
        return m_services->shortcutBanner->showNews();
    m_services->onboarding = preferences.observe([this, &preferences] {
        if (!preferences.value(SetupWindow::didOnboardKey()))
            return;
        m_services->onboarding.reset();
        m_services->shortcutBanner->showNews();
    });
    m_services->setup->show();
}

/// For shortcuts that the desktop or another program has.
void AppDelegate::offerAlternatives() {
    const Platform& platform = m_services->platform;
    m_services->alternatives =
        std::make_unique<ShortcutAlternatives>(*m_services->hotKeys, *platform.preferences);
    m_services->shortcutBanner = std::make_unique<ShortcutBanner>(
        *m_services->alternatives, Look{m_services->theme, *platform.scheduler, *platform.panels},
        *platform.screens);
}

/// Once the launch has come to rest, and before anybody has pressed the shortcut.
void AppDelegate::prepareShelf() {
    m_services->shelfPreparation = m_services->platform.scheduler->after(
        idleAfterLaunch, [this] { m_services->shelf->prepare(); });
}

void AppDelegate::toggleShelf() {
    ShelfController& shelf = *m_services->shelf;
    shelf.isVisible() ? shelf.hide() : shelf.show();
}

void AppDelegate::run(const Command& command, const Reply& reply) {
    if (command.verb == Verb::stats)
        return reportStats(command, reply);
    if (command.verb == Verb::keyboardLock)
        return runKeyboardLockVerb(*m_services->switches, reply);
    if (isKeptByDesktop(command.verb))
        // Others may have turned it, and what this very verb started does not know it yet.
        return m_services->platform.desktop->refresh([this, command, reply] {
            if (command.verb == Verb::dark)
                runDarkVerb(command, *m_services->switches, reply);
            else
                reply(carryOut(command));
        });
    VerbResult result = carryOut(command);
    if (!result.slowOutput)
        return reply(std::move(result));
    const auto finished = std::make_shared<VerbResult>(std::move(result));
    m_services->platform.scheduler->background(
        [finished] { finished->output = finished->slowOutput(); },
        [finished, reply] { reply(std::move(*finished)); });
}

VerbResult AppDelegate::carryOut(const Command& command) {
    switch (command.verb) {
    case Verb::start:
    case Verb::service:
        return VerbResult::done(); // it runs, and there is nothing to bring to the front
    case Verb::status:
        m_services->platform.desktop->retry();
        return VerbResult::done(status());
    case Verb::clipList:
    case Verb::clipCopy:
    case Verb::clipShow:
    case Verb::clipPin:
    case Verb::clipDelete:
    case Verb::clipClear:
        return runClipVerb(command, *m_services->clipboard);
    case Verb::shelfShow:
        m_services->shelf->show();
        return VerbResult::done();
    case Verb::shelfHide:
        m_services->shelf->hide();
        return VerbResult::done();
    case Verb::shelfToggle:
        toggleShelf();
        return VerbResult::done();
    case Verb::snap:
        return snap(command.choice);
    case Verb::awakeOn:
    case Verb::awakeOff:
    case Verb::awakeToggle:
    case Verb::awakeAllowDisplaySleep:
    case Verb::icons:
    case Verb::hidden:
    case Verb::displaySleep:
        return runSwitchVerb(command, *m_services->switches);
    case Verb::stats:
    case Verb::dark:
    case Verb::keyboardLock:
        break; // answered later
    case Verb::setup:
        m_services->setup->show();
        return VerbResult::done();
    case Verb::quit:
        quitSoon();
        return VerbResult::done();
    case Verb::help:
        return VerbResult::done(helpText(command.topic).toUtf8());
    case Verb::version:
        return VerbResult::done(Identity::versionLine());
    }
    return {};
}

VerbResult AppDelegate::snap(const QString& where) {
    WindowSnapper& snapper = *m_services->snapper;
    const auto position = snapPosition(where);
    const auto outcome = position                ? snapper.snap(*position)
                         : where == u"restore"_s ? snapper.restore()
                                                 : snapper.moveToNextDisplay();
    switch (outcome) {
    case WindowSnapper::Outcome::moves:
        return VerbResult::done();
    case WindowSnapper::Outcome::noPermission:
        return VerbResult::failed(m_services->permissions->cause(Permissions::Kind::accessibility));
    case WindowSnapper::Outcome::noWindow:
        return VerbResult::failed(u"there is no window to move"_s);
    case WindowSnapper::Outcome::noOtherDisplay:
        return VerbResult::failed(u"there is no other display"_s);
    case WindowSnapper::Outcome::nothingToRestore:
        return VerbResult::failed(u"the window was not moved from here"_s);
    }
    Q_UNREACHABLE();
}

void AppDelegate::reportStats(const Command& command, const Reply& reply) {
    m_services->statsReporter.measure(
        [command, reply](const StatsSampler& stats) {
            reply(VerbResult::done(command.json    ? statsAsJson(stats)
                                   : command.watch ? statsAsLine(stats)
                                                   : statsAsTable(stats)));
        },
        command.watch ? StatsReporter::longSpan : StatsReporter::shortSpan);
}

QByteArray AppDelegate::status() const {
    QJsonObject capabilities;
    for (const Capability& capability : m_services->platform.capabilities()) {
        QJsonObject entry{{u"available"_s, capability.available}};
        if (!capability.cause.isEmpty())
            entry.insert(u"cause"_s, capability.cause);
        capabilities.insert(capability.name, entry);
    }
    const HotKeyCenter& hotKeys = *m_services->hotKeys;
    const auto refusals = m_services->alternatives->refusals();
    QJsonArray shortcuts;
    for (const HotKeyActionRow& row : hotKeyActions()) {
        QJsonObject entry{{u"action"_s, row.title},
                          {u"shortcut"_s, hotKeys.shortcut(row.action).display()},
                          {u"registered"_s, hotKeys.isRegistered(row.action)}};
        const auto refusal =
            std::ranges::find(refusals, row.action, &ShortcutAlternatives::Refusal::action);
        if (refusal != refusals.end()) {
            entry.insert(u"refused"_s, true);
            if (refusal->alternative)
                entry.insert(u"alternative"_s, refusal->alternative->display());
        }
        shortcuts.append(entry);
    }
    return QJsonDocument(QJsonObject{{u"ready"_s, true},
                                     {u"running"_s, true},
                                     {u"platform"_s, m_services->platform.name},
                                     {u"version"_s, Identity::version()},
                                     {u"pid"_s, QCoreApplication::applicationPid()},
                                     {u"capabilities"_s, capabilities},
                                     {u"shortcuts"_s, shortcuts},
                                     {u"switches"_s, switchesAsJson(*m_services->switches)}})
        .toJson();
}

} // namespace quillet
