#pragma once

#include "support/PrivateSession.h"

#include <QSize>
#include <vector>

namespace quillet {

/// A desktop for one test program: a private session with an X server and a window manager of its
/// own. Everything started ends with it.
class DesktopSession : public PrivateSession {
public:
    /// The name of a window manager; none where it is empty.
    explicit DesktopSession(const QString& windowManager = QStringLiteral("openbox"),
                            const QSize& screen = {1920, 1080});
    ~DesktopSession();

    const QByteArray& display() const { return m_display; }

    /// Copies with xclip, which then owns the selection, as the program that one copies from.
    ProcessHandle copy(const QByteArray& bytes, const QString& target,
                       const QString& selection = QStringLiteral("clipboard"));

private:
    void startServer(const QSize& screen);
    void startWindowManager(const QString& program);

    QByteArray m_display;
    std::vector<ProcessHandle> m_services;
};

} // namespace quillet
