#include "platform/linux/x11/X11Panel.h"

#include <array>
#include <cmath>
#include <QApplication>
#include <QBackingStore>
#include <QBitmap>
#include <QLoggingCategory>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <xcb/shape.h>

namespace quillet {

Q_LOGGING_CATEGORY(logPanels, "quillet.panels", QtWarningMsg)

namespace {

// The key that opened the panel may still be down, or a menu of another program be closing.
constexpr Scheduler::Duration grabRetry{10};
constexpr int grabAttempts = 60;
constexpr Scheduler::Duration focusDeadline{300};

constexpr uint8_t sentByProgram = 0x80;

/// It made the window, so requests about the window keep their order there.
xcb_connection_t* toolkit() {
    return X11Connection::toolkit();
}

xcb_window_t windowOf(const QWidget& widget) {
    return static_cast<xcb_window_t>(widget.internalWinId());
}

QRect rounded(const Rect& topLeft) {
    const auto left = static_cast<int>(std::lround(topLeft.minX()));
    const auto top = static_cast<int>(std::lround(topLeft.minY()));
    return {left, top, static_cast<int>(std::lround(topLeft.maxX())) - left,
            static_cast<int>(std::lround(topLeft.maxY())) - top};
}

} // namespace

X11Panel::X11Panel(X11Panels& panels, QWidget& content, const PanelStyle& style)
    : m_panels(panels), m_content(content), m_style(style) {
    // Without WindowDoesNotAcceptFocus the toolkit would set the focus when a menu of the panel
    // closes, and no window would be the active one.
    content.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint |
                           Qt::WindowDoesNotAcceptFocus);
    content.setAttribute(Qt::WA_TranslucentBackground);
    content.setAttribute(Qt::WA_ShowWithoutActivating);
    content.setAttribute(Qt::WA_QuitOnClose, false);
    content.winId(); // makes the window
    tellFrameExtents();
    qApp->installNativeEventFilter(this);
    connect(content.windowHandle(), &QWindow::screenChanged, this, [this] { takePixels(); });
    connect(qApp, &QGuiApplication::focusWindowChanged, this, [this] {
        if (m_isKey && hasFocus())
            letKeysThrough();
    });
}

X11Panel::~X11Panel() {
    qApp->removeNativeEventFilter(this);
    orderOut();
    m_panels.removed(*this);
}

/// The toolkit asks for them whenever the panel moves, and climbs the tree of windows if there are
/// none.
void X11Panel::tellFrameExtents() {
    if (!toolkit())
        return;
    constexpr std::array<uint32_t, 4> none{};
    xcb_change_property(toolkit(), XCB_PROP_MODE_REPLACE, windowOf(m_content),
                        m_panels.m_connection.atom("_NET_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32,
                        none.size(), none.data());
}

void X11Panel::setFrame(const Rect& frame) {
    m_frame = frame;
    const QSize before = m_content.size();
    m_content.setGeometry(rounded(
        m_panels.m_screens.lastGeometry().topLeft(frame.inset(-m_style.margin, -m_style.margin))));
    if (m_content.size() != before)
        applyShape();
    // A hidden widget would move its window when it shows, and the toolkit then ask about it.
    if (!m_content.isVisible())
        m_content.windowHandle()->setGeometry(m_content.geometry());
}

/// On a screen of another scale the same points are other pixels. The toolkit overlooks that where
/// the size in points stays what it was.
void X11Panel::takePixels() {
    m_content.windowHandle()->setGeometry(m_content.geometry());
    applyShape();
}

void X11Panel::setAlpha(double alpha) {
    m_alpha = alpha;
    m_content.setWindowOpacity(alpha);
    if (xcb_connection_t* connection = toolkit())
        xcb_flush(connection); // the toolkit would keep the request until something else happens
}

void X11Panel::orderFront() {
    applyShape();
    m_content.show();
    m_panels.raise(*this);
}

void X11Panel::makeKeyAndOrderFront() {
    orderFront();
    if (!m_style.canBecomeKey)
        return;
    m_panels.becameKey(*this);
    if (!m_isKey)
        qApp->installEventFilter(this);
    m_isKey = true;
    takeKeyboard(grabAttempts);
}

void X11Panel::orderOut() {
    giveKeyboardBack();
    if (!m_content.isVisible())
        return;
    m_content.hide();
    awaitPixels();
}

/// Before it paints, the toolkit waits until the server has read what was painted last. Better now
/// than when the panel is to show, which paints all of it anyway.
void X11Panel::awaitPixels() {
    QBackingStore* pixels = m_content.backingStore();
    if (!pixels || pixels->size().isEmpty())
        return; // it was never painted
    pixels->beginPaint(m_content.rect());
    pixels->endPaint();
}

bool X11Panel::isVisible() const {
    return m_content.isVisible();
}

void X11Panel::raiseWindow() {
    m_content.raise();
}

void X11Panel::resignKey() {
    if (!m_isKey)
        return;
    giveKeyboardBack();
    if (onResignKey)
        onResignKey();
}

bool X11Panel::eventFilter(QObject* object, QEvent* event) {
    // A menu takes the keyboard for itself and drops it when it closes.
    if (event->type() == QEvent::Hide && object->isWidgetType() &&
        static_cast<QWidget*>(object)->windowType() == Qt::Popup) {
        m_retry = m_panels.m_scheduler.after(Scheduler::Duration(0),
                                             [this] { takeKeyboard(grabAttempts); });
    }
    return false;
}

/// The toolkit distrusts the position in such an event unless another program sent it, and asks the
/// server, as a window manager may have put the window into a frame.
bool X11Panel::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    auto& event = *static_cast<xcb_generic_event_t*>(message);
    if (event.response_type == XCB_CONFIGURE_NOTIFY &&
        reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == windowOf(m_content))
        event.response_type |= sentByProgram;
    return false;
}

