#include "contracts/SpinUntil.h"
#include "platform/linux/sound/PulseSoundPlayer.h"

#include <cmath>
#include <gtest/gtest.h>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <span>
#include <vector>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A sound server of the test's own whose only output is recorded.
class PulseSoundTest : public testing::Test {
protected:
    void SetUp() override {
        const QString socket = folder.filePath(u"native"_s);
        qputenv("PULSE_SERVER", "unix:" + socket.toLocal8Bit());
        qputenv("PULSE_COOKIE", folder.filePath(u"cookie"_s).toLocal8Bit());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PULSE_RUNTIME_PATH"_s, folder.filePath(u"run"_s));
        environment.insert(u"HOME"_s, folder.path());
        server.setProcessEnvironment(environment);
        server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        server.start(u"pulseaudio"_s,
                     {u"-n"_s, u"--disable-shm"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s,
                      u"--exit-idle-time=-1"_s, u"--log-level=error"_s, u"-L"_s,
                      u"module-native-protocol-unix auth-anonymous=1 socket="_s + socket, u"-L"_s,
                      u"module-null-sink sink_name=test rate=44100 channels=1"_s});
        ASSERT_TRUE(spinUntil([&] { return QFile::exists(socket); })) << "is pulseaudio installed?";
        recorder.start(u"parec"_s, {u"--latency-msec=20"_s, u"-d"_s, u"test.monitor"_s,
                                    u"--rate=44100"_s, u"--channels=1"_s, u"--format=s16le"_s});
        ASSERT_TRUE(spinUntil([&] { return recorder.bytesAvailable() > 0; }));
    }

    ~PulseSoundTest() override {
        for (QProcess* process : {&recorder, &server}) {
            process->kill();
            process->waitForFinished();
        }
    }

    /// What was heard since the last call, the next half second included.
    std::vector<qint16> recording() {
        spinFor(500ms);
        const QByteArray bytes = recorder.readAll();
        const auto* samples = reinterpret_cast<const qint16*>(bytes.data());
        return {samples, samples + bytes.size() / 2};
    }

    static double loudest(std::span<const qint16> samples) {
        int peak = 0;
        for (const qint16 sample : samples)
            peak = std::max(peak, std::abs(sample));
        return peak / 32768.0;
    }

    /// Seconds between the first and the last sample that can be heard.
    static double length(const std::vector<qint16>& samples) {
        const auto audible = [](qint16 sample) { return std::abs(sample) > 200; };
        const auto first = std::find_if(samples.begin(), samples.end(), audible);
        const auto last = std::find_if(samples.rbegin(), samples.rend(), audible).base();
        return first < last ? static_cast<double>(last - first) / 44100 : 0;
    }

    QTemporaryDir folder;
    QProcess server;
    QProcess recorder;
    PulseSoundPlayer player;
};

TEST_F(PulseSoundTest, aSoundIsHeardWholeAtALinearVolumeAndEndsByItself) {
    const auto sound = player.alertSound(u"Morse"_s);
    for (const double volume : {0.6, 0.2}) {
        sound->setVolume(volume);
        recorder.readAll();
        sound->play();
        EXPECT_TRUE(sound->isPlaying());
        ASSERT_TRUE(spinUntil([&] { return !sound->isPlaying(); }));
        const auto heard = recording();
        EXPECT_NEAR(loudest(heard), 0.7 * volume, 0.01);
        EXPECT_NEAR(length(heard), 0.34, 0.03);
    }
}

TEST_F(PulseSoundTest, stoppingAndRestartingCutASoundAtOnceAndNeverBlock) {
    const auto sound = player.alertSound(u"Submarine"_s);
    sound->play();
    ASSERT_TRUE(spinUntil([&] { return recorder.bytesAvailable() > 44100 / 2; }));
    QElapsedTimer call;
    call.start();
    sound->play();
    spinFor(200ms);
    const qint64 between = call.restart();
    sound->stop();
    EXPECT_LT(call.elapsed(), 50);
    EXPECT_LT(between, 300);
    EXPECT_FALSE(sound->isPlaying());
    recorder.readAll();
    spinFor(100ms);
    recorder.readAll(); // what was on its way
    EXPECT_LT(loudest(recording()), 0.01);
    for (const char* name : {"Shutter", "None", "tink", "", "../sounds/Tink", "Tink.wav"})
        EXPECT_FALSE(player.alertSound(QString::fromLatin1(name))) << name;
}

} // namespace quillet
