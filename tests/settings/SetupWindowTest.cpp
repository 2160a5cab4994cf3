#include "settings/ui/SetupWindow.h"
#include "hotkeys/HotKeyWorld.h"
#include "look/Picture.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryScreens.h"
#include "platform/memory/MemoryWorkspace.h"
#include "settings/ui/PermissionCard.h"
#include "settings/ui/SetupView.h"

#include <gmock/gmock.h>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = Permissions::Kind;

class SetupWindowTest : public testing::Test {
protected:
    /// The guide as shown with the program's file at `path`.
    void show(const QString& path = u"/usr/bin/quillet"_s) {
        commands.results[u"/bin/sh"_s] = {0, {}};
        permissions.emplace(Permissions::Services{access, workspace, commands, scheduler},
                            Permissions::Program{path, [this] { ++terminations; }});
        setup.emplace(SetupWindow::Services{{theme, scheduler, panels},
                                            *permissions,
                                            *hotKeys.center,
                                            hotKeys.preferences,
                                            screens});
        setup->show();
    }

    QStringList buttons() const {
        QStringList texts;
        for (const Button* button : setup->window()->findChildren<Button*>()) {
            if (button->isVisible())
                texts << button->text();
        }
        return texts;
    }

    void click(const QString& text) {
        for (Button* button : setup->window()->findChildren<Button*>()) {
            if (button->isVisible() && button->text() == text)
                return button->click();
        }
        FAIL() << text.toStdString();
    }

    void press(int key) {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QApplication::sendEvent(setup->window()->focusWidget(), &event);
    }

    bool isOnboard() const { return hotKeys.preferences.value(SetupWindow::didOnboardKey()); }

    QImage picture() const { return setup->window()->grab().toImage(); }

    Theme theme;
    HotKeyWorld hotKeys;
    MemoryScheduler& scheduler = hotKeys.scheduler;
    MemoryPanels panels;
    MemoryScreens screens;
    MemoryAccess access;
    MemoryWorkspace workspace;
    MemoryCommands commands{scheduler};
    int terminations = 0;
    std::optional<Permissions> permissions;
    std::optional<SetupWindow> setup;
};

TEST_F(SetupWindowTest, returnEndsItForGoodAndTheCloseBoxDoesNot) {
    show();
    setup->window()->close();
    EXPECT_FALSE(isOnboard());
    setup->show();
    press(Qt::Key_Return);
    EXPECT_TRUE(isOnboard());
    EXPECT_FALSE(setup->window()->isVisible());
}

TEST_F(SetupWindowTest, itsCardsAskForWhatIsMissingAndShowAGrantByThemselves) {
    access.granted.clear();
    show();
    EXPECT_EQ(buttons(), QStringList({u"Continue"_s, u"Continue"_s, u"Show Quillet in Finder"_s,
                                      u"Finish Later"_s}));
    click(u"Continue"_s);
    EXPECT_EQ(access.requested, std::vector{Kind::screenRecording});
    click(u"Show Quillet in Finder"_s);
    EXPECT_EQ(workspace.revealed, QStringList{u"/usr/bin/quillet"_s});
    click(u"Restart Quillet"_s); // offered once it was asked for
    EXPECT_EQ(terminations, 1);
    access.granted = {Kind::screenRecording};
    scheduler.advance(1100ms);
    EXPECT_EQ(buttons(),
              QStringList({u"Continue"_s, u"Show Quillet in Finder"_s, u"Finish Later"_s}));
    access.granted.insert(Kind::accessibility);
    permissions->stopPolling(); // as another view does that is closed
    QEvent activated(QEvent::WindowActivate);
    QApplication::sendEvent(setup->window(), &activated);
    scheduler.advance(1100ms);
    EXPECT_EQ(buttons(), QStringList{u"Done"_s});

    setup->window()->close();
    access.granted.clear();
    scheduler.advance(5s);
    EXPECT_TRUE(permissions->accessibility()) << "nobody looks, nothing is polled";
    setup->show();
    EXPECT_FALSE(permissions->accessibility());
}

TEST_F(SetupWindowTest, shortcutsAreThoseInForceAndAssistiveProgramsLearnOfAll) {
    show();
    Shortcut other = hotKeys.center->shortcut(HotKeyAction::captureArea);
    other.keyName = u"F9"_s;
    hotKeys.center->set(other, HotKeyAction::captureArea);
    const auto hints = setup->window()->findChildren<ShortcutHint*>();
    EXPECT_EQ(hints.front()->accessibleName(), u"Capture area, ⇧⌘F9"_s);
    const auto* card = setup->window()->findChild<PermissionCard*>();
    EXPECT_EQ(card->accessibleName(), u"Screen Recording"_s);
    access.granted.clear();
    permissions->refresh();
    EXPECT_EQ(card->toolTip(), access.cause(Kind::screenRecording));
    EXPECT_TRUE(card->accessibleDescription().endsWith(card->toolTip()));
}

TEST_F(SetupWindowTest, onALowScreenItIsLowerAndEveryButtonCanBeReached) {
    screens.screens.push_back({2, u"Low"_s, {{1440, 0}, {1024, 540}}, {{1500, 30}, {964, 510}}, 2});
    screens.pointer = {1600, 100};
    const QRect usable(1500, 900 - 540, 964, 510);
    const auto isInSight = [&](const QWidget* widget) {
        return setup->window()->rect().contains(
            QRect(widget->mapTo(setup->window(), QPoint()), widget->size()));
    };
    show();
    const QRect window = setup->window()->geometry();
    EXPECT_TRUE(usable.contains(window));
    EXPECT_LT(window.height(), usable.height() - 20) << "room for the title bar";
    EXPECT_NEAR(window.center().x(), usable.center().x(), 1);
    EXPECT_TRUE(isInSight(setup->window()->focusWidget()));

    access.granted.clear();
    show(u"/home/me/build/quillet"_s);
    permissions->request(Kind::screenRecording);
    for (qsizetype i = 0; i < buttons().size(); ++i) {
        press(Qt::Key_Tab);
        EXPECT_TRUE(isInSight(setup->window()->focusWidget())) << i;
    }
}

TEST_F(SetupWindowTest, itLooksAsDrawn) {
    show();
    theme.setAppearance(Appearance::dark);
    EXPECT_TRUE(matchesPicture(picture(), u"setup-granted-dark"_s));
    theme.setAppearance(Appearance::light);
    access.granted.clear();
    show();
    permissions->request(Kind::screenRecording);
    EXPECT_TRUE(matchesPicture(picture(), u"setup-missing-light"_s));
    show(u"/home/me/build/quillet"_s);
    permissions->request(Kind::screenRecording);
    theme.setAppearance(Appearance::dark);
    EXPECT_TRUE(matchesPicture(picture(), u"setup-missing-all-rows-dark"_s));
}

} // namespace quillet
