#include "settings/ui/SetupWindow.h"

#include "settings/ui/SetupView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace quillet {

using namespace Qt::StringLiterals;

PreferenceKey<bool> SetupWindow::didOnboardKey() {
    return {u"app.didOnboard"_s, false};
}

void SetupWindow::show() {
    m_services.permissions.refresh();
    if (!m_window)
        makeWindow();
    // Made anew on the screen, it comes to the workspace that the user is on, also when minimised;
    // window managers differ on whether a mere request would bring it.
    if (m_window->isVisible() && !m_window->isActiveWindow())
        m_window->hide();
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void SetupWindow::makeWindow() {
    m_window = std::make_unique<SetupView>(m_services.look, m_services.permissions,
                                           m_services.hotKeys, [this] { finish(); });
    m_window->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                             Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    m_window->setWindowTitle(SetupView::tr("Welcome to Quillet"));
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame = m_window->rect();
    frame.moveCenter(screen->availableGeometry().center());
    m_window->move(frame.topLeft());
}

void SetupWindow::finish() {
    m_services.preferences.set(didOnboardKey(), true);
    m_window->close();
}

} // namespace quillet
