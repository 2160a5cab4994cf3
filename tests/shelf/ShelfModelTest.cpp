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

TEST_F(ShelfModelTest, everyFilterListsItsKindsNewestFirst) {
    world.copy(u"words"_s);
    world.copy(u"https://example.org"_s);
    world.copy(u"#2F9E8F"_s);
    world.copy({{PasteboardType::fileURL, "file:///home/a.pdf\r\n"}});
    world.store->togglePin(world.store->items()[2]);
    const std::pair<Filter, QStringList> rows[] = {
        {Filter::all, {u"/home/a.pdf"_s, u"#2F9E8F"_s, u"https://example.org"_s, u"words"_s}},
        {Filter::text, {u"#2F9E8F"_s, u"words"_s}},
        {Filter::link, {u"https://example.org"_s}},
        {Filter::pinned, {u"https://example.org"_s}},
        {Filter::file, {u"/home/a.pdf"_s}},
        {Filter::image, {}}};
    for (const auto& [filter, items] : rows) {
        model.chooseFilter(filter);
        EXPECT_EQ(visible(), items);
        EXPECT_EQ(model.selectedID().has_value(), !items.empty());
    }
    model.moveSelection(+1);
    EXPECT_EQ(model.selectedItem(), nullptr);
}

TEST_F(ShelfModelTest, aSearchIgnoresCaseAndSurroundingSpacesButNeitherAccentsNorLineEnds) {
    const QString creme = u"Crème Brûlée"_s;
    const QString sisyphus = u"STRASSE und ΣΊΣΥΦΟΣ"_s;
    const QString menu = u"/home/Menu.pdf"_s;
    world.workspace.setFrontmost(RunningApplication{u"org.browser"_s, u"Firefox"_s, 7});
    world.copy(creme);
    world.workspace.setFrontmost(RunningApplication{u"org.editor"_s, u"Kate"_s, 8});
    world.copy(sisyphus);
    world.copy({{PasteboardType::fileURL, "file://" + menu.toUtf8()}});
    const std::pair<QString, QStringList> rows[] = {{u" \t"_s, {menu, sisyphus, creme}},
                                                    {u"  crème\t"_s, {creme}},
                                                    {u"CRE\u0300ME"_s, {creme}},
                                                    {u"creme"_s, {}},
                                                    {u"crème\n"_s, {}},
                                                    {u"straße"_s, {sisyphus}},
                                                    {u"σίσυφος"_s, {sisyphus}},
                                                    {u"menu.PDF"_s, {menu}},
                                                    {u"firefox"_s, {creme}}};
    for (const auto& [query, items] : rows)
        EXPECT_EQ(found(query), items) << qPrintable(query);
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
}

TEST_F(ShelfModelTest, theSelectionStopsAtBothEndsSurvivesAQueryAndStartsAfreshWithEveryShow) {
    for (const QString& text : {u"alpha"_s, u"beta"_s, u"gamma"_s})
        world.copy(text);
    model.resetForShow();
    model.moveSelection(-1);
    EXPECT_EQ(selected(), u"gamma"_s);
    model.moveSelection(+1);
    model.setQuery(u"alp"_s);
    EXPECT_EQ(selected(), u"alpha"_s);
    model.setQuery({});
    EXPECT_EQ(selected(), u"beta"_s);
    model.moveSelection(+5);
    EXPECT_EQ(selected(), u"alpha"_s);
    world.store->deleteItem(model.selectedItem());
    EXPECT_EQ(selected(), u"gamma"_s);

    model.setQuery(u"bet"_s);
    model.setFilter(Filter::link);
    world.copy(u"delta"_s);
    model.resetForShow();
    EXPECT_EQ(visible(), QStringList({u"delta"_s, u"gamma"_s, u"beta"_s}));
    EXPECT_EQ(selected(), u"delta"_s);
}

} // namespace
} // namespace quillet
