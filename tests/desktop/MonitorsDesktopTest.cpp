#include "desktop/ShelfDesktop.h"

#include <QDebug>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

struct Monitor {
    QRect pixels;
    double scale;
};

struct MonitorLayout {
    const char* name;
    std::vector<Monitor> monitors;
};

/// Desktops of several monitors on one large screen, with a panel below the lowest of them.
class MonitorsDesktop : public ShelfDesktop, public testing::WithParamInterface<MonitorLayout> {
protected:
    static constexpr QSize root{5760, 2640};
    static constexpr int panelHeight = 40;

    static void SetUpTestSuite() {
        startSession(std::make_unique<DesktopSession>(u"openbox"_s, root));
    }

    void SetUp() override {
        ShelfDesktop::SetUp();
        for (size_t i = 0; i < monitors().size(); ++i)
            plugIn(i);
        addPanel();
        QStringList factors;
        for (size_t i = 0; i < monitors().size(); ++i)
            factors << u"%1=%2"_s.arg(nameOf(i)).arg(monitors()[i].scale);
        ASSERT_TRUE(quillet.start({u"QT_SCREEN_SCALE_FACTORS="_s + factors.join(u';')}));
    }

    void TearDown() override {
        quillet.quit();
        for (size_t i = 0; i < monitors().size(); ++i)
            unplug(i);
    }

    static const std::vector<Monitor>& monitors() { return GetParam().monitors; }
    static QString nameOf(size_t i) { return u"M%1"_s.arg(i); }

    static void plugIn(size_t i) {
        const QRect& at = monitors()[i].pixels;
        xrandr({u"--setmonitor"_s, nameOf(i),
                u"%1/500x%2/300+%3+%4"_s.arg(at.width()).arg(at.height()).arg(at.x()).arg(at.y()),
                i == 0 ? u"screen"_s : u"none"_s});
    }
    static void unplug(size_t i) { xrandr({u"--delmonitor"_s, nameOf(i)}); }

    static void pointAt(size_t i) {
        const QPoint centre = monitors()[i].pixels.center();
        press(u"mousemove %1 %2"_s.arg(centre.x()).arg(centre.y()));
    }

    /// Where the shelf has to be on a monitor: 10 points inside of what the panel leaves.
    QRectF shelfOn(size_t i) const {
        constexpr double height = 318;
        const auto& [pixels, scale] = monitors()[i];
        QRectF usable(pixels);
        if (i == m_lowest)
            usable.setBottom(usable.bottom() - panelHeight);
        const double gap = 10 * scale;
        return {usable.left() + gap, usable.bottom() - gap - height * scale,
                usable.width() - 2 * gap, height * scale};
    }

    /// Whether the shelf comes to rest there. Windows stand at whole points.
    testing::AssertionResult isShelfOn(size_t i) const {
        const double scale = monitors()[i].scale;
        const double margin = 48 * scale;
        const QRectF wanted = shelfOn(i);
        QRectF card;
        const bool isThere = eventually([&] {
            card = QRectF(windowNamed("Quillet Shelf").value_or(QRect()))
                       .adjusted(margin, margin, -margin, -margin);
            const QPointF offset = card.topLeft() - wanted.topLeft();
            const QPointF end = card.bottomRight() - wanted.bottomRight();
            return std::max({std::abs(offset.x()), std::abs(offset.y()), std::abs(end.x()),
                             std::abs(end.y())}) <= scale;
        });
        if (isThere)
            return testing::AssertionSuccess();
        QString places;
        QDebug(&places) << "on monitor" << i << card << "instead of" << wanted;
        return testing::AssertionFailure() << places.toStdString();
    }

private:
    static void xrandr(const QStringList& arguments) {
        const RunResult result = session().run(u"xrandr"_s, arguments);
        ASSERT_EQ(result.exitCode, 0) << result.error.constData();
    }

    void addPanel() {
        for (size_t i = 1; i < monitors().size(); ++i) {
            if (monitors()[i].pixels.bottom() > monitors()[m_lowest].pixels.bottom())
                m_lowest = i;
        }
        const QRect at = monitors()[m_lowest].pixels;
        const auto bottom = static_cast<uint32_t>(root.height() - at.bottom() - 1 + panelHeight);
        std::array<uint32_t, 12> strut{};
        strut[3] = bottom;
        strut[10] = static_cast<uint32_t>(at.left());
        strut[11] = static_cast<uint32_t>(at.right());
        m_panel.setProperty(m_panel.window(), m_panel.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                            m_panel.atomList({"_NET_WM_WINDOW_TYPE_DOCK"}), 32);
        m_panel.setProperty(m_panel.window(), m_panel.atom("_NET_WM_STRUT_PARTIAL"),
                            XCB_ATOM_CARDINAL,
                            {reinterpret_cast<const char*>(strut.data()), sizeof strut}, 32);
        xcb_map_window(m_panel.connection(), m_panel.window());
        const auto isManaged = [this] {
            const auto clients =
                m_panel.property(m_panel.root(), m_panel.atom("_NET_CLIENT_LIST")).bytes;
            const xcb_window_t window = m_panel.window();
            return clients.contains(
                QByteArray(reinterpret_cast<const char*>(&window), sizeof window));
        };
        ASSERT_TRUE(eventually(isManaged));
    }

    size_t m_lowest = 0;
    XClient m_panel{display()};
};

TEST_P(MonitorsDesktop, theShelfOpensWhereThePointerIsAndMovesWhenThatMonitorGoes) {
    for (const bool isComposited : {false, true}) {
        const auto compositor = isComposited
                                    ? session().start(u"picom"_s, {u"--backend"_s, u"xrender"_s,
                                                                   u"--config"_s, u"/dev/null"_s})
                                    : ProcessHandle();
        for (size_t i = 0; i < monitors().size(); ++i) {
            pointAt(i);
            openShelf();
            EXPECT_TRUE(isShelfOn(i)) << (isComposited ? "with a compositor" : "without one");
            press(u"key Escape"_s);
            EXPECT_TRUE(isShelfGone());
        }
    }

    const size_t last = monitors().size() - 1;
    if (last == 0)
        return;
    openShelf();
    unplug(last);
    EXPECT_TRUE(isShelfOn(0));
    plugIn(last);
    press(u"key Escape"_s);
    EXPECT_TRUE(isShelfGone());
    pointAt(last);
    openShelf();
    EXPECT_TRUE(isShelfOn(last));
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, MonitorsDesktop,
    testing::Values(
        MonitorLayout{"single", {{{0, 0, 1920, 1080}, 1}}},
        MonitorLayout{"staggered", {{{0, 500, 1920, 1080}, 1}, {{1920, 0, 1920, 1080}, 1.5}}},
        MonitorLayout{"sharpAndPlain", {{{0, 0, 3840, 2160}, 2}, {{3840, 1080, 1920, 1080}, 1}}},
        MonitorLayout{"portrait", {{{0, 0, 1080, 1920}, 1.25}, {{1080, 240, 2560, 1440}, 1.25}}},
        MonitorLayout{"stackedWithAGap", {{{0, 0, 1920, 1080}, 1}, {{0, 1180, 2560, 1440}, 1.75}}}),
    [](const auto& layout) { return std::string(layout.param.name); });

} // namespace
} // namespace quillet
