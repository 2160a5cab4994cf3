#include "shelf/ShelfModel.h"
#include "support/World.h"

#include <gmock/gmock.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using Filter = ShelfModel::Filter;

class ShelfModelTest : public testing::Test {
protected:
    QStringList visible() {
        QStringList texts;
        for (const auto& item : model.visibleItems())
            texts.append(item->text().value_or(item->filePaths().join(u' ')));
        return texts;
    }

    QString selected() {
        const auto item = model.selectedItem();
        return item ? *item->text() : QString();
    }

    QStringList found(const QString& query) {
        model.setQuery(query);
        visible();
        world.scheduler.advance(std::chrono::milliseconds(1));
        return visible();
    }

    World world;
    ShelfModel model{*world.store, world.scheduler};
};

TEST_F(ShelfModelTest, anEmptyHistoryHasNothingToSelect) {
    model.resetForShow();
    model.moveSelection(+1);
    EXPECT_EQ(model.selectedItem(), nullptr);
    EXPECT_EQ(model.selectedID(), std::nullopt);
}

TEST_F(ShelfModelTest, everyFilterListsItsKindsNewestFirst) {
    world.copy(u"words"_s);
    world.copy(u"https://example.org"_s);
    world.copy(u"#2F9E8F"_s);
    world.copy({{PasteboardType::fileURL, "file:///home/a.pdf\r\n"}});
    world.store->togglePin(world.store->items()[2]);

    const auto under = [this](Filter filter) {
        model.chooseFilter(filter);
        return visible();
    };
    EXPECT_EQ(under(Filter::all),
              QStringList({u"/home/a.pdf"_s, u"#2F9E8F"_s, u"https://example.org"_s, u"words"_s}));
    EXPECT_EQ(under(Filter::text), QStringList({u"#2F9E8F"_s, u"words"_s}));
    EXPECT_EQ(selected(), u"#2F9E8F"_s);
    EXPECT_EQ(under(Filter::link), QStringList(u"https://example.org"_s));
    EXPECT_EQ(under(Filter::pinned), QStringList(u"https://example.org"_s));
    EXPECT_EQ(under(Filter::file), QStringList(u"/home/a.pdf"_s));
    EXPECT_EQ(under(Filter::image), QStringList());
    EXPECT_EQ(model.selectedID(), std::nullopt);
}

TEST_F(ShelfModelTest, aSearchIgnoresCaseAndSurroundingSpacesButNeitherAccentsNorLineEnds) {
    world.workspace.setFrontmost(RunningApplication{u"org.browser"_s, u"Firefox"_s, 7});
    world.copy(u"Crème Brûlée"_s);
    world.workspace.setFrontmost(RunningApplication{u"org.editor"_s, u"Kate"_s, 8});
    world.copy(u"STRASSE und ΣΊΣΥΦΟΣ"_s);
    world.copy({{PasteboardType::fileURL, "file:///home/Menu.pdf\r\n"}});

    EXPECT_EQ(found(u" \t"_s).size(), 3);
    EXPECT_EQ(found(u"  crème\t"_s), QStringList(u"Crème Brûlée"_s));
    EXPECT_EQ(found(u"CRE\u0300ME"_s), QStringList(u"Crème Brûlée"_s));
    EXPECT_EQ(found(u"creme"_s), QStringList());
    EXPECT_EQ(found(u"straße"_s).size(), 1);
    EXPECT_EQ(found(u"σίσυφος"_s).size(), 1);
    EXPECT_EQ(found(u"menu.PDF"_s), QStringList(u"/home/Menu.pdf"_s));
    EXPECT_EQ(found(u"firefox"_s), QStringList(u"Crème Brûlée"_s));
    EXPECT_EQ(found(u"kate"_s).size(), 2);
    EXPECT_EQ(found(u"crème\n"_s), QStringList());
}

TEST_F(ShelfModelTest, longTextsAreFoundOnceTheyHaveBeenRead) {
    QString longText(100'000, u'x');
    world.copy(longText + u"Needle in Ä haystack"_s);
    world.copy(longText + u"Nothing"_s);
    world.copy(u"short needle"_s);
    ASSERT_GT(world.store->items().back()->longTextBytes(), 0);

    model.setQuery(u"needle"_s);
    EXPECT_EQ(model.visibleItems().size(), 1U);
    world.scheduler.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(model.visibleItems().size(), 2U);

    model.setQuery(u"in ä hay"_s);
    EXPECT_EQ(model.visibleItems().size(), 1U) << "a text read before is compared at once";
    model.release();
    EXPECT_EQ(found(u"NOTHING"_s).size(), 1);
    world.store->deleteItem(model.visibleItems().front());
    EXPECT_EQ(visible(), QStringList());
}

TEST_F(ShelfModelTest, aTextThatArrivesAfterTheQueryChangedCountsForTheNewQuery) {
    world.copy(QString(100'000, u'x') + u"apple"_s);
    world.scheduler.holdBackground();
    model.setQuery(u"apple"_s);
    model.visibleItems();
    model.setQuery(u"pear"_s);
    model.visibleItems();
    world.scheduler.releaseBackground();
    world.scheduler.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(model.visibleItems().size(), 0U);
    EXPECT_EQ(found(u"app"_s).size(), 1);

    model.release();
    world.scheduler.holdBackground();
    found(u"apple"_s);
    model.release();
    world.scheduler.releaseBackground();
    world.scheduler.advance(std::chrono::milliseconds(1));
    world.scheduler.holdBackground();
    EXPECT_EQ(found(u"app"_s).size(), 0) << "nobody searched when the text arrived";
}

TEST_F(ShelfModelTest, theSelectionStopsAtBothEndsAndSurvivesAQueryThatHidesIt) {
    world.copy(u"alpha"_s);
    world.copy(u"beta"_s);
    world.copy(u"gamma"_s);
    model.resetForShow();
    EXPECT_EQ(selected(), u"gamma"_s);
    model.moveSelection(-1);
    EXPECT_EQ(selected(), u"gamma"_s);
    model.moveSelection(+1);
    EXPECT_EQ(selected(), u"beta"_s);

    model.setQuery(u"alp"_s);
    EXPECT_EQ(selected(), u"alpha"_s);
    model.setQuery({});
    EXPECT_EQ(selected(), u"beta"_s);

    model.moveSelection(+5);
    model.moveSelection(+1);
    EXPECT_EQ(selected(), u"alpha"_s);
    world.store->deleteItem(model.selectedItem());
    EXPECT_EQ(selected(), u"gamma"_s);
}

TEST_F(ShelfModelTest, everyShowStartsAfreshAndOnlyRealChangesAreReported) {
    world.copy(u"alpha"_s);
    world.copy(u"beta"_s);
    model.resetForShow();
    model.setQuery(u"alp"_s);
    model.setFilter(Filter::link);
    model.moveSelection(+1);

    int changes = 0;
    for (const auto signal : {&ShelfModel::queryChanged, &ShelfModel::filterChanged,
                              &ShelfModel::selectedIDChanged, &ShelfModel::visibleItemsChanged})
        QObject::connect(&model, signal, &model, [&changes] { ++changes; });
    model.setQuery(u"alp"_s);
    model.setFilter(Filter::link);
    model.setSelectedID(model.selectedID());
    EXPECT_EQ(changes, 0);

    world.copy(u"gamma"_s);
    model.resetForShow();
    EXPECT_EQ(visible(), QStringList({u"gamma"_s, u"beta"_s, u"alpha"_s}));
    EXPECT_EQ(selected(), u"gamma"_s);
    EXPECT_EQ(model.showToken(), 2);
}

} // namespace
} // namespace quillet
