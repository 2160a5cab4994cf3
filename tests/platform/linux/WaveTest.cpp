#include "platform/linux/sound/Wave.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>

namespace quillet {

using namespace Qt::StringLiterals;

TEST(WaveTest, everyBuiltInSoundIsShortAudibleAndWithoutClicksAtItsEnds) {
    const QStringList files = QDir(u":/sounds"_s).entryList();
    EXPECT_EQ(files.join(u' ').remove(u".wav"_s),
              u"Blow Bottle Frog Glass Hero Morse Ping Pop Purr Shutter Submarine Tink"_s);
    for (const QString& name : files) {
        SCOPED_TRACE(qPrintable(name));
        QFile file(u":/sounds/"_s + name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto samples = waveSamples(bytes);
        ASSERT_TRUE(samples);

        const double seconds = static_cast<double>(samples->size()) / sampleRate;
        EXPECT_GE(seconds, 0.1);
        EXPECT_LE(seconds, 0.9);
        int loudest = 0;
        for (const qint16 sample : *samples)
            loudest = std::max(loudest, std::abs(sample));
        EXPECT_NEAR(loudest / 32768.0, 0.7, 0.01);
        EXPECT_LT(std::abs(samples->front()), 100);
        EXPECT_LT(std::abs(samples->back()), 100);
    }
}

TEST(WaveTest, anythingButACompleteFileOfTheRightFormatIsRefused) {
    QFile file(u":/sounds/Pop.wav"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray good = file.readAll();
    for (const qsizetype length :
         {qsizetype(0), qsizetype(11), qsizetype(20), qsizetype(44), good.size() - 1})
        EXPECT_FALSE(waveSamples(good.first(length))) << length;
    for (const qsizetype field : {0, 8, 20, 22, 24, 34, 36, 43}) {
        QByteArray bad = good;
        bad[field] = '\x7f';
        EXPECT_FALSE(waveSamples(bad)) << field;
    }
}

} // namespace quillet
