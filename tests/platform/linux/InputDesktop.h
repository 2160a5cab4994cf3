#pragma once

#include "contracts/SpinUntil.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11KeySynthesis.h"
#include "platform/linux/x11/X11Panels.h"
#include "support/DesktopSession.h"

#include <gtest/gtest.h>
#include <QRegularExpression>

namespace quillet {

/// Runs a program of the desktop to its end.
inline void run(const QString& commandLine) {
    QStringList words = commandLine.split(u' ');
    const QString program = words.takeFirst();
    ASSERT_EQ(QProcess::execute(program, words), 0) << commandLine.toStdString();
}

inline xcb_window_t activeWindow(const X11Connection& connection) {
    const auto active = connection.values(connection.root(), connection.atom("_NET_ACTIVE_WINDOW"),
                                          XCB_ATOM_WINDOW, 1);
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
}

/// A window of another program that says which keys reach it: "press v 0x4", "release v 0x4".
class KeyLog {
public:
    /// Returns when the window is the active one.
    explicit KeyLog(const X11Connection& connection) : m_process(new QProcess) {
        m_process->start(QStringLiteral("xev"),
                         {QStringLiteral("-event"), QStringLiteral("keyboard")});
        const auto isActive = [&] {
            return read().contains(
                QStringLiteral("Outer window is 0x%1,").arg(activeWindow(connection), 0, 16));
        };
        if (!spinUntil(isActive))
            qFatal("the other program did not become active");
    }

    QStringList keys() {
        read();
        static const QRegularExpression event(
            QStringLiteral(
                "Key(Press|Release) event.*?state (0x[0-9a-f]+),.*?keysym 0x[0-9a-f]+, (\\w+)"),
            QRegularExpression::DotMatchesEverythingOption);
        QStringList keys;
        for (auto it = event.globalMatch(m_output); it.hasNext();) {
            const QRegularExpressionMatch match = it.next();
            keys << match.captured(1).toLower() + u' ' + match.captured(3) + u' ' +
                        match.captured(2);
        }
        return keys;
    }

    void forget() {
        read();
        m_output.clear();
    }

private:
    const QString& read() {
        m_output += QString::fromLatin1(m_process->readAllStandardOutput());
        return m_output;
    }

    ProcessHandle m_process;
    QString m_output;
};

/// What stands behind shortcuts, panels and pasting, on the desktop that the tests run on.
class InputDesktop : public testing::Test {
protected:
    InputDesktop() {
        hotKeys.onPressed = [this](uint32_t id) { pressed.push_back(id); };
    }

    LinuxScheduler scheduler;
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    X11Screens screens{*connection};
    X11HotKeys hotKeys{*connection, rawInput, scheduler};
    X11Panels panels{*connection, rawInput, screens, scheduler};
    X11KeySynthesis keys{*connection, panels, scheduler};
    std::vector<uint32_t> pressed;
};

} // namespace quillet
