#include "app/InstanceLock.h"
#include "app/RuntimeFolder.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

TEST(InstanceLock, hasOneHolderAtATimeWhateverADeadProcessLeftInItsFile) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"lock"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("1\nleft over from something longer\n");
    file.close();

    InstanceLock first(folder.path());
    InstanceLock asking(folder.path());
    EXPECT_FALSE(asking.isHeldElsewhere());
    EXPECT_TRUE(first.acquire());
    EXPECT_TRUE(asking.isHeldElsewhere());
    EXPECT_FALSE(asking.acquire());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray::number(getpid()) + '\n');
}

class RuntimeFolder : public testing::Test {
protected:
    void SetUp() override {
        QDir(m_folder.path()).mkdir(u"run"_s);
        QDir(m_folder.path()).mkdir(u"tmp"_s);
        qputenv("XDG_RUNTIME_DIR", session().toUtf8());
        qputenv("TMPDIR", temporary().toUtf8());
    }
    void TearDown() override {
        qunsetenv("XDG_RUNTIME_DIR");
        qunsetenv("TMPDIR");
    }

    QString session() const { return m_folder.filePath(u"run"_s); }
    QString temporary() const { return m_folder.filePath(u"tmp"_s); }
    QString fallback() const { return temporary() + u"/quillet-%1"_s.arg(geteuid()); }

    /// Gives a path to another user; false where this user may not.
    static bool giveAway(const QString& path) {
        return lchown(path.toUtf8().constData(), 65534, 65534) == 0;
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(RuntimeFolder, liesInTheSessionsFolderAndIsClosedToOthers) {
    QDir(session()).mkdir(u"quillet"_s);
    chmod((session() + u"/quillet"_s).toUtf8().constData(), 0777);
    ASSERT_EQ(runtimeFolder(), session() + u"/quillet"_s);
    struct stat status {};
    stat(runtimeFolder()->toUtf8().constData(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(RuntimeFolder, fallsBackWithoutASessionOrInAnotherUsersSession) {
    qputenv("XDG_RUNTIME_DIR", "relative");
    EXPECT_EQ(runtimeFolder(), fallback());
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(runtimeFolder(), fallback());
    qputenv("XDG_RUNTIME_DIR", session().toUtf8());
    if (!giveAway(session()))
        GTEST_SKIP() << "only root can make a folder of another user";
    EXPECT_EQ(runtimeFolder(), fallback());
    EXPECT_FALSE(QFile::exists(session() + u"/quillet"_s));
}

TEST_F(RuntimeFolder, whatAnotherUserPreparedIsNotUsed) {
    qunsetenv("XDG_RUNTIME_DIR");
    ASSERT_EQ(symlink(session().toUtf8().constData(), fallback().toUtf8().constData()), 0);
    EXPECT_EQ(runtimeFolder(), std::nullopt);
    QFile::remove(fallback());
    QDir().mkdir(fallback());
    if (!giveAway(fallback()))
        GTEST_SKIP() << "only root can make a folder of another user";
    EXPECT_EQ(runtimeFolder(), std::nullopt);
}

} // namespace quillet
