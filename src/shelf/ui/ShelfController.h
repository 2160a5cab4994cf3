#pragma once

#include "app/look/Toast.h"
#include "platform/Alive.h"
#include "platform/Screens.h"
#include "shelf/Paster.h"
#include "shelf/ui/KeyMonitor.h"
#include "shelf/ui/ShelfPanel.h"
#include "shelf/ui/ShelfView.h"

#include <deque>
#include <QCoreApplication>

namespace quillet {

/// The shelf as a whole: shows and hides its panel, takes the keys meanwhile, and pastes what the
/// user chose into the application that the user was working in. Owns model, panel and view for the
/// whole run.
class ShelfController {
    Q_DECLARE_TR_FUNCTIONS(ShelfController)

public:
    struct Services {
        ShelfView::Services view;
        Screens& screens;
        KeySynthesis& keys;
        const Access& access;
        Toast& toast;
    };

    /// `showSetupGuide` explains the permission that pasting needs.
    ShelfController(const Services& services, std::function<void()> showSetupGuide);

    /// Does ahead of the first show() what it would spend time on. Shows nothing.
    void prepare();

    /// Slides up at the bottom of the screen with the pointer, without search or filter.
    void show();

    /// Lets go of the keyboard and fades out; without effect when it is not on the screen.
    void hide();

    /// True also while it fades out.
    bool isVisible() const { return m_panel->isVisible(); }

    ShelfModel& model() { return m_model; }
    ShelfPanel& window() { return m_window; }

private:
    void place(double progress);
    void putAway();
    void followScreens();
    void installKeyMonitor();
    void removeKeyMonitor();
    bool handle(const ShelfKey& key);
    bool perform(const ShelfAction& action);
    void pasteOnceFound(const ShelfAction& action);
    void pasteWaiting();
    std::shared_ptr<ClipItem> itemToPaste(const ShelfAction& action) const;
    void removeSelected();
    void paste(const std::shared_ptr<ClipItem>& item, bool plainText);
    void pasteEnded(bool posted);

    Services m_services;
    std::function<void()> m_showSetupGuide;
    ShelfModel m_model;
    ShelfPanel m_window;
    ShelfView m_view;
    std::unique_ptr<Panel> m_panel;
    Rect m_target; ///< where the panel is at rest
    Animation m_animation;
    Screens::Observation m_screenChanges;
    std::unique_ptr<KeyMonitor> m_keyMonitor;
    std::unique_ptr<Timer> m_ageing;             ///< while there is a key monitor
    std::optional<ShelfAction> m_waiting;        ///< a paste, for the search to know of what
    std::unique_ptr<Timer> m_patience;           ///< the end of that wait
    std::deque<std::unique_ptr<Timer>> m_pastes; ///< keystrokes to come, in order
    bool m_showedAccessibilitySetup = false;
    Alive m_alive;
};

} // namespace quillet
