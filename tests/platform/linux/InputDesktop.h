#pragma once

#include "contracts/SpinUntil.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "platform/linux/x11/X11KeySynthesis.h"
#include "platform/linux/x11/X11Panels.h"
#include "platform/memory/MemoryPreferences.h"
#include "support/FakeApplication.h"

#include <gtest/gtest.h>
#include <QHash>
#include <QProcess>

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
    KeyLog() : m_program(qgetenv("DISPLAY"), "Editor"), m_listener(qgetenv("DISPLAY")) {
        const uint32_t wanted = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
        xcb_change_window_attributes(m_listener.connection(), m_program.window(), XCB_CW_EVENT_MASK,
                                     &wanted);
        m_listener.serverTime(); // it is listening
    }

    /// All that the server has delivered since forget(). It may not have come round yet to what
    /// this program itself has just posted.
    const QStringList& keys() {
        const auto isKey = [](const xcb_generic_event_t& event) {
            return eventType(event) == XCB_KEY_PRESS || eventType(event) == XCB_KEY_RELEASE;
        };
        m_listener.serverTime(); // comes behind what was delivered before
        while (const auto event = m_listener.wait(isKey, std::chrono::milliseconds(0))) {
            const auto& key = eventAs<xcb_key_press_event_t>(*event);
            m_keys << QStringLiteral("%1 %2 0x%3")
                          .arg(eventType(*event) == XCB_KEY_PRESS ? QStringLiteral("press")
                                                                  : QStringLiteral("release"),
                               nameOf(key.detail))
                          .arg(key.state, 0, 16);
        }
        return m_keys;
    }

    void forget() {
        keys();
        m_keys.clear();
    }

    FakeApplication& program() { return m_program; }

private:
    static QString nameOf(xcb_keycode_t key) {
        static const QHash<int, QString> names = {
            {26, QStringLiteral("e")},       {37, QStringLiteral("Control_L")},
            {50, QStringLiteral("Shift_L")}, {55, QStringLiteral("v")},
            {96, QStringLiteral("F12")},     {133, QStringLiteral("Super_L")}};
        return names.value(key, QString::number(key));
    }

    FakeApplication m_program;
    XClient m_listener;
    QStringList m_keys;
};

/// What stands behind shortcuts, panels and pasting, on the desktop that the tests run on.
struct InputParts {
    LinuxScheduler scheduler;
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11RawInput rawInput{*connection};
    X11Screens screens{*connection};
    X11Panels panels{*connection, rawInput, screens, scheduler};
    X11HotKeys hotKeys{*connection, rawInput, panels, scheduler};
    MemoryPreferences preferences;
    X11KeySynthesis keys{*connection, panels, preferences, scheduler};
};

class InputDesktop : public testing::Test, protected InputParts {
protected:
    InputDesktop() {
        hotKeys.onPressed = [this](uint32_t id) { pressed.push_back(id); };
    }

    std::vector<uint32_t> pressed;
};

/// Another program that holds the keyboard until this is destroyed.
class ForeignGrab {
public:
    ForeignGrab() : m_client(qgetenv("DISPLAY")) {
        const auto asked =
            xcb_grab_keyboard(m_client.connection(), 0, m_client.root(), XCB_CURRENT_TIME,
                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const XcbOwned<xcb_grab_keyboard_reply_t> grab(
            xcb_grab_keyboard_reply(m_client.connection(), asked, nullptr));
        m_hasIt = grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
    }
    ~ForeignGrab() {
        xcb_ungrab_keyboard(m_client.connection(), XCB_CURRENT_TIME);
        m_client.serverTime(); // it is free
    }

    bool hasIt() const { return m_hasIt; }

private:
    XClient m_client;
    bool m_hasIt = false;
};

} // namespace quillet
