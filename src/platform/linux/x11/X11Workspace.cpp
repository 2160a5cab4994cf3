#include "platform/linux/x11/X11Workspace.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMimeDatabase>

namespace quillet {

namespace {

using namespace Qt::StringLiterals;

/// The name of a process's program, where the system still knows it.
QString programName(qint64 pid) {
    QFile file(u"/proc/%1/comm"_s.arg(pid));
    if (pid <= 0 || !file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll()).trimmed();
}

QIcon applicationIcon(const QString& desktopFile) {
    QString name = DesktopEntries::iconOf(desktopFile);
    if (QFileInfo(name).isAbsolute())
        return QIcon(name);
    // A theme's names have no suffix, but some desktop files write one.
    static constexpr QLatin1StringView suffixes[] = {".png"_L1, ".svg"_L1, ".xpm"_L1};
    for (const QLatin1StringView suffix : suffixes) {
        if (name.endsWith(suffix))
            name.chop(suffix.size());
    }
    return QIcon::fromTheme(name);
}

QIcon documentIcon(const QString& path) {
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    return QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName()));
}

} // namespace

X11Workspace::X11Workspace(X11Connection& connection, DesktopEntries entries)
    : m_connection(connection),
      m_entries(std::move(entries)),
      m_activeWindow(connection.atom("_NET_ACTIVE_WINDOW")),
      m_listening(connection.listen([this](const xcb_generic_event_t& event) {
          if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
              return;
          const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
          if (property.window == m_connection.root() && property.atom == m_activeWindow)
              noteActiveWindow();
      })) {
    noteActiveWindow();
}

std::optional<RunningApplication> X11Workspace::frontmost() const {
    if (!m_frontmost)
        return std::nullopt;
    return application(*m_frontmost);
}

bool X11Workspace::activate(const RunningApplication& wanted) {
    const auto clients = m_connection.values(
        m_connection.root(), m_connection.atom("_NET_CLIENT_LIST_STACKING"), XCB_ATOM_WINDOW);
    for (auto window = clients.rbegin(); window != clients.rend(); ++window) {
        const std::optional<Owner> owner = ownerOf(*window);
        if (!owner || application(*owner).bundleID != wanted.bundleID ||
            (wanted.pid > 0 && owner->pid != wanted.pid))
            continue;
        m_connection.askWindowManager(*window, m_activeWindow, {2}); // the user asks for it
        return true;
    }
    return false;
}

std::optional<QString> X11Workspace::applicationName(const QString& bundleID) const {
    const auto entry = m_entries.byId(bundleID);
    return entry ? std::optional(entry->name) : std::nullopt;
}

std::optional<QString> X11Workspace::applicationLocation(const QString& bundleID) const {
    const auto entry = m_entries.byId(bundleID);
    return entry ? std::optional(entry->path) : std::nullopt;
}

QImage X11Workspace::icon(const QString& path, int pixels) const {
    const QIcon icon = path.endsWith(".desktop"_L1) ? applicationIcon(path) : documentIcon(path);
    return icon.pixmap(QSize(pixels, pixels), 1.0).toImage();
}

bool X11Workspace::open(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

void X11Workspace::reveal(const QStringList& paths) {
    if (paths.isEmpty())
        return;
    QStringList uris;
    for (const QString& path : paths)
        uris.append(QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded()));
    const QString folder = QFileInfo(paths.first()).absolutePath();
    auto message = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    message << uris << QString();
    const QDBusPendingCall call = QDBusConnection::sessionBus().asyncCall(message);
    auto* watcher = new QDBusPendingCallWatcher(call, &m_connection);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_connection,
                     [folder](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         if (finished->isError())
                             QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
                     });
}

void X11Workspace::beep() {
    xcb_bell(m_connection.xcb(), 0);
    m_connection.flush();
}

bool X11Workspace::knowsFrontmost() const {
    return m_connection.windowManagerKnows(m_activeWindow);
}

void X11Workspace::noteActiveWindow() {
    const auto active =
        m_connection.values(m_connection.root(), m_activeWindow, XCB_ATOM_WINDOW, 1);
    if (active.empty() || active.front() == XCB_WINDOW_NONE)
        return; // between two windows, or the last one closed
    if (std::optional<Owner> owner = ownerOf(active.front()))
        m_frontmost = std::move(owner);
}

std::optional<X11Workspace::Owner> X11Workspace::ownerOf(xcb_window_t window) const {
    // Window managers leave the name of a dead window standing, and its number may by now lead to
    // another program.
    const XcbOwned<xcb_get_window_attributes_reply_t> alive(xcb_get_window_attributes_reply(
        m_connection.xcb(), xcb_get_window_attributes(m_connection.xcb(), window), nullptr));
    if (!alive)
        return std::nullopt;
    const QList<QByteArray> halves = m_connection.bytes(window, XCB_ATOM_WM_CLASS).split('\0');
    const Owner owner{QString::fromLatin1(halves.value(1)), QString::fromLatin1(halves.value(0)),
                      m_connection.pidOf(window)};
    return owner == Owner{} ? std::nullopt : std::optional(owner);
}

RunningApplication X11Workspace::application(const Owner& owner) const {
    if (owner.className.isEmpty() && owner.instance.isEmpty()) {
        const QString program = programName(owner.pid);
        return {program, program, owner.pid, {}};
    }
    const auto entry = m_entries.byWindowClass(owner.className, owner.instance);
    if (entry)
        return {entry->id, entry->name, owner.pid, {owner.className, owner.instance}};
    const QString& known = owner.className.isEmpty() ? owner.instance : owner.className;
    return {known, known, owner.pid, {owner.className, owner.instance}};
}

} // namespace quillet
