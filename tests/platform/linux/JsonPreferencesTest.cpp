#include "platform/linux/files/JsonPreferences.h"

#include <csignal>
#include <gmock/gmock.h>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <sys/wait.h>
#include <unistd.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

QStringList warnings;

void collectWarning(QtMsgType, const QMessageLogContext&, const QString& message) {
    warnings.append(message);
}

const PreferenceKey<int> days{u"history.days"_s, 30};
const PreferenceKey<QString> name{u"user.name"_s, {}};

} // namespace

class JsonPreferencesTest : public testing::Test {
protected:
    JsonPreferencesTest() {
        warnings.clear();
        qInstallMessageHandler(collectWarning);
    }
    ~JsonPreferencesTest() override { qInstallMessageHandler(nullptr); }

    QByteArray content(const QString& file) const {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    }

    void fill(const QByteArray& bytes) const {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QJsonObject object() const { return QJsonDocument::fromJson(content(path)).object(); }

    QStringList filesBeside() const {
        QStringList files = QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        files.removeOne(u"preferences.json"_s);
        return files;
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"preferences.json"_s);
};

TEST_F(JsonPreferencesTest, theFileIsAFlatObjectForItsOwnerOnlyMadeByTheFirstWrite) {
    const QString file = folder.filePath(u"new/quillet/preferences.json"_s);
    JsonPreferences preferences(file);
    preferences.registerDefault(days);
    EXPECT_FALSE(QFile::exists(QFileInfo(file).path()));
    preferences.set(days, 7);
    preferences.set({u"hotkey.shelf"_s, {}}, QByteArray("\x01\x02"));

    const QJsonObject expected{{u"history.days"_s, 7},
                               {u"hotkey.shelf"_s, QJsonObject{{u"data"_s, u"AQI="_s}}}};
    EXPECT_EQ(QJsonDocument::fromJson(content(file)).object(), expected);
    const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup | QFile::ExeOther;
    EXPECT_FALSE(QFileInfo(file).permissions() & others);
    EXPECT_FALSE(QFileInfo(QFileInfo(file).path()).permissions() & others);
}

TEST_F(JsonPreferencesTest, whatItDoesNotUnderstandItReadsAsNothingAndKeeps) {
    fill(R"({"history.days": [1, {"a": null}], "user.name": {"data": "%%"}, "later": {"x": [1.5]},
             "nothing": null, "big": 9007199254740993})");
    const QJsonObject before = object();
    JsonPreferences preferences(path);
    EXPECT_EQ(preferences.value(days), 0);
    EXPECT_TRUE(preferences.value(name).isNull());
    preferences.set({u"other"_s, {}}, true);

    QJsonObject after = object();
    EXPECT_EQ(after.take(u"other"_s), true);
    EXPECT_EQ(after, before);
    EXPECT_TRUE(filesBeside().isEmpty());
}

TEST_F(JsonPreferencesTest, aDamagedFileIsKeptBesideAndTheDefaultsHold) {
    const QByteArray damaged[] = {"", "{\"history.days\": 7", "[7]", "\xff\xfe\0garbage",
                                  QByteArray(100000, '[')};
    for (const QByteArray& bytes : damaged) {
        fill(bytes);
        warnings.clear();
        JsonPreferences preferences(path);
        preferences.registerDefault(days);
        EXPECT_EQ(preferences.value(days), 30);
        EXPECT_EQ(warnings.size(), 1);
        EXPECT_FALSE(QFile::exists(path));
        preferences.set(days, 8);
        EXPECT_EQ(JsonPreferences(path).value(days), 8);
    }
    QList<QByteArray> survivors;
    for (const QString& file : filesBeside())
        survivors.append(content(folder.filePath(file)));
    EXPECT_THAT(survivors, testing::UnorderedElementsAreArray(damaged));
}

TEST_F(JsonPreferencesTest, aFileThatCanNeitherBeUsedNorMovedIsLeftAlone) {
    JsonPreferences preferences(u"/proc/version"_s);
    preferences.set(days, 7);
    preferences.set(days, 8);
    EXPECT_EQ(preferences.value(days), 8);
    EXPECT_EQ(warnings.size(), 1);
}

TEST_F(JsonPreferencesTest, aFailedWriteStaysInMemoryAndGoesOutWithTheNext) {
    const QString obstacle = folder.filePath(u"quillet"_s);
    ASSERT_TRUE(QFile(obstacle).open(QIODevice::WriteOnly)); // a file where the folder should be
    const QString file = obstacle + u"/preferences.json"_s;
    JsonPreferences preferences(file);
    preferences.set(days, 7);
    EXPECT_EQ(preferences.value(days), 7);
    EXPECT_EQ(warnings.size(), 1);

    QFile::remove(obstacle);
    preferences.set(name, u"Ada"_s);
    const JsonPreferences next(file);
    EXPECT_EQ(next.value(days), 7);
    EXPECT_EQ(next.value(name), u"Ada"_s);
}

TEST_F(JsonPreferencesTest, aProcessKilledWhileItWritesLeavesACompleteFile) {
    JsonPreferences(path).set(days, 0);
    for (int round = 0; round < 20; ++round) {
        const int before = JsonPreferences(path).value(days);
        const pid_t child = fork();
        if (child == 0) {
            JsonPreferences preferences(path);
            for (int i = before + 1;; ++i) {
                preferences.set(name, QString(20000, u'x'));
                preferences.set(days, i);
            }
        }
        while (object()[days.name].toInt() < before + 5) {
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const JsonPreferences survivor(path);
        ASSERT_GE(survivor.value(days), before + 5);
        ASSERT_EQ(survivor.value(name).size(), 20000);
    }
    EXPECT_TRUE(warnings.isEmpty());
}

} // namespace quillet
