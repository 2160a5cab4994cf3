#include "settings/ui/SetupWindow.h"

#include "settings/ui/SetupView.h"

#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QScreen>
#include <QScrollArea>
#include <QWindow>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

/// Of usual window managers, give or take a few points. They tell when they have framed a window.
constexpr QMargins likelyFrame{0, 28, 0, 0};

/// Puts a new window with its frame into the middle of a usable area, and makes it no higher. Ends
/// when the frame is known.
class Centring : public QObject {
public:
    /// The area in points, y downwards as the toolkit has it.
    Centring(QWidget& window, const Rect& usable)
        : QObject(&window), m_window(window), m_usable(usable) {
        place(likelyFrame);
        window.winId(); // makes what the window manager will frame
        window.windowHandle()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Expose) {
            if (const QMargins frame = m_window.windowHandle()->frameMargins(); !frame.isNull())
                place(frame);
            deleteLater();
        }
        return false;
    }

private:
    void place(const QMargins& frame) {
        const int highest = static_cast<int>(m_usable.size.height) - frame.top() - frame.bottom();
        m_window.setFixedHeight(std::min(SetupView::windowSize.height(), highest));
        const QSize size = m_window.size().grownBy(frame);
        m_window.move(qRound(m_usable.midX() - size.width() / 2.0),
                      qRound(m_usable.midY() - size.height() / 2.0));
    }

    QWidget& m_window;
    Rect m_usable;
};

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
    m_window->setWindowIcon(QIcon(u":/org.quillet.Quillet.svg"_s));
    m_window->setWindowTitle(SetupView::tr("Welcome to Quillet"));
    const auto screen = m_services.screens.main();
    if (!screen)
        return;
    Rect usable = flipped(screen->visibleFrame, m_services.screens.all().front().frame.size.height);
    usable.origin.y += QGuiApplication::primaryScreen()->geometry().top();
    new Centring(*m_window, usable); // which the window owns
}

void SetupWindow::finish() {
    m_services.preferences.set(didOnboardKey(), true);
    m_window->close();
}

} // namespace quillet
