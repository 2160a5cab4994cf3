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

    void copyFrom(const QString& name, const QColor& color, qint64 minutesAgo,
                  std::vector<MemoryPasteboard::Item> items) {
        MemoryWorkspace& workspace = shelf.world.workspace;
        workspace.installed[name] = name;
        workspace.icons[MemoryWorkspace::locationOf(name)] = icon(color);
        workspace.setFrontmost(RunningApplication{name, name, 7});
        shelf.world.scheduler.setNow(m_now.addSecs(-60 * minutesAgo - 5));
        shelf.world.copy(std::move(items));
    }

    void copyText(const QString& name, const QColor& color, qint64 minutesAgo,
                  const QString& text) {
        copyFrom(name, color, minutesAgo, {{PasteboardType::string, text.toUtf8()}});
    }

    void fill() {
        copyFrom(u"Settings"_s, {20, 140, 150}, 240,
                 {{PasteboardType::png, pngOf(sampleScreenshot({2400, 1600}))}});
        copyText(u"Terminal"_s, {80, 82, 92}, 185,
                 u"tar -czf backup-2025-11-18.tar.gz Documents Pictures --exclude='*.tmp' && "
                 "sha256sum backup-2025-11-18.tar.gz > backup.sum"_s);
        copyFrom(
            u"Files"_s, {40, 120, 230}, 65,
            {{PasteboardType::fileURL,
              "file:///h/Invoice%20October.pdf\r\nfile:///h/Receipts.zip\r\nfile:///h/"
              "Photos\r\nfile:///h/Budget%202026.csv\r\nfile:///h/a.txt\r\nfile:///h/b.txt\r\n"}});
        copyFrom(u"Photos"_s, {225, 80, 190}, 41,
                 {{PasteboardType::png, pngOf(sampleScreenshot({1600, 1000}, 0.5))}});
        copyText(u"Palette"_s, {100, 80, 225}, 18, u"#2F9E8F"_s);
        copyText(u"Browser"_s, {30, 160, 180}, 6,
                 u"https://journal.example.org/articles/quiet-software"_s);
        copyText(u"Notes"_s, {240, 160, 40}, 2,
                 u"Move the beta to the 14th. Mara sends the blue icon set on Friday; the old one "
                 "stays until then. Photos: keep the wide crop and warm the shadows a little. Ask "
                 "Jonas whether the print sizes are final before we send anything out."_s);
        for (const size_t pinned : {3U, 5U})
            shelf.world.store->togglePin(shelf.world.store->items()[pinned]);
        for (const QString& path : shelf.world.store->items()[4]->filePaths())
            shelf.world.workspace.icons[path] = icon({220, 80, 70});
        shelf.world.scheduler.setNow(m_now);
    }

    QImage picture() {
        for (int i = 0; i < 10; ++i)
            shelf.advance(1000);
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
