#include "shelf/Shelf.h"
#include "support/SamplePictures.h"

#include <gmock/gmock.h>
#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QMouseEvent>
#include <QWheelEvent>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

class ShelfViewTest : public testing::Test {
protected:
    ShelfViewTest() { resize(1000); }

    void resize(int width) {
        shelf.controller.window().resize(width + 96, 318 + 96);
        shelf.controller.window().grab(); // hidden widgets hear of their size when drawn
    }

    void copyTexts(int count) {
        for (int i = 1; i <= count; ++i)
            shelf.world.copy(u"text %1"_s.arg(i));
        shelf.controller.show();
    }

    ClipRow& row() { return shelf.view().row(); }

    void wheel(QPoint pixels, QPoint angle) {
        QWheelEvent event({100, 100}, {100, 100}, pixels, angle, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&row(), &event);
    }

    /// Presses the left button at a point of the row, whatever is there.
    void press(const QPoint& point, QEvent::Type type = QEvent::MouseButtonPress) {
        QWidget* child = row().childAt(point);
        QWidget& target = child ? *child : row();
        QMouseEvent event(type, target.mapFrom(&row(), point), point, Qt::LeftButton,
                          Qt::LeftButton, {});
        QCoreApplication::sendEvent(&target, &event);
    }

    /// The texts of the newest item's menu; one of them is chosen.
    QString menu(const QString& chosen) {
        const auto menu = shelf.view().menuFor(shelf.world.newest());
        QStringList texts;
        for (QAction* action : menu->actions()) {
            texts.append(action->isSeparator() ? u"-"_s : action->text());
            if (action->text() == chosen)
                action->trigger();
        }
        EXPECT_TRUE(texts.contains(chosen));
        return texts.join(u" "_s);
    }

    QRect selectedPlace() {
        const auto cards = row().cards();
        const auto selected = std::ranges::find_if(cards, &ClipCard::isSelected);
        return selected == cards.end() ? QRect() : (*selected)->geometry();
    }

    Shelf shelf;
};

TEST_F(ShelfViewTest, onlyTheCardsInViewExistAndTheSelectedOneComesToTheMiddle) {
    copyTexts(200);
    EXPECT_EQ(row().cards().size(), 5U);
    for (int i = 0; i < 100; ++i)
        shelf.model().moveSelection(+1);
    shelf.advance(1000);
    EXPECT_LE(row().cards().size(), 6U);
    EXPECT_NEAR(selectedPlace().center().x(), 500, 1);
    const auto selected = shelf.model().selectedItem();
    shelf.model().moveSelection(+1);
    shelf.world.store->deleteItem(selected);
    shelf.advance(1000);
    EXPECT_NEAR(selectedPlace().center().x(), 500, 1);
    shelf.controller.show();
    EXPECT_EQ(selectedPlace().topLeft(), QPoint(18, 61));
}

TEST_F(ShelfViewTest, whatReturnPastesStaysInViewUnlessTheUserScrollsAway) {
    copyTexts(20);
    shelf.model().moveSelection(19);
    shelf.advance(200);
    shelf.model().setQuery(u"text 2"_s);
    EXPECT_EQ(selectedPlace().left(), 18);
    shelf.model().setQuery({});
    shelf.world.copy(u"one more"_s);
    EXPECT_EQ(selectedPlace().right(), 1000 - 18 - 1);

    wheel({9000, 0}, {});
    shelf.world.store->togglePin(shelf.world.newest());
    shelf.advance(200);
    EXPECT_EQ(row().offset(), 0);
}

TEST_F(ShelfViewTest, thePicturesOfTheFirstCardsAreReadyBeforeTheShelfShows) {
    for (int width = 30; width < 38; ++width)
        shelf.world.copy({{PasteboardType::png, pngOf(sampleScreenshot({width, 20}))}});
    shelf.controller.prepare();
    shelf.advance(1000);
    EXPECT_FALSE(shelf.controller.window().isVisible());
    const ClipItems& items = shelf.world.store->items();
    EXPECT_TRUE(shelf.thumbnails.cached(*items.front()));
    EXPECT_FALSE(shelf.thumbnails.cached(*items.back()));
}

