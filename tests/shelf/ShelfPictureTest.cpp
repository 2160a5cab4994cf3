#include "look/Picture.h"
#include "shelf/Shelf.h"
#include "support/SamplePictures.h"

#include <QPainter>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

QImage icon(const QColor& color) {
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(2, 2, 60, 60, 14, 14);
    return image;
}

class ShelfPictureTest : public testing::Test {
protected:
    ShelfPictureTest() {
        // The panel in memory does not size its widget, and hidden widgets hear of it when drawn.
        shelf.controller.window().resize(1420 + 96, 318 + 96);
        shelf.controller.window().grab();
    }

    void copy(const QString& name, const QColor& color, qint64 minutesAgo, const QString& type,
              const QByteArray& bytes) {
        MemoryWorkspace& workspace = shelf.world.workspace;
        workspace.installed[name] = name;
        workspace.icons[MemoryWorkspace::locationOf(name)] = icon(color);
        workspace.setFrontmost(RunningApplication{name, name, 7});
        shelf.world.scheduler.setNow(m_now.addSecs(-60 * minutesAgo - 5));
        shelf.world.copy({{type, bytes}});
    }

    void fill() {
        namespace Type = PasteboardType;
        copy(u"Settings"_s, {20, 140, 150}, 240, Type::png, pngOf(sampleScreenshot({2400, 1600})));
        copy(u"Terminal"_s, {80, 82, 92}, 185, Type::string,
             "tar -czf backup-2025-11-18.tar.gz Documents Pictures --exclude='*.tmp' && "
             "sha256sum backup-2025-11-18.tar.gz > backup.sum");
        copy(u"Files"_s, {40, 120, 230}, 65, Type::fileURL,
             "file:///h/Invoice%20October.pdf\r\nfile:///h/Receipts.zip\r\nfile:///h/"
             "Photos\r\nfile:///h/Budget%202026.csv\r\nfile:///h/a.txt\r\nfile:///h/b.txt\r\n");
        copy(u"Photos"_s, {225, 80, 190}, 41, Type::png,
             pngOf(sampleScreenshot({1600, 1000}, 0.5)));
        copy(u"Palette"_s, {100, 80, 225}, 18, Type::string, "#2F9E8F");
        copy(u"Browser"_s, {30, 160, 180}, 6, Type::string,
             "https://journal.example.org/articles/quiet-software");
        copy(u"Notes"_s, {240, 160, 40}, 2, Type::string,
             "Move the beta to the 14th. Mara sends the blue icon set on Friday; the old one stays "
             "until then. Photos: keep the wide crop and warm the shadows a little. Ask Jonas "
             "whether the print sizes are final before we send anything out.");
        for (const size_t pinned : {3U, 5U})
            shelf.world.store->togglePin(shelf.world.store->items()[pinned]);
        for (const QString& path : shelf.world.store->items()[4]->filePaths())
            shelf.world.workspace.icons[path] = icon({220, 80, 70});
        shelf.world.scheduler.setNow(m_now);
    }

    QImage picture() {
        shelf.advance(10'000);
        shelf.world.scheduler.setNow(m_now);
        shelf.view().row().refresh();
        return shelf.controller.window().grab().toImage();
    }

    Shelf shelf;

private:
    const QDateTime m_now{QDate(2025, 11, 18), QTime(15, 42)};
};

TEST_F(ShelfPictureTest, cardsOfEveryKindWithOneSelected) {
    fill();
    shelf.controller.show();
    shelf.model().moveSelection(+1);
    EXPECT_TRUE(matchesPicture(picture(), u"shelf-light"_s));
}

TEST_F(ShelfPictureTest, anEmptyHistoryInTheDark) {
    shelf.theme.setAppearance(Appearance::dark);
    shelf.controller.show();
    EXPECT_TRUE(matchesPicture(picture(), u"shelf-empty-dark"_s));
}

TEST_F(ShelfPictureTest, aSearchWithoutMatches) {
    fill();
    shelf.controller.show();
    shelf.model().setQuery(u"lighthouse"_s);
    EXPECT_TRUE(matchesPicture(picture(), u"shelf-nomatch-light"_s));
}

} // namespace
} // namespace quillet
