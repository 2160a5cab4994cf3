#include "settings/ui/SetupWindow.h"

#include "settings/ui/SetupView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QScrollArea>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

/// Of usual window managers, give or take a few points. None tells before the window is shown.
constexpr int titleBarHeight = 28;

} // namespace

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
    m_window->setPalette(QPalette(m_services.look.colors().window)); // for the scroll bar
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void SetupWindow::makeWindow() {
    auto scrollArea = std::make_unique<QScrollArea>();
    scrollArea->setFixedSize(SetupView::windowSize); // first, or a scroll bar would flash
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setWidgetResizable(true);
    auto* view = new SetupView(m_services.look, m_services.permissions, m_services.hotKeys,
                               [this] { finish(); });
    scrollArea->setWidget(view);
    view->setFocus();
    m_window = std::move(scrollArea);
    m_window->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                             Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    m_window->setWindowTitle(SetupView::tr("Welcome to Quillet"));
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect available = screen->availableGeometry();
    m_window->setFixedHeight(std::min(m_window->height(), available.height() - titleBarHeight));
    QRect frame(0, 0, m_window->width(), m_window->height() + titleBarHeight);
    frame.moveCenter(available.center());
    m_window->move(frame.topLeft());
}

void SetupWindow::finish() {
    m_services.preferences.set(didOnboardKey(), true);
    m_window->close();
}

} // namespace quillet