/// Clicks reach what is below, except on the card. Where windows cannot be translucent, nothing
/// but the card is there at all.
void X11Panel::applyShape() {
    const int margin = static_cast<int>(std::lround(m_style.margin));
    const QRect card = m_content.rect().adjusted(margin, margin, -margin, -margin);
    if (m_panels.isTranslucent()) {
        m_content.clearMask();
    } else {
        QBitmap shape(m_content.size());
        shape.clear();
        QPainter painter(&shape);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::color1);
        painter.drawRoundedRect(card, m_style.cornerRadius, m_style.cornerRadius);
        painter.end();
        m_content.setMask(shape);
    }
    if (!toolkit())
        return;
    const qreal scale = m_content.devicePixelRatio();
    const auto pixels = [scale](int points) { return std::lround(points * scale); };
    const xcb_rectangle_t clickable{
        static_cast<int16_t>(pixels(card.x())), static_cast<int16_t>(pixels(card.y())),
        static_cast<uint16_t>(pixels(card.width())), static_cast<uint16_t>(pixels(card.height()))};
    xcb_shape_rectangles(toolkit(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, windowOf(m_content), 0, 0,
                         m_style.ignoresMouse ? 0 : 1, &clickable);
}

/// The keys wait in the server until the toolkit has given the panel the focus: before that it
/// composes nothing and would drop an accent.
void X11Panel::takeKeyboard(int attemptsLeft) {
    m_retry.reset();
    m_isTakingKeyboard = m_isKey && toolkit() && !QApplication::activePopupWidget();
    if (!m_isTakingKeyboard)
        return;
    // The panel need not wait for the answer to show itself.
    forgetGrab();
    m_grabAsked = xcb_grab_keyboard(toolkit(), 0, windowOf(m_content), XCB_CURRENT_TIME,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC);
    if (hasFocus())
        letKeysThrough();
    xcb_flush(toolkit());
    m_retry = m_panels.m_scheduler.after(grabRetry, [this, attemptsLeft] {
        if (hasTakenKeyboard())
            awaitFocus();
        else if (attemptsLeft == 0)
            takeFocus();
        else
            takeKeyboard(attemptsLeft - 1);
    });
}

/// A modal window takes the focus away; the user's keys must not wait for ever.
void X11Panel::awaitFocus() {
    if (!hasFocus())
        m_retry = m_panels.m_scheduler.after(focusDeadline, [this] { letKeysThrough(); });
}

bool X11Panel::hasFocus() const {
    return QGuiApplication::focusWindow() == m_content.windowHandle();
}

void X11Panel::letKeysThrough() {
    if (!toolkit())
        return;
    xcb_allow_events(toolkit(), XCB_ALLOW_ASYNC_KEYBOARD, XCB_CURRENT_TIME);
    xcb_flush(toolkit());
}

bool X11Panel::hasTakenKeyboard() {
    const auto asked = std::exchange(m_grabAsked, std::nullopt);
    const XcbOwned<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(toolkit(), *asked, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void X11Panel::forgetGrab() {
    if (const auto asked = std::exchange(m_grabAsked, std::nullopt))
        xcb_discard_reply(toolkit(), asked->sequence);
}

void X11Panel::takeFocus() {
    m_isTakingKeyboard = false;
    if (!toolkit())
        return;
    qCWarning(logPanels, "another program holds the keyboard; the panel gets keys when it lets go");
    xcb_ungrab_keyboard(toolkit(), XCB_CURRENT_TIME); // what the shortcut that opened it still has
    // From the second time on it is the panel that has it.
    if (m_focusBefore == XCB_WINDOW_NONE) {
        const XcbOwned<xcb_get_input_focus_reply_t> focus(
            xcb_get_input_focus_reply(toolkit(), xcb_get_input_focus(toolkit()), nullptr));
        m_focusBefore = focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
    }
    xcb_set_input_focus(toolkit(), XCB_INPUT_FOCUS_PARENT, windowOf(m_content), XCB_CURRENT_TIME);
    xcb_flush(toolkit());
}

void X11Panel::giveKeyboardBack() {
    if (!m_isKey)
        return;
    m_isKey = false;
    m_isTakingKeyboard = false;
    m_retry.reset();
    forgetGrab();
    qApp->removeEventFilter(this);
    m_content.windowHandle()->setKeyboardGrabEnabled(false);
    if (m_focusBefore != XCB_WINDOW_NONE) {
        xcb_set_input_focus(toolkit(), XCB_INPUT_FOCUS_PARENT, m_focusBefore, XCB_CURRENT_TIME);
        m_focusBefore = XCB_WINDOW_NONE;
    }
    if (toolkit())
        xcb_flush(toolkit()); // whoever synthesizes keys next must find the keyboard free
    m_panels.gaveUpKey(*this);
}

} // namespace quillet
