#include "clipboard/ClipContainer.h"
#include "platform/memory/MemoryScheduler.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

/// An item was saved, or is about to be deleted.
struct Message {
    bool isSaved;
    QUuid id;
};

void tell(int pipe, const Message& message) {
    if (write(pipe, &message, sizeof message) != sizeof message)
        _exit(1);
}

QByteArray payloadOf(const QUuid& id) {
    return id.toByteArray().repeated(2000);
}

/// Adds, dates and deletes items until it is killed.
[[noreturn]] void writeStorm(const QString& folder, int pipe) {
    MemoryScheduler scheduler;
    const auto opening = ClipContainer::open(folder, scheduler);
    if (!opening.container)
        _exit(1);
    ClipContext& context = opening.container->mainContext();
    for (int number = 0;; ++number) {
        const auto items = *context.fetch(ClipContext::Filter::all);
        if (items.size() > 30) {
            tell(pipe, {false, items.back()->id()});
            context.remove(items.back());
        }
        ClipItem::Fields fields;
        fields.id = QUuid::createUuid();
        fields.createdAt = scheduler.now();
        fields.contentHash = fields.id.toString();
        fields.kindRaw = u"text"_s;
        if (number % 3 == 0)
            fields.imageData = ClipPayload(payloadOf(fields.id));
        else
            fields.text = QString::fromLatin1(payloadOf(fields.id).first(3000));
        const QUuid id = fields.id;
        context.insert(std::move(fields));
        if (context.save())
            tell(pipe, {true, id});
        scheduler.advance(std::chrono::milliseconds(100));
    }
}

} // namespace

TEST(CrashTest, noSavedItemIsLostWhereverAWriteStormIsKilled) {
    const QTemporaryDir folder;
    std::set<QUuid> saved;
    std::minstd_rand random(7);
    for (int round = 0; round < 25; ++round) {
        std::array<int, 2> pipe{};
        ASSERT_EQ(::pipe(pipe.data()), 0);
        const pid_t child = fork();
        if (child == 0)
            writeStorm(folder.path(), pipe[1]);
        close(pipe[1]);

        Message message{};
        const auto hear = [&] {
            if (read(pipe[0], &message, sizeof message) != sizeof message)
                return false;
            if (message.isSaved)
                saved.insert(message.id);
            else
                saved.erase(message.id);
            return true;
        };
        const auto messages = 1 + random() % 60;
        for (size_t count = 0; count < messages; ++count)
            ASSERT_TRUE(hear()) << "the writer failed";
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        while (hear())
            ;
        close(pipe[0]);

        MemoryScheduler scheduler;
        const auto opening = ClipContainer::open(folder.path(), scheduler);
        ASSERT_TRUE(opening.container) << qPrintable(opening.error);
        const auto items = opening.container->mainContext().fetch(ClipContext::Filter::all);
        std::set<QUuid> found;
        for (const auto& item : *items) {
            found.insert(item->id());
            if (item->imageBytes() > 0)
                EXPECT_EQ(item->imageData(), payloadOf(item->id()));
            else
                EXPECT_EQ(item->text()->toLatin1(), payloadOf(item->id()).first(3000));
        }
        for (const QUuid& id : saved)
            EXPECT_TRUE(found.contains(id)) << "round " << round;
    }
}

} // namespace quillet
