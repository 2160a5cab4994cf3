#include "support/DesktopSession.h"

#include "support/FakeApplication.h"

#include <QHash>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr int startDeadline = 10'000; // milliseconds

} // namespace

DesktopSession::DesktopSession(const QString& windowManager, const QSize& screen)
    : PrivateSession(Bus::present) {
    startServer(screen);
    m_environment << u"DISPLAY="_s + QString::fromLatin1(m_display) << u"XDG_SESSION_TYPE=x11"_s
                  << u"QT_QPA_PLATFORM=xcb"_s << u"QT_ACCESSIBILITY=0"_s << u"NO_AT_BRIDGE=1"_s;
    if (!windowManager.isEmpty())
        startWindowManager(windowManager);
}

DesktopSession::~DesktopSession() {
    while (!m_services.empty())
        m_services.pop_back();
}

ProcessHandle DesktopSession::copy(const QByteArray& bytes, const QString& target,
                                   const QString& selection) {
    ProcessHandle owner =
        start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, selection, u"-i"_s, u"-t"_s, target});
    owner->write(bytes);
    owner->closeWriteChannel();
    while (owner->bytesToWrite() > 0 && owner->waitForBytesWritten(startDeadline)) {
    }
    return owner;
}

void DesktopSession::startServer(const QSize& screen) {
    m_services.push_back(start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s,
                                           u"%1x%2x24"_s.arg(screen.width()).arg(screen.height()),
                                           u"-noreset"_s, u"-nolisten"_s, u"tcp"_s}));
    QProcess& server = *m_services.back();
    while (!server.canReadLine()) {
        if (!server.waitForReadyRead(startDeadline))
            qFatal("no X server: %s", server.readAllStandardError().constData());
    }
    m_display = ':' + server.readLine().trimmed();
}

void DesktopSession::startWindowManager(const QString& program) {
    const QHash<QString, QStringList> arguments{{u"openbox"_s, {u"--sm-disable"_s}},
                                                {u"xfwm4"_s, {u"--compositor=off"_s}}};
    m_services.push_back(start(program, arguments.value(program)));
    // It is there when it manages windows.
    FakeApplication(m_display, "Probe");
}

} // namespace quillet
