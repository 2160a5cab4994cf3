#include "contracts/PasteboardContract.h"
#include "contracts/SpinUntil.h"
#include "contracts/WorkspaceContract.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "platform/linux/x11/X11Workspace.h"
#include "support/DesktopSession.h"
#include "support/FakeApplication.h"
#include "support/FakeOwner.h"
#include "support/FakeRequestor.h"

#include <atomic>
#include <future>
#include <map>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

const DesktopSession* session = nullptr;

QByteArray targetFor(const QString& type) {
    static const QHash<QString, QByteArray> targets = {{PasteboardType::string, "UTF8_STRING"},
                                                       {PasteboardType::png, "image/png"},
                                                       {PasteboardType::url, "text/x-moz-url"}};
    return targets.value(type);
}

struct X11Backend {
    std::unique_ptr<X11Connection> connection = X11Connection::open();

    template<typename Condition>
    bool waitFor(Condition condition) {
        return spinUntil(condition);
    }
};

struct X11PasteboardBackend : X11Backend {
    LinuxScheduler scheduler;
    std::optional<X11Pasteboard> x11{std::in_place, *connection, scheduler};
    std::unique_ptr<FakeOwner> owner;
    bool answers = true;

    Pasteboard& pasteboard() { return *x11; }

    void copyElsewhere(const std::vector<std::pair<QString, QByteArray>>& items) {
        if (!owner)
            owner = std::make_unique<FakeOwner>(session->display());
        std::vector<Offer> offers;
        for (const auto& [type, bytes] : items) {
            Offer offer;
            offer.target = targetFor(type);
            offer.bytes = bytes;
            offer.manner = answers ? Offer::Manner::whole : Offer::Manner::ignored;
            offers.push_back(offer);
        }
        owner->own(offers);
    }

    std::optional<QByteArray> pasteElsewhere(const QString& type) {
        auto pasting = std::async(std::launch::async, [target = targetFor(type)] {
            return FakeRequestor(session->display()).read(target);
        });
        spinUntil(
            [&] { return pasting.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
        return pasting.get();
    }

    void holdAnswers() { answers = false; }
    void quitElsewhere() { owner.reset(); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PasteboardContract, X11PasteboardBackend);

TEST(X11ClipboardManager, whatAProgramLeavesWhenItEndsIsServedByteForByte) {
    X11PasteboardBackend manager; // the first to come has the role
    ASSERT_TRUE(manager.x11->isClipboardManager());
    const QByteArray large(700'000, 'x');
    {
        X11PasteboardBackend leaving;
        EXPECT_FALSE(leaving.x11->isClipboardManager());
        ASSERT_TRUE(leaving.pasteboard().write(
            {{PasteboardType::string, [large] { return large; }},
             {PasteboardType::png, [] { return QByteArray("png bytes"); }}}));
        leaving.pasteboard().handOver();
    }
    ASSERT_TRUE(
        manager.waitFor([&] { return manager.pasteElsewhere(PasteboardType::string) == large; }));
    EXPECT_EQ(manager.pasteElsewhere(PasteboardType::png), QByteArray("png bytes"));
}

TEST(X11SelectionOwner, contentIsReadOnceForAllWhoTakeItAtTheSameTime) {
    X11PasteboardBackend backend;
    const QByteArray large(4 << 20, 'x');
    std::atomic<int> reads = 0;
    ASSERT_TRUE(backend.pasteboard().write({{PasteboardType::png, [&] {
                                                 ++reads;
                                                 return large;
                                             }}}));
    FakeRequestor sleeper(session->display());
    auto part =
        std::async(std::launch::async, [&] { return sleeper.readPartOf("image/png", 1 << 20); });
    ASSERT_TRUE(backend.waitFor(
        [&] { return part.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    EXPECT_EQ(backend.pasteElsewhere(PasteboardType::png), large);
    EXPECT_EQ(reads, 1);
}

struct X11WorkspaceBackend : X11Backend {
    X11Workspace x11{*connection, DesktopEntries({})};
    std::map<QString, std::unique_ptr<FakeApplication>> applications;

    Workspace& workspace() { return x11; }

    void showApplication(const QString& bundleID) {
        applications[bundleID] =
            std::make_unique<FakeApplication>(session->display(), bundleID.toLatin1());
    }
    void closeApplication(const QString& bundleID) { applications.erase(bundleID); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, WorkspaceContract, X11WorkspaceBackend);

TEST(X11WorkspaceIcons, anApplicationsIconIsTheOneItsDesktopFileNames) {
    const QTemporaryDir folder;
    const QString picture = folder.filePath(u"editor.png"_s);
    QImage drawn(48, 48, QImage::Format_ARGB32);
    drawn.fill(QColor(10, 20, 30));
    ASSERT_TRUE(drawn.save(picture));
    for (const auto& [id, icon] : {std::pair{u"editor"_s, picture}, {u"plain"_s, u"no-icon"_s}}) {
        QFile entry(folder.filePath(id + u".desktop"_s));
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write("[Desktop Entry]\nName=A\nIcon=" + icon.toUtf8() + '\n');
    }
    const auto connection = X11Connection::open();
    const X11Workspace workspace(*connection, DesktopEntries({folder.path()}));
    const QImage icon = workspace.icon(workspace.applicationLocation(u"editor"_s).value(), 24);
    EXPECT_EQ(icon.size(), QSize(24, 24));
    EXPECT_EQ(icon.pixelColor(12, 12), QColor(10, 20, 30));
    EXPECT_TRUE(workspace.icon(workspace.applicationLocation(u"plain"_s).value(), 24).isNull());
}

} // namespace

} // namespace quillet

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    const quillet::DesktopSession desktop;
    quillet::session = &desktop;
    qputenv("DISPLAY", desktop.display());
    return RUN_ALL_TESTS();
}
