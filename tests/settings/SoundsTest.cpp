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
    for (const Event event : Sounds::events)
        sounds.play(event);
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
    sounds.play(Event::paste);
    EXPECT_EQ(player.plays.size(), 3u) << "only the copy is suppressed";

    scheduler.setNow(scheduler.now().addSecs(-3600));
    sounds.play(Event::copy);
    EXPECT_EQ(player.plays.size(), 4u) << "a clock that is set back does not mute copies";
}

TEST_F(SoundsTest, silencePlayedForAnEventStillDelaysACopyButAPreviewDoesNot) {
    preferences.set(Sounds::soundKey(Event::paste), u"None"_s);
    sounds.play(Event::paste);
    sounds.play(Event::copy);
    EXPECT_THAT(player.plays, IsEmpty());

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
    preferences.set(Sounds::enabledKey(), true);
    sounds.play(Event::copy); // delayed by nothing that was not played
    EXPECT_THAT(player.plays, ElementsAre(Play{u"Glass"_s, 0.6}, Play{u"Tink"_s, 0.6}));
}

TEST_F(SoundsTest, aSoundThatIsStillPlayingRestarts) {
    for (const auto pause : {100ms, 2000ms, 0ms}) {
        sounds.play(Event::capture);
        scheduler.advance(pause);
    }
    EXPECT_EQ(player.plays.size(), 3u);
    EXPECT_EQ(player.stops, QStringList(u"Shutter"_s)) << "one that has ended needs no stopping";
}

TEST_F(SoundsTest, aMissingShutterFallsBackToATinkOfItsOwnAndOtherMissingSoundsAreSilent) {
    player.hasShutter = false;
    sounds.preview(u"Shutter"_s);
    sounds.preview(u"Tink"_s);
    EXPECT_THAT(player.plays, ElementsAre(Play{u"Tink"_s, 0.6}, Play{u"Tink"_s, 0.6}));
    EXPECT_THAT(player.stops, IsEmpty());

    sounds.preview(u"Gong"_s);
    EXPECT_EQ(player.plays.size(), 2u);
    player.alerts.append(u"Gong"_s);
    sounds.preview(u"Gong"_s);
    EXPECT_EQ(player.plays.size(), 3u) << "only what was found is remembered";
}

} // namespace quillet
