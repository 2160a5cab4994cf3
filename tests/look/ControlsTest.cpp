#include "app/look/Buttons.h"
#include "app/look/Menu.h"
#include "app/look/SearchField.h"
#include "app/look/Toggles.h"
#include "app/look/Tooltips.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryPasteboard.h"
#include "platform/memory/MemoryScheduler.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ControlsTest : public testing::Test {
protected:
    ControlsTest() { window.resize(400, 300); }

    void show() {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }

    static void send(QWidget& widget, QEvent::Type type, const QPointF& at) {
        QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(&widget, &event);
    }

    static void click(QWidget& widget, const QPointF& at) {
        send(widget, QEvent::MouseButtonPress, at);
        send(widget, QEvent::MouseButtonRelease, at);
    }

    static void key(QWidget& widget, int code, Qt::KeyboardModifiers modifiers = {},
                    const QString& text = {}) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, modifiers, text);
            QApplication::sendEvent(&widget, &event);
        }
    }

    Theme theme;
    MemoryScheduler scheduler;
    MemoryPanels panels;
    MemoryPasteboard pasteboard;
    Look look{theme, scheduler, panels};
    QWidget window;
};

TEST_F(ControlsTest, theFocusRingFollowsTheKeyboardOnly) {
    Chip chip(look, u"Links"_s, &window);
    Button button(look, ButtonKind::regular, u"Save"_s, &window);
    chip.move(50, 50);
    show();
    const auto extra = [this] { return window.children().size() - 2; };
    button.setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(extra(), 0);
    chip.setFocus(Qt::TabFocusReason);
    ASSERT_EQ(extra(), 1);
    EXPECT_EQ(static_cast<QWidget*>(window.children().last())->geometry(),
              chip.geometry().adjusted(-4, -4, 4, 4));
    button.setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(extra(), 0);
}

TEST_F(ControlsTest, controlsAnswerToClicksAndKeysAndTellAssistiveTechnology) {
    Chip chip(look, u"Links"_s, &window);
    Switch awake(look, u"Keep awake"_s, &window);
    show();
    int clicks = 0;
    QObject::connect(&chip, &Chip::clicked, [&] { ++clicks; });
    click(chip, {2, 13});
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(chip.isChecked()) << "its owner decides";
    awake.resize(awake.sizeHint());
    click(awake, {36, 20});
    EXPECT_TRUE(awake.isChecked());
    const auto* accessible = QAccessible::queryAccessibleInterface(&awake);
    EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"Keep awake"_s);
    EXPECT_TRUE(accessible->state().checked);
    key(awake, Qt::Key_Space);
    EXPECT_FALSE(awake.isChecked());
}

TEST_F(ControlsTest, aFieldPastesWithoutWaitingAndCopiesOnlyWhenAsked) {
    SearchField field(look, pasteboard, u"Search"_s, &window);
    show();
    field.setFocus();
    QStringList edits;
    QObject::connect(&field, &QLineEdit::textEdited, [&](const QString& text) { edits << text; });
    pasteboard.copyText(u"ls -l\n"_s);
    pasteboard.holdReads();
    key(field, Qt::Key_V, Qt::ControlModifier);
    key(field, Qt::Key_X, {}, u"x"_s);
    pasteboard.releaseReads();
    EXPECT_EQ(edits, QStringList({u"x"_s, u"xls -l"_s}));
    key(field, Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(field.text(), u"xls -lls -l"_s);

    field.setSelection(0, 6);
    key(field, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(pasteboard.text(), u"xls -l"_s);
    EXPECT_EQ(field.text(), u"ls -l"_s);

    field.clear();
    pasteboard.holdReads();
    key(field, Qt::Key_V, Qt::ControlModifier);
    window.hide();
    window.show();
    pasteboard.releaseReads();
    EXPECT_EQ(field.text(), QString()) << "meant for what was there before";
}

TEST_F(ControlsTest, aMenuReportsTheChosenRowAndClosesOnAClickInItsShadow) {
    Menu menu(look);
    menu.addAction(u"Paste"_s);
    menu.addSeparator();
    QAction* remove = menu.addDestructiveAction(u"Delete"_s);
    QAction* triggered = nullptr;
    QObject::connect(&menu, &QMenu::triggered, [&](QAction* action) { triggered = action; });
    menu.popupAt({100, 100});
    EXPECT_EQ(menu.pos(), QPoint(100 - 48, 100 - 48)) << "its shadow lies outside";
    const QRect row = menu.actionGeometry(remove);
    send(menu, QEvent::MouseMove, row.center());
    click(menu, row.center());
    EXPECT_EQ(triggered, remove);
    menu.popupAt({100, 100});
    click(menu, {10, 10});
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(ControlsTest, aTooltipStaysOnTheScreenAndGoesWithThePointer) {
    SymbolButton close(look, u"xmark"_s, u"Close (Esc)"_s, &window);
    Tooltips tooltips(look);
    show();
    const auto bubble = []() -> const QWidget* {
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->windowType() == Qt::ToolTip && widget->isVisible())
                return widget;
        }
        return nullptr;
    };
    const QRect screen = window.screen()->availableGeometry();
    QHelpEvent rest(QEvent::ToolTip, {5, 5}, screen.bottomRight());
    QApplication::sendEvent(&close, &rest);
    ASSERT_TRUE(bubble());
    EXPECT_TRUE(screen.contains(bubble()->geometry()));
    const QRect card = bubble()->geometry().adjusted(10, 10, -10, -10);
    EXPECT_LT(card.bottom(), screen.bottom() - 5) << "not under the pointer";
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&close, &leave);
    EXPECT_FALSE(bubble());
}

} // namespace quillet
