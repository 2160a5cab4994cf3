#include "settings/Permissions.h"

#include <algorithm>
#include <QCoreApplication>
#include <QLoggingCategory>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logPermissions, "quillet.permissions", QtWarningMsg)

namespace {

constexpr auto pollInterval = 1000ms;
constexpr auto pollTolerance = 100ms;

// The system's own question and its list of programs need this long to be there.
constexpr auto settingsDelay = 600ms;

struct KindRow {
    const char* title;
    const char* reason;
    QLatin1StringView symbol;
};

constexpr std::array<KindRow, Permissions::kinds.size()> rows{{
    {QT_TRANSLATE_NOOP("Permissions", "Screen Recording"),
     QT_TRANSLATE_NOOP("Permissions", "To capture the area or window you pick. Screenshots stay on "
                                      "this Mac."),
     QLatin1StringView("screen.recording")},
    {QT_TRANSLATE_NOOP("Permissions", "Accessibility"),
     QT_TRANSLATE_NOOP("Permissions", "To paste the clip you choose into the app you're using, and "
                                      "to lock the keyboard while you clean it."),
     QLatin1StringView("accessibility")},
}};

const KindRow& row(Permissions::Kind kind) {
    return rows.at(static_cast<std::size_t>(kind));
}

constexpr QLatin1StringView installFolders[] = {
    QLatin1StringView("/usr/"),
    QLatin1StringView("/opt/"),
    QLatin1StringView("/app/"),
};

/// One argument for the shell, whatever the path holds.
QString quoted(const QString& path) {
    QString word = u"\""_s;
    for (const QChar character : path) {
        if (QStringView(u"\"\\$`").contains(character))
            word += u'\\';
        word += character;
    }
    return word + u'"';
}

} // namespace

QString Permissions::title(Kind kind) {
    return QCoreApplication::translate("Permissions", row(kind).title);
}

QString Permissions::reason(Kind kind) {
    return QCoreApplication::translate("Permissions", row(kind).reason);
}

QString Permissions::symbol(Kind kind) {
    return row(kind).symbol;
}

Permissions::Permissions(const Services& services, Program program)
    : m_services(services),
      m_program(std::move(program)),
      m_accessibility(services.access.isGranted(Kind::accessibility)),
      m_screenRecording(services.access.isGranted(Kind::screenRecording)) {}

bool Permissions::isGranted(Kind kind) const {
    return kind == Kind::accessibility ? m_accessibility : m_screenRecording;
}

void Permissions::refresh() {
    const Access& access = m_services.access;
    assign(m_accessibility, access.isGranted(Kind::accessibility),
           &Permissions::accessibilityChanged);
    assign(m_screenRecording, access.isGranted(Kind::screenRecording),
           &Permissions::screenRecordingChanged);
}

void Permissions::request(Kind kind) {
    switch (kind) {
    case Kind::accessibility:
        if (!m_services.access.request(kind))
            m_services.access.openSettings(kind);
        return;
    case Kind::screenRecording:
        assign(m_requestedScreenRecording, true, &Permissions::requestedScreenRecordingChanged);
        m_services.access.request(kind);
        m_settingsTimer = m_services.scheduler.after(
            settingsDelay, [this] { m_services.access.openSettings(Kind::screenRecording); });
        return;
    }
}

void Permissions::startPolling() {
    if (!m_pollTimer)
        m_pollTimer =
            m_services.scheduler.every(pollInterval, pollTolerance, [this] { refresh(); });
}

void Permissions::stopPolling() {
    m_pollTimer.reset();
}

void Permissions::relaunch() {
    // The shell outlives this process and gives it the time to end.
    const QString script = u"sleep 0.7; exec "_s + quoted(m_program.path);
    if (!m_services.commands.launch(u"/bin/sh"_s, {u"-c"_s, script}))
        qCWarning(logPermissions, "no shell to start the program again");
    m_program.terminate();
}

bool Permissions::isInstalled() const {
    return std::any_of(
        std::begin(installFolders), std::end(installFolders),
        [this](QLatin1StringView folder) { return m_program.path.startsWith(folder); });
}

void Permissions::assign(bool& field, bool value, void (Permissions::*changed)()) {
    if (field == value)
        return;
    field = value;
    Q_EMIT(this->*changed)();
}

} // namespace quillet
