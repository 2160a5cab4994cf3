#pragma once

#include "platform/linux/x11/X11Panels.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace quillet {

/// One window that the window manager leaves alone. It takes the keyboard by a grab, so that the
/// active window stays what it was; where another program has grabbed the keyboard for good, by
/// the input focus.
class X11Panel : public QObject, public Panel, private QAbstractNativeEventFilter {
public:
    X11Panel(X11Panels& panels, QWidget& content, const PanelStyle& style);
    ~X11Panel() override;

    void setFrame(const Rect& frame) override;
    Rect frame() const override { return m_frame; }
    void setAlpha(double alpha) override;
    double alpha() const override { return m_alpha; }
    void orderFront() override;
    void makeKeyAndOrderFront() override;
    void giveKeyboardBack() override;
    void orderOut() override;
    bool isVisible() const override;
    bool isKey() const override { return m_isKey; }

    int level() const { return m_style.level; }
    void raiseWindow();

    /// Whether it has grabbed the keyboard or is trying to. A panel that is key may have to do with
    /// the input focus.
    bool isTakingKeyboard() const { return m_isTakingKeyboard; }

    /// Gives the keyboard back because the user turned to another window.
    void resignKey();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void tellFrameExtents();
    void takePixels();
    void awaitPixels();
    void applyShape();
    void takeKeyboard(int attemptsLeft);
    void awaitFocus();
    bool hasFocus() const;
    void letKeysThrough();
    bool hasTakenKeyboard();
    void forgetGrab();
    void takeFocus();

    X11Panels& m_panels;
    QWidget& m_content;
    const PanelStyle m_style;
    Rect m_frame;
    double m_alpha = 1;
    bool m_isKey = false;
    bool m_isTakingKeyboard = false;
    xcb_window_t m_focusBefore = XCB_WINDOW_NONE; ///< where the focus was, if we took it
    std::optional<xcb_grab_keyboard_cookie_t> m_grabAsked;
    std::unique_ptr<Timer> m_retry;
};

} // namespace quillet