TEST_F(ShelfViewTest, wheelAndTouchpadScrollWithinTheRow) {
    copyTexts(20);
    const double end = 18 + 20 * 230 - 14 + 18 - 1000;
    wheel({0, -40}, {0, -60});
    EXPECT_EQ(row().offset(), 40);
    wheel({70, 0}, {});
    EXPECT_EQ(row().offset(), 0);
    wheel({}, {0, -120});
    wheel({0, -15}, {0, -120});
    shelf.advance(1000);
    EXPECT_EQ(row().offset(), 230) << "two notches in quick succession add up";
    wheel({-90'000, 0}, {});
    EXPECT_EQ(row().offset(), end);
    resize(3000);
    EXPECT_EQ(row().offset(), end - 2000);
    shelf.model().setQuery(u"text 7"_s);
    EXPECT_EQ(row().offset(), 0);
}

TEST_F(ShelfViewTest, cardsTellAssistiveProgramsWhatTheyAre) {
    shelf.world.workspace.setFrontmost(RunningApplication{u"org.kate"_s, u"Kate"_s, 7});
    copyTexts(2);
    shelf.world.store->togglePin(shelf.world.newest());
    const auto cards = row().cards();
    EXPECT_EQ(cards[0]->accessibleName(), u"Text from Kate, 0 sec. ago, pinned, 1 of 2"_s);
    shelf.advance(10'000);
    EXPECT_EQ(cards[1]->accessibleName(), u"Text from Kate, 11 sec. ago, 2 of 2"_s);
    const QAccessibleInterface* first = QAccessible::queryAccessibleInterface(cards[0]);
    EXPECT_EQ(first->role(), QAccessible::ListItem);
    EXPECT_TRUE(first->state().selected);
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(cards[1])->state().selected);
}

TEST_F(ShelfViewTest, aDoubleClickPastesWhatItsFirstClickChoseEvenWhenTheRowHasMoved) {
    copyTexts(20);
    for (const int x : {950, 845}) { // another card or a gap is there after the first click
        shelf.controller.show();
        press({x, 200});
        const auto chosen = shelf.model().selectedItem();
        EXPECT_NE(chosen, shelf.world.newest()) << x;
        shelf.advance(200);
        press({x, 200}, QEvent::MouseButtonDblClick);
        EXPECT_FALSE(shelf.panel().isVisible()) << x;
        EXPECT_EQ(shelf.world.newest(), chosen) << x;
    }
    shelf.controller.show();
    press({950, 200});
    shelf.advance(200);
    press({385, 200});
    press({385, 200}, QEvent::MouseButtonDblClick);
    EXPECT_TRUE(shelf.panel().isVisible()) << "both clicks were between cards";
}

TEST_F(ShelfViewTest, theMenuOffersWhatFitsTheItem) {
    const QString start = u"Paste Paste as Plain Text Copy - "_s;
    shelf.world.copy(u"https://example.org/a"_s);
    shelf.controller.show();
    EXPECT_EQ(menu(u"Open Link"_s), start + u"Pin Open Link - Delete"_s);
    EXPECT_THAT(shelf.world.workspace.opened,
                testing::ElementsAre(QUrl(u"https://example.org/a"_s)));
    menu(u"Pin"_s);
    EXPECT_EQ(menu(u"Copy"_s), start + u"Unpin Open Link - Delete"_s);
    EXPECT_TRUE(shelf.controller.isVisible());
    menu(u"Paste as Plain Text"_s);
    EXPECT_FALSE(shelf.controller.isVisible());

    shelf.world.copy({{PasteboardType::fileURL, "file:///h/a.txt\r\nfile:///h/b.txt\r\n"}});
    EXPECT_EQ(menu(u"Show in Finder"_s), start + u"Pin Show in Finder - Delete"_s);
    EXPECT_EQ(shelf.world.workspace.revealed, QStringList(u"/h/a.txt"_s));
    menu(u"Delete"_s);
    EXPECT_EQ(shelf.world.store->items().size(), 1U);
}

TEST_F(ShelfViewTest, whatIsDraggedOutSuitsItsReceivers) {
    const auto dragged = [this] { return shelf.view().dragContent(*shelf.world.newest()); };
    shelf.world.copy({{PasteboardType::fileURL, "file:///h/a.txt\r\nfile:///h/b.txt\r\n"}});
    EXPECT_EQ(dragged()->urls(), QList<QUrl>{QUrl(u"file:///h/a.txt"_s)});
    const QByteArray png = pngOf(sampleScreenshot({300, 200}));
    shelf.world.copy({{PasteboardType::png, png}});
    const auto image = dragged();
    EXPECT_EQ(image->data(u"image/png"_s), png);
    ASSERT_EQ(image->urls().size(), 1);
    QFile file(image->urls().front().toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), png);
    const auto ofOthers = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    const QString folder = QFileInfo(file).path();
    for (const QString& path : {file.fileName(), folder, QFileInfo(folder).path()})
        EXPECT_FALSE(QFile::permissions(path) & ofOthers) << path.toStdString();
    EXPECT_EQ(dragged()->urls(), image->urls()) << "one file is enough";

    const DragFiles nextRun(shelf.folder.filePath(u"drag"_s));
    EXPECT_FALSE(file.exists());
}

TEST_F(ShelfViewTest, hardContentsLeaveTheShelfWhole) {
    const QStringList texts{u"שלום עולם \u202e reversed"_s,
                            u"Z"_s + QString(5000, QChar(0x0301)),
                            u"\x01\x02\x7f\t\r\n\u0000 end"_s,
                            u"https://example.org/?q="_s + QString(100'000, u'a'),
                            u"👩‍👩‍👧"_s.repeated(3000),
                            QString(200'000, u'\n')};
    for (const QString& text : texts)
        shelf.world.copy(text);
    shelf.world.copy({{PasteboardType::fileURL, "file:///nowhere/gone.txt\r\n"}});
    shelf.controller.show();
    resize(3000);
    shelf.advance(1000);
    EXPECT_EQ(row().cards().size(), shelf.world.store->items().size());
    const QImage picture = shelf.controller.window().grab().toImage();
    const double scale = picture.devicePixelRatio();
    for (const ClipCard* card : row().cards()) {
        const int gap = qRound((48 + card->geometry().right() + 7) * scale);
        for (int y = qRound(100 * scale); y < qRound(350 * scale); ++y)
            ASSERT_GT(picture.pixelColor(gap, y).lightness(), 200) << "ink beside a card";
    }
}

} // namespace
} // namespace quillet
