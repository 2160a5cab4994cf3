#include "clipboard/ClipboardPreferences.h"
#include "FigureTable.h"
#include "LargeHistory.h"
#include "LoopProbe.h"
#include "shelf/ShelfModel.h"
#include "support/DesktopSession.h"
#include "support/Eventually.h"
#include "support/QuilletProcess.h"
#include "support/SamplePictures.h"
#include "support/XClient.h"

#include <algorithm>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <xcb/xtest.h>

// How fast the shelf is, and what it takes: the program itself on a desktop of its own, driven by
// keys and the wheel, watched from a second connection to its X server and by a probe that is
// preloaded into it. Only the search is measured without a window.

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Turn = LoopRecord::Turn;

constexpr int shows = 31;
constexpr int passes = 5;

double milliseconds(Clock::duration duration) {
    return Milliseconds(duration).count();
}

double largest(const std::vector<double>& values) {
    return values.empty() ? 0 : *std::ranges::max_element(values);
}

double median(std::vector<double> values) {
    if (values.empty())
        qFatal("nothing was measured");
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// The probe's side of a program that was started with environment().
class Probe {
public:
    Probe() {
        if (!m_file.open(QIODevice::ReadWrite | QIODevice::Truncate) ||
            !m_file.resize(sizeof(LoopRecord)))
            qFatal("no file for the probe");
        m_record = reinterpret_cast<const LoopRecord*>(m_file.map(0, sizeof(LoopRecord)));
        forget();
    }

    QStringList environment() const {
        return {u"LD_PRELOAD="_s + QStringLiteral(QUILLET_LOOP_PROBE),
                QString::fromLatin1(LoopRecord::variable) + u'=' + m_file.fileName()};
    }

    /// Leaves out of all figures what was until now.
    void forget() {
        m_turns = m_record->turns;
        m_ownWaits = m_record->ownWaits;
        m_libraryWaits = m_record->libraryWaits;
    }

    uint32_t ownWaits() const { return m_record->ownWaits - m_ownWaits; }
    uint32_t libraryWaits() const { return m_record->libraryWaits - m_libraryWaits; }

    /// The longest turn by one of its figures.
    double longest(float Turn::*figure) const {
        const uint32_t end = m_record->turns;
        if (end - m_turns > m_record->turn.size())
            qFatal("more turns than the probe keeps");
        float longest = 0;
        for (uint32_t number = m_turns; number != end; ++number)
            longest = std::max(longest, m_record->turn[number % m_record->turn.size()].*figure);
        return static_cast<double>(longest);
    }

private:
    QTemporaryDir m_folder;
    QFile m_file{m_folder.filePath(u"record"_s)};
    const LoopRecord* m_record = nullptr;
    uint32_t m_turns = 0;
    uint32_t m_ownWaits = 0;
    uint32_t m_libraryWaits = 0;
};

/// Keyboard and mouse of the desktop, and somebody's eyes.
class User {
public:
    explicit User(const QByteArray& display) : m_client(display) {
        const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_client.connection(), m_client.root(), XCB_CW_EVENT_MASK,
                                     &events);
    }

    void press(xcb_keysym_t key) { fake(XCB_KEY_PRESS, codeOf(key)); }
    void release(xcb_keysym_t key) { fake(XCB_KEY_RELEASE, codeOf(key)); }
    void type(xcb_keysym_t key) {
        press(key);
        release(key);
    }

    void point(QPoint place) {
        xcb_test_fake_input(m_client.connection(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME,
                            m_client.root(), static_cast<int16_t>(place.x()),
                            static_cast<int16_t>(place.y()), 0);
        xcb_flush(m_client.connection());
    }

    /// Turns the wheel by one notch.
    void scroll(bool isForward) {
        const uint8_t button = isForward ? 5 : 4;
        fake(XCB_BUTTON_PRESS, button);
        fake(XCB_BUTTON_RELEASE, button);
    }

    /// Waits until a window of somebody who is not managed comes up or goes.
    void awaitMapping() { await(XCB_MAP_NOTIFY); }
    void awaitUnmapping() { await(XCB_UNMAP_NOTIFY); }

    /// What one sees on the screen in a row of pixels.
    std::vector<uint32_t> pixels(int x, int y, int count) {
        const std::unique_ptr<xcb_get_image_reply_t, XClient::Free> image(xcb_get_image_reply(
            m_client.connection(),
            xcb_get_image(m_client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_client.root(),
                          static_cast<int16_t>(x), static_cast<int16_t>(y),
                          static_cast<uint16_t>(count), 1, ~0U),
            nullptr));
        if (!image)
            qFatal("the screen cannot be read");
        const auto* first = reinterpret_cast<const uint32_t*>(xcb_get_image_data(image.get()));
        return {first, first + count};
    }

private:
    void fake(uint8_t event, uint8_t detail) {
        xcb_test_fake_input(m_client.connection(), event, detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0,
                            0);
        xcb_flush(m_client.connection());
    }

    void await(uint8_t wanted) {
        const auto isWanted = [wanted](const xcb_generic_event_t& event) {
            return eventType(event) == wanted;
        };
        if (!m_client.wait(isWanted, 10s))
            qFatal("the shelf neither came nor went");
    }

    xcb_keycode_t codeOf(xcb_keysym_t wanted) {
        const xcb_setup_t* setup = xcb_get_setup(m_client.connection());
        const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
        const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, XClient::Free> map(
            xcb_get_keyboard_mapping_reply(
                m_client.connection(),
                xcb_get_keyboard_mapping(m_client.connection(), setup->min_keycode, count),
                nullptr));
        const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(map.get());
        for (int code = 0; code < count; ++code) {
            if (symbols[code * map->keysyms_per_keycode] == wanted)
                return static_cast<xcb_keycode_t>(setup->min_keycode + code);
        }
        qFatal("no such key");
    }

    XClient m_client;
};

constexpr xcb_keysym_t shift = 0xffe1;
constexpr xcb_keysym_t super = 0xffeb;
constexpr xcb_keysym_t escape = 0xff1b;
constexpr xcb_keysym_t tab = 0xff09;

// The shelf's place on a screen of 1920 x 1080: a row of pixels that crosses the glass on the left
// and then the band of the first card, also while the shelf slides up.
constexpr int rowLeft = 20;
constexpr int rowTop = 855;
constexpr int rowLength = 217;
constexpr QPoint amongCards(960, 900);

/// The program with a large history, and the user in front of it.
struct Desk {
    DesktopSession session;
    Probe probe;
    QuilletProcess quillet{session, QStringLiteral(QUILLET_PROGRAM)};
    User user{session.display()};

    explicit Desk(LargeHistory& history) {
        history.world.quit();
        if (!QDir().rename(history.world.dataFolder(), session.dataFolder() + u"/quillet"_s))
            qFatal("the history cannot be moved");
        quillet.writePreferences(
            {{u"clipboard.maxItems"_s, 100'000}, {u"clipboard.historyDays"_s, 100'000}});
        if (!quillet.start(probe.environment()))
            qFatal("%s", quillet.errors().constData());
        if (quillet.clips().size() != 2000)
            qFatal("the history is not there");
    }

    double mebibytes(const QByteArray& figure) const {
        return static_cast<double>(quillet.processFigure(u"smaps_rollup"_s, figure)) / 1024;
    }

    /// Waits until the program has nothing more to do, thumbnails included.
    void settle() const {
        constexpr double blinkOfCaret = 5;
        for (int quiet = 0; quiet < 2;) {
            const double before = quillet.processorMilliseconds();
            std::this_thread::sleep_for(100ms);
            quiet = quillet.processorMilliseconds() - before < blinkOfCaret ? quiet + 1 : 0;
        }
    }

    /// Presses the shortcut and returns when the first card is on the screen.
    void show() {
        user.press(shift);
        user.press(super);
        settle();
        probe.forget();
        const auto before = user.pixels(rowLeft, rowTop, rowLength);
        const auto begin = Clock::now();
        user.press('v');
        user.awaitMapping();
        mapped = milliseconds(Clock::now() - begin);
        const bool isPainted = eventuallyOften([&] {
            // Before the look: the program goes on meanwhile.
            ownWaits = probe.ownWaits();
            libraryWaits = probe.libraryWaits();
            const auto now = user.pixels(rowLeft, rowTop, rowLength);
            return now.back() != before.back() && now.back() != now.front();
        });
        painted = milliseconds(Clock::now() - begin);
        if (!isPainted)
            qFatal("the shelf shows no card");
        for (const xcb_keysym_t key : {xcb_keysym_t('v'), super, shift})
            user.release(key);
        settle();
    }

    void hide() {
        user.type(escape);
        user.awaitUnmapping();
    }

    double mapped = 0; ///< milliseconds since the key was pressed
    double painted = 0;
    uint32_t ownWaits = 0; ///< for the X server, until it was painted
    uint32_t libraryWaits = 0;

private:
    template<typename Condition>
    static bool eventuallyOften(Condition&& condition) {
        const auto end = Clock::now() + 10s;
        while (!condition()) {
            if (Clock::now() > end)
                return false;
            std::this_thread::sleep_for(500us);
        }
        return true;
    }
};

void measureShows(Desk& desk, FigureTable& table) {
    std::vector<double> mapped;
    std::vector<double> painted;
    std::vector<double> waits;
    std::vector<double> libraryWaits;
    for (int i = 0; i < shows; ++i) {
        desk.show();
        if (i == 0)
            table.note("first of all", desk.painted, "ms");
        mapped.push_back(desk.mapped);
        painted.push_back(desk.painted);
        waits.push_back(desk.ownWaits + desk.libraryWaits);
        libraryWaits.push_back(desk.libraryWaits);
        desk.hide();
    }
    table.note("shortcut until the panel is mapped, median of 31", median(mapped), "ms");
    table.add("shortcut until its cards are painted, median of 31", median(painted), 80, "ms");
    table.note("the same, longest", largest(painted), "ms");
    table.add("X replies waited for until then, median of 31", median(waits), 3, "");
    table.note("of these waited for by the toolkit", median(libraryWaits), "");
    std::vector<double> repaints;
    desk.show();
    table.note("both until the panel is at rest", desk.probe.ownWaits() + desk.probe.libraryWaits(),
               "");
    for (const char key : {'t', 'e', 'x', 't'}) {
        desk.probe.forget();
        desk.user.type(static_cast<xcb_keysym_t>(key));
        desk.settle();
        repaints.push_back(desk.probe.longest(&Turn::held));
    }
    table.note("keystroke until painted anew, longest turn of 4", largest(repaints), "ms");
    desk.user.type(escape);
    desk.hide();
}

/// Scrolls through all 500 images for the first time, then over those that have thumbnails.
void measureScrolling(Desk& desk, FigureTable& table) {
    constexpr int notchesOfPage = 16;
    constexpr int pages = 500 / 8 + 1;
    constexpr auto frame = 16ms;
    const double memory = desk.mebibytes("Rss:");
    const double ownMemory = desk.mebibytes("Anonymous:");
    desk.show();
    for (int i = 0; i < 5; ++i) // from the search to the fifth chip
        desk.user.type(tab);
    desk.user.type(' ');
    desk.user.point(amongCards);
    desk.settle();

    desk.probe.forget();
    for (int i = 0; i < notchesOfPage * pages; ++i) {
        desk.user.scroll(true);
        std::this_thread::sleep_for(frame);
        if (i % notchesOfPage == 0)
            desk.settle();
    }
    desk.settle();
    // What other programs do to processors and server is not what the limit is for.
    table.add("first sight of 500 pictures of 3840x2160, stall", desk.probe.longest(&Turn::held),
              60, "ms");
    table.note("of that processor time", desk.probe.longest(&Turn::processor), "ms");
    table.note("with all waits", desk.probe.longest(&Turn::whole), "ms");
    table.add("resident memory after that", desk.mebibytes("Rss:") - memory, 120, "MiB more");
    table.note("of that its own", desk.mebibytes("Anonymous:") - ownMemory, "MiB more");

    std::vector<double> held;
    std::vector<double> whole;
    for (int pass = 0; pass < passes; ++pass) {
        for (const bool isForward : {false, true}) {
            desk.settle();
            desk.probe.forget();
            for (int i = 0; i < 10 * notchesOfPage; ++i) {
                desk.user.scroll(isForward);
                std::this_thread::sleep_for(frame);
            }
            held.push_back(desk.probe.longest(&Turn::held));
            whole.push_back(desk.probe.longest(&Turn::whole));
        }
    }
    table.add("longest frame over 80 thumbnails, median of 10", median(held), 16, "ms");
    table.note("the same, longest of 10", largest(held), "ms");
    table.note("with all waits, median of 10", median(whole), "ms");
    desk.hide();
}

/// Types a word, each letter a search of its own; gives what each took.
std::vector<double> typeInto(ShelfModel& model, const QString& word) {
    std::vector<double> took;
    for (qsizetype length = 1; length <= word.size(); ++length) {
        const auto begin = Clock::now();
        model.setQuery(word.left(length));
        const auto found = model.visibleItems().size();
        took.push_back(milliseconds(Clock::now() - begin));
        if (found != 2000)
            qFatal("%s is not found", qPrintable(model.query()));
    }
    return took;
}

void measureSearch(FigureTable& table) {
    // The word stands at the end, so that each text is looked through.
    World world;
    world.preferences.set(ClipboardPreferences::maxItems, 100'000);
    const QString word = u"needle"_s;
    const QString filler = u"Something else to look through. "_s;
    for (int number = 1; number < 2000; ++number)
        world.copy(QString::number(number) + filler.repeated(31) + word);
    const auto measure = [&] {
        ShelfModel model(*world.store, world.scheduler);
        model.resetForShow();
        world.scheduler.advance(0ms);
        model.setQuery(word);
        model.visibleItems();
        const auto begin = Clock::now();
        world.scheduler.advance(0ms); // reads long texts
        model.visibleItems();
        const double reading = milliseconds(Clock::now() - begin);
        std::vector<double> took;
        for (int pass = 0; pass < passes; ++pass) {
            model.setQuery({});
            std::ranges::copy(typeInto(model, word), std::back_inserter(took));
        }
        return std::pair(median(took), reading);
    };
    world.copy(u"0"_s + filler.repeated(31) + word);
    table.add("keystroke until found, 2,000 texts of 1 kB", measure().first, 5, "ms");
    world.store->deleteItem(world.newest());
    world.copy(filler.repeated(10'000'000 / filler.size()) + word);
    const auto [found, reading] = measure();
    table.add("the same with one of 10 MB", found, 30, "ms");
    table.note("reading that one, in the background", reading, "ms");
}

} // namespace
} // namespace quillet

int main(int argc, char** argv) {
    using namespace quillet;
    const QCoreApplication application(argc, argv);
    FigureTable table;
    measureSearch(table);
    LargeHistory history(pngOf(sampleScreenshot({3840, 2160}, 0.02)));
    Desk desk(history);
    measureShows(desk, table);
    measureScrolling(desk, table);
    return table.allWithinLimits() ? 0 : 1;
}
