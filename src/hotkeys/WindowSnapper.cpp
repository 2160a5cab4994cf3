#include "hotkeys/WindowSnapper.h"

#include <algorithm>
#include <cmath>

namespace quillet {
namespace {

constexpr double roundingError = 0.75; // pixels are whole, points may not be
constexpr double forgivable = 2;       // of a window manager that counts its borders differently
constexpr double coarsestStep = 48;    // of the sizes that a terminal with large letters takes
constexpr size_t mostPasts = 64;

bool isNear(const Point& a, const Point& b, double within = roundingError) {
    return std::abs(a.x - b.x) <= within && std::abs(a.y - b.y) <= within;
}

bool isNear(const Size& a, const Size& b, double within = roundingError) {
    return std::abs(a.width - b.width) <= within && std::abs(a.height - b.height) <= within;
}

/// Along one axis at least.
bool isSmaller(const Size& a, const Size& b, double by) {
    return a.width < b.width - by || a.height < b.height - by;
}

bool isNear(const Rect& a, const Rect& b) {
    return isNear(a.origin, b.origin) && isNear(a.size, b.size);
}

/// The frame to give a window that is to fill the screen again, as that is what it has afterwards:
/// along the filled axes the one of the moment, for nobody knows it of the time before.
Rect underFill(const Rect& before, const WindowFill& fill, const Rect& now) {
    Rect frame = before;
    if (fill.horizontally || fill.fullScreen) {
        frame.origin.x = now.origin.x;
        frame.size.width = now.size.width;
    }
    if (fill.vertically || fill.fullScreen) {
        frame.origin.y = now.origin.y;
        frame.size.height = now.size.height;
    }
    return frame;
}

/// From desktop points to points from the top left of the primary screen, or back.
Rect flipped(const Rect& rect, const std::vector<Screen>& screens) {
    return flipped(rect, screens.empty() ? 0 : screens.front().frame.size.height);
}

} // namespace

WindowSnapper::WindowSnapper(Services services, std::function<void()> showSetupGuide)
    : m_services(services), m_showSetupGuide(std::move(showSetupGuide)) {}

WindowSnapper::Outcome WindowSnapper::snap(Position position) {
    const auto window = focusedWindow();
    if (!window)
        return whyNoWindow();
    const std::vector<Screen> screens = m_services.screens.all();
    const auto screen = screenContaining(window->frame, screens);
    if (!screen)
        return refuse(Outcome::noWindow);
    const Rect visible = flipped(screen->visibleFrame, screens);

    const SnapPositionRow& to = row(position);
    const bool again = m_last && m_last->position == position && m_last->window == window->id;
    const size_t step = again && to.cycles() ? (m_last->step + 1) % snapFractions.size() : 0;
    m_last = {position, step, window->id};
    const Rect target =
        snapTarget(to, visible, window->frame.size, snapFractions[step], screen->backingScale);
    move({*window, target, to.anchor});
    return Outcome::moves;
}

WindowSnapper::Outcome WindowSnapper::restore() {
    const auto window = focusedWindow();
    if (!window)
        return whyNoWindow();
    const auto past = pastOf(window->id);
    if (past == m_pasts.end())
        return refuse(Outcome::nothingToRestore);
    const Window before = past->before;
    m_pasts.erase(past);
    m_last.reset();
    const std::vector<Screen> screens = m_services.screens.all();
    const bool isOnItsScreen =
        screenContaining(before.frame, screens) == screenContaining(window->frame, screens);
    const Rect target =
        isOnItsScreen ? underFill(before.frame, before.fill, window->frame) : before.frame;
    apply({.window = *window, .target = target, .fill = before.fill}, target);
    return Outcome::moves;
}

WindowSnapper::Outcome WindowSnapper::moveToNextDisplay() {
    const auto window = focusedWindow();
    if (!window)
        return whyNoWindow();
    const std::vector<Screen> screens = m_services.screens.all();
    const auto screen = screenContaining(window->frame, screens);
    if (!screen || screens.size() < 2)
        return refuse(Outcome::noOtherDisplay);
    const auto here = std::ranges::find(screens, screen->number, &Screen::number);
    const Screen& next = here + 1 == screens.end() ? screens.front() : *(here + 1);

    const Rect from = flipped(screen->visibleFrame, screens);
    const Rect to = flipped(next.visibleFrame, screens);
    // A size that was cut to fit a program's own there shall not be stretched here.
    const auto past = pastOf(window->id);
    const Rect frame =
        past != m_pasts.end() && past->isStillThere(*window) ? past->target : window->frame;
    const Size size{frame.size.width * to.size.width / from.size.width,
                    frame.size.height * to.size.height / from.size.height};
    const SnapAnchor anchor = anchorIn(from, frame);
    move({*window, Rect{anchored(anchor, to, size), size}.intersection(to), anchor});
    return Outcome::moves;
}

std::optional<WindowSnapper::Window> WindowSnapper::focusedWindow() {
    m_services.permissions.refresh();
    if (!m_services.permissions.accessibility()) {
        m_showSetupGuide();
        return std::nullopt;
    }
    const auto id = m_services.windows.identity();
    const auto frame = id ? m_services.windows.topLeftFrame(*id) : std::nullopt;
    if (!frame) {
        m_services.workspace.beep();
        return std::nullopt;
    }
    return Window{*id, *frame, m_services.windows.fill(*id)};
}

WindowSnapper::Outcome WindowSnapper::whyNoWindow() const {
    return m_services.permissions.accessibility() ? Outcome::noWindow : Outcome::noPermission;
}

std::optional<Screen> WindowSnapper::screenContaining(const Rect& frame,
                                                      const std::vector<Screen>& screens) {
    const Point centre = flipped({{frame.midX(), frame.midY()}, {}}, screens).origin;
    const auto around = std::ranges::find_if(
        screens, [&](const Screen& screen) { return screen.frame.containsPointer(centre); });
    return around != screens.end() ? std::optional(*around) : m_services.screens.main();
}

void WindowSnapper::move(const Move& move) {
    noteBefore(move.window);
    apply(move, move.target);
}

/// The first size lets the window fit at its new place, the second corrects what its program cut
/// off at the old one.
void WindowSnapper::apply(Move move, const Rect& place) {
    const Identity window = move.window.id;
    if (const auto past = pastOf(window); past != m_pasts.end()) {
        past->target = move.target;
        past->after.reset();
    }
    m_services.windows.setSize(window, place.size);
    m_services.windows.setTopLeft(window, place.origin);
    m_services.windows.setSize(window, place.size);
    if (move.fill.isAny())
        m_services.windows.setFill(window, move.fill);
    m_services.windows.whenSettled(
        window,
        m_alive([this, move](const std::optional<Rect>& frame) mutable { verify(move, frame); }));
}

void WindowSnapper::verify(Move& move, const std::optional<Rect>& frame) {
    noteAfter(move.window.id, frame);
    if (!frame)
        return; // it was closed, which is what somebody wanted
    if (move.fill.isAny()) {
        if (m_services.windows.fill(move.window.id) != move.fill)
            m_services.workspace.beep();
        return;
    }
    const bool leftFill = move.window.fill.isAny();
    const Point corner = anchored(move.anchor, move.target, frame->size);
    const bool inPlace = isNear(frame->origin, corner);
    const bool hasSize =
        isNear(frame->size, move.target.size, leftFill ? roundingError : coarsestStep);
    const bool stayed = isNear(*frame, move.window.frame) && !(inPlace && hasSize);
    const bool isOnlyTooLarge = inPlace && !isSmaller(frame->size, move.target.size, coarsestStep);
    if (stayed && !isOnlyTooLarge && !leftFill && !move.anchored) {
        letGo(move);
    } else if (!hasSize && !move.askedAgain) {
        move.askedAgain = true;
        apply(move, move.target);
    } else if (!inPlace && !stayed && !move.anchored) {
        move.anchored = true;
        apply(move, {corner, frame->size});
    } else if (!move.refused &&
               ((stayed && !move.anchored) || !isNear(frame->origin, corner, forgivable))) {
        move.refused = true;
        m_services.workspace.beep();
    }
}

/// Window managers may hold a window fast that they tiled, and only let go of it for another
/// place of theirs. One that is in its corner and only too large most likely cannot be smaller, and
/// would just flash.
void WindowSnapper::letGo(Move move) {
    const Identity window = move.window.id;
    if (const auto past = pastOf(window); past != m_pasts.end())
        past->after.reset();
    move.window.fill = {.horizontally = true, .vertically = true};
    m_services.windows.setFill(window, move.window.fill);
    m_services.windows.whenSettled(window, m_alive([this, move](const std::optional<Rect>& frame) {
                                       if (frame)
                                           apply(move, move.target);
                                   }));
}

WindowSnapper::Outcome WindowSnapper::refuse(Outcome outcome) {
    m_services.workspace.beep();
    return outcome;
}

/// Where a window is now is the user's choice, unless it was left there from here.
void WindowSnapper::noteBefore(const Window& window) {
    Past past{window, {}, {}};
    if (const auto known = pastOf(window.id); known != m_pasts.end()) {
        if (!known->after || known->isStillThere(window))
            past.before = known->before;
        m_pasts.erase(known);
    }
    m_pasts.push_back(past);
    if (m_pasts.size() > mostPasts)
        m_pasts.erase(m_pasts.begin());
}

bool WindowSnapper::Past::isStillThere(const Window& window) const {
    return after && isNear(*after, window.frame) && !window.fill.isAny();
}

void WindowSnapper::noteAfter(Identity window, const std::optional<Rect>& frame) {
    const auto past = pastOf(window);
    if (past == m_pasts.end())
        return;
    if (frame)
        past->after = frame;
    else
        m_pasts.erase(past);
}

std::vector<WindowSnapper::Past>::iterator WindowSnapper::pastOf(Identity window) {
    return std::ranges::find(m_pasts, window, [](const Past& past) { return past.before.id; });
}

} // namespace quillet
