#include "settings/Sounds.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemorySoundPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Event = Sounds::Event;
using Play = MemorySoundPlayer::Play;
using testing::ElementsAre;
using testing::IsEmpty;

void PrintTo(const MemorySoundPlayer::Play& play, std::ostream* out) {
    *out << qPrintable(play.name) << " at " << play.volume;
}

class SoundsTest : public testing::Test {
protected:
    SoundsTest() { sounds.registerDefaults(); }

    MemoryScheduler scheduler;
    MemoryPreferences preferences;
    MemorySoundPlayer player{scheduler};
    Sounds sounds{preferences, player, scheduler};
};

TEST_F(SoundsTest, eachEventPlaysItsSoundAtTheVolumeOfThatMoment) {
    sounds.play(Event::copy);
    sounds.play(Event::paste);
    sounds.play(Event::capture);
    preferences.set(Sounds::volumeKey(), 0.25);
    sounds.play(Event::paste);
    preferences.set(Sounds::soundKey(Event::paste), u"Hero"_s);
    sounds.play(Event::paste);
    EXPECT_THAT(player.plays,
                ElementsAre(Play{u"Tink"_s, 0.6}, Play{u"Pop"_s, 0.6}, Play{u"Shutter"_s, 0.6},
                            Play{u"Pop"_s, 0.25}, Play{u"Hero"_s, 0.25}));
    EXPECT_EQ(player.loaded.count(u"Pop"_s), 1) << "a sound is loaded once";
}

TEST_F(SoundsTest, aCopyIsSilentWithinEightTenthsOfASecondOfTheLastSoundPlayed) {
    sounds.play(Event::copy);
    scheduler.advance(500ms);
    sounds.play(Event::copy); // does not count as played itself
    EXPECT_EQ(player.plays.size(), 1u);
    scheduler.advance(300ms);
    sounds.play(Event::copy);
    EXPECT_EQ(player.plays.size(), 2u);

    scheduler.advance(5s);
    sounds.play(Event::capture);
    scheduler.advance(300ms);
    sounds.play(Event::copy);
    sounds.play(Event::paste);
    EXPECT_EQ(player.plays.size(), 4u) << "only the copy is suppressed";
    EXPECT_EQ(player.plays.back().name, u"Pop"_s);

    scheduler.setNow(scheduler.now().addSecs(-3600));
    sounds.play(Event::copy);
    EXPECT_EQ(player.plays.size(), 5u) << "a clock that is set back does not mute copies";
}

TEST_F(SoundsTest, silencePlayedForAnEventStillDelaysACopyButAPreviewDoesNot) {
    preferences.set(Sounds::soundKey(Event::paste), u"None"_s);
    sounds.play(Event::paste);
    sounds.play(Event::copy);
    EXPECT_THAT(player.plays, IsEmpty());
    EXPECT_TRUE(player.loaded.isEmpty());

    scheduler.advance(1s);
    sounds.preview(u"Frog"_s);
    sounds.play(Event::copy);
    EXPECT_THAT(player.plays, ElementsAre(Play{u"Frog"_s, 0.6}, Play{u"Tink"_s, 0.6}));
}

TEST_F(SoundsTest, switchedOffOnlyPreviewsAreHeard) {
    preferences.set(Sounds::enabledKey(), false);
    sounds.play(Event::capture);
    EXPECT_THAT(player.plays, IsEmpty());
    sounds.preview(u"Glass"_s);
    EXPECT_THAT(player.plays, ElementsAre(Play{u"Glass"_s, 0.6}));

    preferences.set(Sounds::enabledKey(), true);
    sounds.play(Event::copy);
    EXPECT_EQ(player.plays.size(), 2u) << "what was not played delays nothing";
}

TEST_F(SoundsTest, aSoundThatIsStillPlayingRestarts) {
    sounds.play(Event::capture);
    scheduler.advance(100ms);
    sounds.play(Event::capture);
    EXPECT_EQ(player.plays.size(), 2u);
    EXPECT_EQ(player.stops, QStringList(u"Shutter"_s));
    scheduler.advance(2s);
    sounds.play(Event::capture);
    EXPECT_EQ(player.stops.size(), 1) << "a sound that has ended needs no stopping";
}

TEST_F(SoundsTest, aMissingShutterFallsBackToATinkOfItsOwnAndOtherMissingSoundsAreSilent) {
    player.hasShutter = false;
    sounds.preview(u"Shutter"_s);
    sounds.preview(u"Tink"_s);
    sounds.preview(u"Shutter"_s);
    EXPECT_EQ(player.loaded, QStringList({u"Tink"_s, u"Tink"_s}));
    EXPECT_THAT(player.plays,
                ElementsAre(Play{u"Tink"_s, 0.6}, Play{u"Tink"_s, 0.6}, Play{u"Tink"_s, 0.6}));
    EXPECT_EQ(player.stops.size(), 1);

    sounds.preview(u"Gong"_s);
    EXPECT_EQ(player.plays.size(), 3u);
    player.alerts.append(u"Gong"_s);
    sounds.preview(u"Gong"_s);
    EXPECT_EQ(player.plays.size(), 4u) << "only what was found is remembered";
}

TEST(SoundsTableTest, everyDefaultCanBeChosenAndRawValuesReadBack) {
    for (const Event event : Sounds::events) {
        EXPECT_TRUE(Sounds::choices().contains(Sounds::soundKey(event).fallback));
        EXPECT_EQ(Sounds::eventWithRawValue(Sounds::rawValue(event)), event);
    }
    EXPECT_EQ(Sounds::eventWithRawValue(u"Copy"_s), std::nullopt);

    MemoryPreferences preferences;
    MemoryScheduler scheduler;
    MemorySoundPlayer player(scheduler);
    const Sounds unregistered(preferences, player, scheduler);
    EXPECT_EQ(unregistered.sound(Event::capture), u"Shutter"_s);
}

} // namespace quillet
