#include "shelf/ui/ShelfController.h"
#include "shelf/ShelfLog.h"

#include <algorithm>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double margin = 10;
constexpr double slide = 24;
constexpr auto showDuration = 180ms;
constexpr auto hideDuration = 120ms;
constexpr auto pasteDelay = 60ms;
constexpr auto searchPatience = 300ms;
constexpr auto agePrecision = 1s;

Rect targetOn(const Screen& screen) {
    const Rect visible = screen.visibleFrame;
    return {{visible.minX() + margin, visible.minY() + margin},
            {visible.size.width - 2 * margin, ShelfPanel::height}};
}

} // namespace

ShelfController::ShelfController(const Services& services, std::function<void()> showSetupGuide)
    : m_services(services),
      m_showSetupGuide(std::move(showSetupGuide)),
      m_model(services.view.store, services.view.look.scheduler),
      m_window(services.view.look.theme, services.view.look.panels),
      m_view(
          m_model, services.view,
          [this](const auto& item, bool plainText) { paste(item, plainText); }, [this] { hide(); }),
      m_panel(services.view.look.panels.make(m_window, m_window.style())),
      m_animation(services.view.look.scheduler),
      m_screenChanges(services.screens.observe([this] { followScreens(); })) {
    m_window.setContent(m_view);
    m_panel->onResignKey = [this] { hide(); };
    QObject::connect(&m_model, &ShelfModel::visibleItemsChanged, &m_window, [this] {
        if (m_waiting && m_model.isSearchComplete())
            m_patience = m_services.view.look.scheduler.after(0ms, [this] { pasteWaiting(); });
    });
    QObject::connect(&m_model, &ShelfModel::queryChanged, &m_window, [this] {
        m_waiting.reset();
        m_patience.reset();
    });
}

void ShelfController::prepare() {
    const auto screen = m_services.screens.main();
    if (!screen || m_panel->isVisible())
        return;
    m_model.resetForShow();
    m_target = targetOn(*screen);
    place(0);
    m_window.grab(); // makes the cards, loads fonts and symbols
    m_model.release();
}

void ShelfController::show() {
    m_model.resetForShow();
    const auto screen = m_services.screens.main();
    if (!screen)
        return;
    m_target = targetOn(*screen);
    place(0);
    m_panel->makeKeyAndOrderFront();
    m_animation.start(Motion::easeOut(showDuration), [this](double progress) { place(progress); });
    installKeyMonitor();
}

/// Puts the panel where it is at that progress of sliding up.
void ShelfController::place(double progress) {
    const double below = slide * (1 - progress);
    m_panel->setFrame({{m_target.minX(), m_target.minY() - below}, m_target.size});
    m_panel->setAlpha(progress);
}

/// Leaves the panel where it slides up from, so that it need not be moved there first.
void ShelfController::putAway() {
    m_animation.stop();
    m_panel->orderOut();
    place(0);
    m_model.release();
}

/// Stays on its screen as long as there is one.
void ShelfController::followScreens() {
    if (!m_keyMonitor)
        return;
    const auto own = screenWith({m_target.midX(), m_target.midY()}, m_services.screens.all());
    const auto screen = own ? own : m_services.screens.main();
    if (!screen || targetOn(*screen) == m_target)
        return;
    m_target = targetOn(*screen);
    m_animation.stop();
    m_panel->setFrame(m_target);
    m_panel->setAlpha(1);
}

void ShelfController::hide() {
    removeKeyMonitor();
    m_panel->giveKeyboardBack(); // what is typed from now on is for the application
    if (!m_panel->isVisible())
        return;
    const double start = m_panel->alpha();
    m_animation.start(
        Motion::easeOut(hideDuration),
        [this, start](double progress) { m_panel->setAlpha(start * (1 - progress)); },
        [this] { putAway(); });
}

void ShelfController::installKeyMonitor() {
    removeKeyMonitor();
    m_keyMonitor = std::make_unique<KeyMonitor>(
        m_window, [this](const ShelfKey& key) { return m_panel->isKey() && handle(key); });
    m_ageing = m_services.view.look.scheduler.every(agePrecision, agePrecision / 2,
                                                    [this] { m_view.row().refreshLooks(); });
}

