#include "platform/linux/DesktopEntries.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

class DesktopEntriesTest : public testing::Test {
protected:
    void install(const QString& file, const QByteArray& keys) {
        const QString path = m_folder.filePath(file);
        QDir().mkpath(QFileInfo(path).path());
        QFile entry(path);
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write("# a comment\n[Desktop Action x]\nName=Wrong\n[Desktop Entry]\n" + keys);
    }

    QTemporaryDir m_folder;
    DesktopEntries m_entries{{m_folder.filePath(u"user"_s), m_folder.filePath(u"system"_s)}};
};

TEST_F(DesktopEntriesTest, aWindowsApplicationIsFoundByEachOfItsMarks) {
    install(u"system/org.kde.dolphin.desktop"_s, "Name=Files\nExec=/usr/bin/dolphin %u\n");
    install(u"system/firefox-esr.desktop"_s, "Name=Browser\nStartupWMClass=Firefox-esr\n");
    install(u"system/vendor/editor.desktop"_s, "Name=A\\sB\nExec=\"/opt/x/ed-bin\" --new\n");
    struct Row {
        QString className, instance, id;
    };
    const Row rows[] = {
        {u"org.kde.dolphin"_s, u"dolphin"_s, u"org.kde.dolphin"_s}, // the id
        {u"Dolphin"_s, u"x"_s, u"org.kde.dolphin"_s},               // its last part
        {u"firefox-esr"_s, u"Navigator"_s, u"firefox-esr"_s},       // StartupWMClass, any case
        {u"Unknown"_s, u"ed-bin"_s, u"vendor-editor"_s},            // the program
    };
    for (const Row& row : rows) {
        const auto entry = m_entries.byWindowClass(row.className, row.instance);
        ASSERT_TRUE(entry) << row.className.toStdString();
        EXPECT_EQ(entry->id, row.id);
    }
    EXPECT_EQ(m_entries.byId(u"vendor-editor"_s)->name, u"A B");
    EXPECT_FALSE(m_entries.byWindowClass(u"Nobody"_s, u"nobody"_s));
    EXPECT_FALSE(m_entries.byWindowClass({}, {}));
}

TEST_F(DesktopEntriesTest, anEarlierFolderHidesALaterOneAndNewFilesAreNoticed) {
    install(u"system/a.desktop"_s, "Name=Theirs\n");
    install(u"system/vendor/a.desktop"_s, "Name=Vendor's\n");
    std::filesystem::last_write_time(m_folder.filePath(u"system/vendor"_s).toStdString(), {});
    EXPECT_EQ(m_entries.byId(u"a"_s)->name, u"Theirs");
    EXPECT_FALSE(m_entries.byWindowClass(u"late"_s, {}));
    install(u"user/a.desktop"_s, "Name=Mine\n");
    install(u"user/late.desktop"_s, "Name=Late\n");
    EXPECT_EQ(m_entries.byId(u"vendor-a"_s)->name, u"Vendor's");
    install(u"system/vendor/late.desktop"_s, "Name=Vendor's late\n");
    EXPECT_TRUE(m_entries.byId(u"vendor-late"_s));
    EXPECT_EQ(m_entries.byId(u"a"_s)->name, u"Mine");
    EXPECT_EQ(m_entries.byWindowClass(u"late"_s, {})->name, u"Late");
    install(u"user/gone.desktop"_s, "Name=Gone\nHidden=true\n");
    EXPECT_FALSE(m_entries.byId(u"gone"_s));
}

} // namespace
} // namespace quillet
