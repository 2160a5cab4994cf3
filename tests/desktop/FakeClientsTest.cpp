#include "support/DesktopSession.h"
#include "support/Eventually.h"
#include "support/FakeApplication.h"
#include "support/FakeOwner.h"
#include "support/FakeRequestor.h"
#include "support/SamplePictures.h"

#include <gmock/gmock.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

// The other desktop tests believe what these clients say, so a program of somebody else's is the
// judge of them.
struct FakeClients : testing::Test {
    DesktopSession session;

    RunResult xclip(const QString& target) {
        return session.run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, target});
    }
};

TEST_F(FakeClients, anOwnerServesAStranger) {
    FakeOwner owner(session.display());
    const QByteArray big = pngOfSize(3 << 20);
    owner.own({{.target = "text/plain", .bytes = "short"},
               {.target = "image/png", .bytes = big, .manner = Offer::Manner::incremental},
               {.target = "image/bmp", .bytes = "x", .manner = Offer::Manner::refused},
               {.target = "text/x-lots",
                .bytes = "0123456789",
                .manner = Offer::Manner::incremental,
                .announced = 0,
                .repeat = 100,
                .chunk = 7}});

    EXPECT_EQ(xclip(u"text/plain"_s).output, "short");
    EXPECT_EQ(xclip(u"image/png"_s).output, big);
    EXPECT_EQ(xclip(u"text/x-lots"_s).output, QByteArray("0123456789").repeated(100));
    EXPECT_NE(xclip(u"image/bmp"_s).exitCode, 0);
    EXPECT_EQ(xclip(u"TARGETS"_s).output,
              "TARGETS\nTIMESTAMP\ntext/plain\nimage/png\nimage/bmp\ntext/x-lots\n");
    EXPECT_EQ(owner.requests("text/plain"), 1);
    EXPECT_EQ(owner.payloadRequests(), 4);
    EXPECT_TRUE(owner.ownsClipboard());
}

TEST_F(FakeClients, aRequestorReadsAStranger) {
    const QByteArray big = pngOfSize(5 << 20);
    const auto owner = session.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s,
                                                  u"-i"_s, u"-t"_s, u"image/png"_s});
    owner->write(big);
    owner->closeWriteChannel();

    FakeRequestor requestor(session.display());
    ASSERT_TRUE(eventually([&] {
        owner->waitForBytesWritten(0);
        return !requestor.targets().empty();
    }));
    EXPECT_EQ(requestor.read("image/png"), big);
    EXPECT_TRUE(requestor.wasIncremental());
    EXPECT_THAT(requestor.targets(), testing::Contains(QByteArray("image/png")));
    EXPECT_FALSE(requestor.read("image/png", "SECONDARY"));
    EXPECT_TRUE(FakeRequestor(session.display()).readPartOf("image/png", 1 << 20));
}

TEST_F(FakeClients, anApplicationIsTheActiveOne) {
    FakeApplication first(session.display(), "First");
    FakeApplication second(session.display(), "Second");
    EXPECT_FALSE(first.isActive());
    EXPECT_TRUE(second.isActive());
}

} // namespace
} // namespace quillet