void ShelfController::removeKeyMonitor() {
    m_keyMonitor.reset();
    m_ageing.reset();
    m_waiting.reset();
    m_patience.reset();
}

bool ShelfController::handle(const ShelfKey& key) {
    const auto action = shelfAction(key);
    return action && perform(*action);
}

bool ShelfController::perform(const ShelfAction& action) {
    switch (action.kind) {
    case ShelfAction::Kind::pasteSelected:
    case ShelfAction::Kind::pasteNumber:
        pasteOnceFound(action);
        return true;
    case ShelfAction::Kind::remove:
        removeSelected();
        return true;
    case ShelfAction::Kind::cancel:
        if (m_model.query().isEmpty())
            hide();
        else
            m_model.setQuery({});
        return true;
    case ShelfAction::Kind::moveSelection:
        m_model.moveSelection(action.number);
        return true;
    case ShelfAction::Kind::togglePin:
        const auto item = m_model.selectedItem();
        if (item)
            m_services.view.store.togglePin(item);
        return item != nullptr;
    }
    return false;
}

/// Whoever types fast presses Return before long texts have been searched.
void ShelfController::pasteOnceFound(const ShelfAction& action) {
    if (m_waiting)
        return;
    m_waiting = action;
    if (m_model.isSearchComplete())
        pasteWaiting();
    else
        m_patience =
            m_services.view.look.scheduler.after(searchPatience, [this] { pasteWaiting(); });
}

void ShelfController::pasteWaiting() {
    m_patience.reset();
    const auto action = std::exchange(m_waiting, std::nullopt);
    if (const auto item = itemToPaste(*action))
        paste(item, action->plainText);
}

std::shared_ptr<ClipItem> ShelfController::itemToPaste(const ShelfAction& action) const {
    if (action.kind == ShelfAction::Kind::pasteSelected)
        return m_model.selectedItem();
    const ClipItems& items = m_model.visibleItems();
    const auto index = static_cast<size_t>(action.number - 1);
    return index < items.size() ? items[index] : nullptr;
}

void ShelfController::removeSelected() {
    const auto item = m_model.selectedItem();
    if (!item)
        return;
    m_model.moveSelection(+1);
    if (m_model.selectedItem() == item)
        m_model.moveSelection(-1);
    m_services.view.store.deleteItem(item);
}

void ShelfController::paste(const std::shared_ptr<ClipItem>& item, bool plainText) {
    Sounds& sounds = m_services.view.sounds;
    const auto fail = [this](const QString& message) {
        m_services.toast.show(message, u"exclamationmark.triangle.fill"_s);
    };
    // Writing a clip without content would only empty the pasteboard.
    const bool isReadable = item->isContentReadable();
    const bool isCopied = isReadable && m_services.view.store.copyToPasteboard(item, plainText);
    removeKeyMonitor();
    putAway();
    if (!isReadable) {
        qCWarning(logShelf) << "The content of clip" << item->id() << "cannot be read";
        return fail(tr("The content of this clip cannot be read"));
    }
    if (!isCopied)
        return fail(tr("Clipboard is in use — try again"));
    if (!m_services.access.isGranted(Access::Kind::accessibility)) {
        sounds.play(Sounds::Event::copy);
        if (!std::exchange(m_showedAccessibilitySetup, true))
            m_showSetupGuide();
        return;
    }
    m_pastes.push_back(m_services.view.look.scheduler.after(pasteDelay, [this] {
        Paster::pasteIntoFrontApp(m_services.access, m_services.keys,
                                  m_alive([this](bool posted) { pasteEnded(posted); }));
        m_pastes.pop_front();
    }));
}

/// What could not be pasted is on the pasteboard for the user to paste.
void ShelfController::pasteEnded(bool posted) {
    m_services.view.sounds.play(posted ? Sounds::Event::paste : Sounds::Event::copy);
    if (!posted)
        m_services.toast.show(tr("Copied — ready to paste"), u"doc.on.doc"_s);
}

} // namespace quillet
