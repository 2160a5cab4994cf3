#include "app/look/Animation.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"
#include "app/look/Theme.h"
#include "platform/memory/MemoryScheduler.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QDir>
#include <QPainter>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
    return (light + 0.05) / (dark + 0.05);
}

/// A translucent ground with the least favourable thing behind it.
QColor over(const QColor& ground, const QColor& behind) {
    return mixed(behind, QColor(ground.rgb()), ground.alphaF());
}

} // namespace

TEST(ThemeTest, everyTextCanBeReadOnEveryGround) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        const ThemeColors& c = Theme::colors(appearance);
        for (const QColor& ground : {c.window, c.group, c.material, c.thickMaterial}) {
            for (const QColor& behind : {QColor(Qt::black), QColor(Qt::white)}) {
                for (const QColor& text : {c.primary, c.secondary, c.tertiary, c.accentText,
                                           c.orangeText, c.redText, c.greenText})
                    EXPECT_GE(contrast(text, over(ground, behind)), 4.5)
                        << qPrintable(text.name() + u" on "_s + ground.name());
            }
        }
        EXPECT_GE(contrast(Qt::white, Theme::accent), 4.5);
    }
}

class AnimationTest : public testing::Test {
protected:
    void start(const Motion& motion) {
        steps.clear();
        animation.start(
            motion, [this](double progress) { steps.push_back(progress); }, [this] { ++ends; });
    }

    MemoryScheduler scheduler;
    Animation animation{scheduler};
    std::vector<double> steps;
    int ends = 0;
};

TEST_F(AnimationTest, aMotionEndsExactlyThenCostsNothing) {
    for (const Motion& motion : {Motion::easeOut(150ms), Motion::spring(250ms, 0.8)}) {
        start(motion);
        scheduler.advance(80ms);
        EXPECT_GT(steps.back(), 0.6) << "fast at first";
        EXPECT_LT(steps.back(), 1);
        scheduler.setNow(scheduler.now().addDays(-1)); // which does not stop it
        scheduler.advance(1s);
        EXPECT_EQ(steps.back(), 1);
        EXPECT_LT(std::abs(steps[steps.size() - 2] - 1), 0.02) << "no jump at the end";
        EXPECT_TRUE(scheduler.isIdle());
    }
    start(Motion::easeOut(100ms));
    animation.start(Motion::easeOut(100ms), [&](double) { animation.stop(); });
    scheduler.advance(1s);
    EXPECT_EQ(ends, 2) << "neither a replaced nor a stopped motion ends";
}

TEST_F(AnimationTest, whoWantsLessMotionGetsThereInOneStep) {
    Animation::setMotionReduced(true);
    start(Motion::spring(250ms, 0.8));
    Animation::setMotionReduced(false);
    EXPECT_TRUE(steps.empty()) << "never inside the call";
    scheduler.advance(20ms);
    EXPECT_EQ(steps, std::vector{1.0});
    EXPECT_EQ(ends, 1);
}

TEST(TextTest, textKeepsItsSizeItsPlaceAndItsCharacters) {
    TextStyle style = TextStyles::body;
    style.tracking = 0;
    const auto widthAt = [&](double size) {
        style.size = size;
        return textWidth(QString(40, u'n'), style);
    };
    EXPECT_NEAR(widthAt(12.5), widthAt(12) * 12.5 / 12, 0.5) << "sizes that end in a half";
    const TextStyle tabular = TextStyles::statValue.tabular();
    EXPECT_EQ(textWidth(u"11:11"_s, tabular), textWidth(u"00:00"_s, tabular));
    const TextStyle plain = TextStyles::body;
    EXPECT_NE(textWidth(u"->"_s, plain), textWidth(u"->"_s, plain.verbatim()));
    // The word's letters join; without shaping they would stand apart.
    EXPECT_EQ(textWidth(u"سلام"_s, plain), textWidth(u"سلام"_s, plain.verbatim()));
}

TEST(TextTest, textBreaksAtWordsAndItsEndIsMarkedWhereThereIsMore) {
    const TextStyle style = TextStyles::body.verbatim();
    EXPECT_THAT(wrappedText(u"one\r\ntwo\n\nfour"_s, style, 200, 9),
                ElementsAre(u"one"_s, u"two"_s, u""_s, u"four"_s));
    EXPECT_THAT(wrappedText(u"one\ntwo\nthree"_s, style, 200, 2), ElementsAre(u"one"_s, u"two…"_s));
    const QStringList lines = wrappedText(QString(10'000'000, u'x'), style, 100, 3);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines.last().endsWith(u'…'));
    for (const QString& line : lines)
        EXPECT_LE(textWidth(line, style), 100);
    const QStringList balanced =
        balancedText(u"Shown while the pointer rests on it here"_s, style, 200);
    ASSERT_EQ(balanced.size(), 2);
    EXPECT_NEAR(textWidth(balanced[0], style), textWidth(balanced[1], style), 50);
}

TEST(SymbolsTest, everyDrawingShowsSomethingInTheColourAskedFor) {
    for (const QString& name : QDir(u":/symbols"_s).entryList()) {
        QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintSymbol(painter, image.rect(), name.chopped(4), 39, Qt::red, SymbolWeight::semibold);
        painter.end();
        int shown = 0;
        for (int i = 0; i < 40 * 40; ++i)
            shown += image.pixelColor(i % 40, i / 40) == QColor(Qt::red) ? 1 : 0;
        EXPECT_GT(shown, 20) << qPrintable(name);
    }
}

} // namespace quillet
