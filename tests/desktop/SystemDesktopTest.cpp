#include "desktop/ClipboardDesktop.h"

#include <QJsonDocument>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

struct SystemDesktop : ClipboardDesktop {
    bool isAwake() {
        const auto status = QJsonDocument::fromJson(quillet.verb({u"status"_s}).output);
        return status["switches"_L1]["keepAwake"_L1].toBool();
    }

    /// Whether it is awake in the process after the one in which that was asked for.
    bool returnsAwake(const QStringList& duration) {
        EXPECT_EQ(quillet.verb(QStringList{u"awake"_s, u"on"_s} + duration).exitCode, 0);
        EXPECT_TRUE(isAwake());
        quillet.quit();
        EXPECT_TRUE(quillet.start());
        return isAwake();
    }
};

TEST_F(SystemDesktop, keepAwakeReturnsWithTheNextProcessWhereItHasNoEnd) {
    ASSERT_TRUE(quillet.start());
    EXPECT_TRUE(returnsAwake({}));
    EXPECT_FALSE(returnsAwake({u"30m"_s}));
}

TEST_F(SystemDesktop, aSwitchThatTheDesktopLacksSaysWhy) {
    ASSERT_TRUE(quillet.start());
    const RunResult result = quillet.verb({u"icons"_s, u"off"_s});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error.toStdString(), testing::HasSubstr("which desktop this is"));
}

TEST_F(SystemDesktop, statisticsAreMeasuredForWhoAsks) {
    ASSERT_TRUE(quillet.start());
    const auto result = quillet.verb({u"stats"_s, u"--json"_s});
    const auto stats = QJsonDocument::fromJson(result.output);
    EXPECT_GT(stats["memoryUsed"_L1].toDouble(), 0);
    EXPECT_GT(stats["memoryTotal"_L1].toDouble(), stats["memoryUsed"_L1].toDouble());
}

} // namespace
} // namespace quillet
