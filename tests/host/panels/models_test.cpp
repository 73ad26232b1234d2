// The panels' models: rows follow the drawing with few notices, and changes are steps that can be undone. No widgets.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/Moving.h"
#include "host/editor/UndoHistory.h"
#include "host/editor/panels/LayersModel.h"
#include "host/editor/panels/NetworkModels.h"
#include "host/editor/panels/Panel.h"
#include "host/editor/panels/PropertiesModel.h"
#include "host/network/NetworkData.h"
#include "tests/host/editor/EditorFixture.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QLocale>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <random>

namespace velmor {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

QCoreApplication &application()
{
    static int count = 1;
    static char name[] = "panels_test";
    static char *arguments[] = {name, nullptr};
    static auto *app = new QCoreApplication(count, arguments);
    return *app;
}

class PanelModelTest : public test::EditorFixture {
protected:
    PanelModelTest() { application(); }

    bool change(const char *name, const std::function<void(Drawing &)> &work)
    {
        steps.emplace_back(name);
        return changeDrawing(session, uiText(name), work);
    }
    auto changer()
    {
        return [this](const char *name, const std::function<void(Drawing &)> &work) { return change(name, work); };
    }
    static QString cell(const QAbstractItemModel &model, int row, int column)
    {
        return model.index(row, column).data().toString();
    }
    static std::vector<std::string> column(const QAbstractItemModel &model, int column)
    {
        std::vector<std::string> cells;
        for (int row = 0; row < model.rowCount(); ++row)
            cells.push_back(cell(model, row, column).toStdString());
        return cells;
    }

    std::vector<std::string> steps;
};

// --- Layers ---------------------------------------------------------------------------------------------------------

class LayersTest : public PanelModelTest {
protected:
    LayersTest() { model.setDrawing(&drawing()); }
    int row(const wchar_t *name) { return model.rowOf(*drawing().findLayer(name)); }

    LayersModel model{changer()};
};

TEST_F(LayersTest, ModelKeepsTheRulesOfTables)
{
    QAbstractItemModelTester tester(&model);
    drawing().ensureLayer(L"A");
    model.bringUpToDate();
    EXPECT_TRUE(model.index(0, 0).flags() & Qt::ItemNeverHasChildren);
}

TEST_F(LayersTest, ANewLayerIsInsertedAndNothingIsBuiltAnew)
{
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset), inserts(&model, &QAbstractItemModel::rowsInserted),
        changes(&model, &QAbstractItemModel::dataChanged);
    const int before = model.rowCount();
    drawing().ensureLayer(L"Streets");
    model.bringUpToDate();
    EXPECT_EQ(model.rowCount(), before + 1);
    EXPECT_EQ(inserts.count(), 1);
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(LayersTest, ACheckBoxTurnsALayerOffAsAStepThatUndoTakesBack)
{
    drawing().ensureLayer(L"A");
    model.bringUpToDate();
    const QModelIndex on = model.index(row(L"A"), LayersModel::On);
    ASSERT_TRUE(model.setData(on, Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(drawing().layer(*drawing().findLayer(L"A")).on);
    EXPECT_EQ(on.data(Qt::CheckStateRole), Qt::Unchecked);
    EXPECT_EQ(drawing().component<UndoHistory>().undo(), 1u);
    EXPECT_TRUE(drawing().layer(*drawing().findLayer(L"A")).on);
    model.bringUpToDate();
    EXPECT_EQ(on.data(Qt::CheckStateRole), Qt::Checked);
}

TEST_F(LayersTest, TheCurrentLayerIsNotFrozen)
{
    const int current = model.rowOf(drawing().currentLayer());
    EXPECT_FALSE(model.setData(model.index(current, LayersModel::Frozen), Qt::Checked, Qt::CheckStateRole));
    EXPECT_FALSE(drawing().layer(drawing().currentLayer()).frozen);
    EXPECT_THAT(steps, IsEmpty());
}

TEST_F(LayersTest, OneLayerIsAlwaysCurrent)
{
    drawing().ensureLayer(L"A");
    model.bringUpToDate();
    const int former = model.rowOf(drawing().currentLayer());
    EXPECT_FALSE(model.setData(model.index(former, LayersModel::Current), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_TRUE(model.setData(model.index(row(L"A"), LayersModel::Current), Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(drawing().currentLayer(), *drawing().findLayer(L"A"));
    EXPECT_EQ(model.index(former, LayersModel::Current).data(Qt::CheckStateRole), Qt::Unchecked);
}

TEST_F(LayersTest, EntitiesAreCountedAsTheyComeGoAndMove)
{
    const AcDbObjectId id = line(0, 0, 1, 1);
    onLayer(line(0, 0, 2, 2), L"A");
    model.bringUpToDate();
    EXPECT_EQ(cell(model, row(L"0"), LayersModel::Entities), "1");
    EXPECT_EQ(cell(model, row(L"A"), LayersModel::Entities), "1");
    onLayer(id, L"A");
    model.bringUpToDate();
    EXPECT_EQ(cell(model, row(L"A"), LayersModel::Entities), "2");
    drawing().erase(*open(id));
    model.bringUpToDate();
    EXPECT_EQ(cell(model, row(L"A"), LayersModel::Entities), "1");
    drawing().erase(*static_cast<AcDbEntity *>(drawing().modelSpace().entities().front()), false);
    model.bringUpToDate();
    EXPECT_EQ(cell(model, row(L"A"), LayersModel::Entities), "2");
}

TEST_F(LayersTest, ACountOutlivesChangesOfShapeAndFollowsThoseOfLayer)
{
    const AcDbObjectId id = line(0, 0, 1, 1);
    auto &counts = drawing().component<LayerCounts>();
    const std::size_t other = drawing().ensureLayer(L"A");
    EXPECT_EQ(counts.of(layerIndexOf(*open(id))), 1u);
    drawing().entityChanging(*open(id));
    drawing().entityChanged(*open(id));
    drawing().setData(*open(id), "KEY", {{1, std::wstring(L"x")}});
    EXPECT_EQ(counts.of(other), 0u);
    drawing().entityChanging(*open(id)); // told, and then something else comes
    drawing().setLayerOf(*open(id), other);
    EXPECT_EQ(counts.of(other), 1u);
}

TEST_F(LayersTest, ACountIsRightAgainWhenWhatCameAndChangedItsLayerIsUndoneAndRedone)
{
    auto &log = drawing().component<ChangeLog>();
    auto &counts = drawing().component<LayerCounts>();
    log.begin();
    const AcDbObjectId id = line(0, 0, 1, 1);
    const std::size_t first = layerIndexOf(*open(id));
    const std::size_t other = drawing().ensureLayer(L"A");
    drawing().setLayerOf(*open(id), other);
    log.keep();
    EXPECT_EQ(counts.of(first), 0u);
    EXPECT_EQ(counts.of(other), 1u);
    ASSERT_TRUE(log.undo());
    EXPECT_EQ(counts.of(first), 0u);
    EXPECT_EQ(counts.of(other), 0u);
    ASSERT_TRUE(log.redo());
    EXPECT_EQ(counts.of(first), 0u);
    EXPECT_EQ(counts.of(other), 1u);
}

TEST_F(LayersTest, ANameThatIsTakenOrCannotStandIsRefused)
{
    EXPECT_STREQ(model.refusalOf("  "), "ui.layer.badName");
    EXPECT_STREQ(model.refusalOf("A|B"), "ui.layer.badName");
    EXPECT_STREQ(model.refusalOf("0"), "ui.layers.taken");
    EXPECT_EQ(model.refusalOf("Streets"), nullptr);
    EXPECT_EQ(model.add("0"), -1);
    const int added = model.add(" Streets ");
    ASSERT_GE(added, 0);
    EXPECT_EQ(model.layer(added).name, L"Streets");
}

TEST_F(LayersTest, ARenamedLayerIsTheSameLayerUnderAnotherName)
{
    const AcDbObjectId id = onLayer(line(0, 0, 1, 1), L"A");
    const std::size_t index = *drawing().findLayer(L"A");
    drawing().setDictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS", {{1, L"0"}, {1, L"a"}});
    drawing().setCurrentLayer(index);
    model.bringUpToDate();
    const int before = model.rowCount();
    ASSERT_TRUE(model.setData(model.index(row(L"A"), LayersModel::Name), QStringLiteral(" B "), Qt::EditRole));
    EXPECT_EQ(model.rowCount(), before);
    EXPECT_FALSE(drawing().findLayer(L"A"));
    EXPECT_EQ(drawing().findLayer(L"B"), index);
    EXPECT_EQ(open(id)->layer(), L"B");
    EXPECT_EQ(drawing().currentLayer(), index);
    EXPECT_EQ(drawing().dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS"), (DataItems{{1, L"0"}, {1, L"B"}}));
    EXPECT_EQ(drawing().component<UndoHistory>().undo(), 1u);
    model.bringUpToDate();
    EXPECT_GE(row(L"A"), 0);
    EXPECT_EQ(open(id)->layer(), L"A");
}

TEST_F(LayersTest, ANameThatALayerCannotTakeIsRefusedWithAWord)
{
    drawing().ensureLayer(L"A");
    model.bringUpToDate();
    QSignalSpy refusals(&model, &LayersModel::refused);
    EXPECT_FALSE(model.rename(row(L"A"), "0"));
    EXPECT_FALSE(model.rename(row(L"0"), "Zero"));
    EXPECT_FALSE(model.rename(row(L"A"), "a:b"));
    EXPECT_EQ(refusals.count(), 3);
    EXPECT_FALSE(model.rename(row(L"A"), "A")) << "nothing to do";
    EXPECT_EQ(refusals.count(), 3);
    EXPECT_FALSE(model.flags(model.index(row(L"0"), LayersModel::Name)) & Qt::ItemIsEditable);
    EXPECT_THAT(steps, IsEmpty());
}

TEST_F(LayersTest, NothingChangesWhileADialogHoldsTheDrawing)
{
    session.lockDocument();
    EXPECT_FALSE(model.setColor(0, 3));
    EXPECT_EQ(model.layer(0).color, drawing().layer(model.layerOf(0)).color);
    EXPECT_NE(drawing().layer(0).color, 3);
    session.unlockDocument();
    EXPECT_TRUE(model.setColor(0, 3));
    EXPECT_EQ(drawing().layer(0).color, 3);
}

TEST_F(LayersTest, AFilterLeavesTheLayersWithItsLetters)
{
    drawing().ensureLayer(L"Streets");
    drawing().ensureLayer(L"Houses");
    model.bringUpToDate();
    PanelOrder order(model);
    order.setFilter(" strEE ");
    EXPECT_THAT(column(order, LayersModel::Name), ElementsAre("Streets"));
    order.setFilter("");
    EXPECT_EQ(order.rowCount(), model.rowCount());
}

TEST_F(LayersTest, NamesSortAsPeopleCount)
{
    for (const wchar_t *name : {L"M10", L"M2", L"m1"})
        drawing().ensureLayer(name);
    model.bringUpToDate();
    PanelOrder order(model);
    order.setFilter("m");
    order.sort(LayersModel::Name);
    EXPECT_THAT(column(order, LayersModel::Name), ElementsAre("m1", "M2", "M10"));
}

// --- Network --------------------------------------------------------------------------------------------------------

class NetworkModelsTest : public PanelModelTest {
protected:
    NetworkModelsTest() { watch.setDrawing(&drawing()); }

    AcDbEntity &node(const std::wstring &name, double x, double y)
    {
        auto made = std::make_unique<PointEntity>(AcGePoint3d(x, y));
        AcDbEntity &entity = *made;
        drawing().append(std::move(made));
        drawing().setData(entity, kNodeKey, itemsOf(NodeData{L"node " + name, name}));
        return entity;
    }
    AcDbEntity &section(const std::wstring &name, const std::wstring &from, const std::wstring &to, double length)
    {
        auto made = std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(30, 40));
        AcDbEntity &entity = *made;
        drawing().append(std::move(made));
        drawing().setData(entity, kSectionKey,
                          itemsOf(SectionData{L"section " + name, name, length, L"node " + from, L"node " + to}));
        return entity;
    }
    void bringUpToDate()
    {
        for (NetworkModel *model : {static_cast<NetworkModel *>(&sections), static_cast<NetworkModel *>(&nodes),
                                    static_cast<NetworkModel *>(&checks)})
            model->bringUpToDate();
    }

    NetworkWatch watch;
    SectionsModel sections{watch};
    NodesModel nodes{watch};
    ChecksModel checks{watch};
};

TEST_F(NetworkModelsTest, SectionsTellTheirNodesAndLength)
{
    QAbstractItemModelTester sectionsTester(&sections), nodesTester(&nodes), checksTester(&checks);
    node(L"A", 0, 0);
    node(L"B", 30, 40);
    section(L"S1", L"A", L"B", 51.25);
    bringUpToDate();
    ASSERT_EQ(sections.rowCount(), 1);
    EXPECT_EQ(cell(sections, 0, SectionsModel::From), "A");
    EXPECT_EQ(cell(sections, 0, SectionsModel::To), "B");
    EXPECT_EQ(cell(sections, 0, SectionsModel::Length), "51.25");
    EXPECT_THAT(column(nodes, NodesModel::In), ElementsAre("0", "1"));
    EXPECT_THAT(column(nodes, NodesModel::Out), ElementsAre("1", "0"));
    EXPECT_EQ(checks.count(), 0u);
}

TEST_F(NetworkModelsTest, ChecksFindLooseEndsUnnamedNodesAndSectionsWithoutALength)
{
    node(L"A", 0, 0);
    node(L" ", 5, 5);
    section(L"S1", L"A", L"none", 10.0);
    section(L"S2", L"A", L"A", ZEMGis::Topology::kUnknownValue);
    bringUpToDate();
    EXPECT_EQ(checks.count(NetworkTrouble::LooseEnd), 1u);
    EXPECT_EQ(checks.count(NetworkTrouble::UnnamedNode), 1u);
    EXPECT_EQ(checks.count(NetworkTrouble::NoLength), 1u);
    // The place of a loose end is that end.
    for (int row = 0; row < checks.rowCount(); ++row)
        if (checks.finding(row).trouble == NetworkTrouble::LooseEnd) {
            EXPECT_EQ(checks.finding(row).place.x, 30.0);
            EXPECT_EQ(checks.extentsOf({row}).maxY, 40.0);
        }
    PanelOrder order(checks);
    checks.setShown(NetworkTrouble::UnnamedNode);
    order.filterAgain();
    EXPECT_EQ(order.rowCount(), 1);
}

TEST_F(NetworkModelsTest, OneChangedNameIsOneChangedRow)
{
    node(L"A", 0, 0);
    AcDbEntity &second = section(L"S1", L"A", L"A", 10.0);
    section(L"S2", L"A", L"A", 20.0);
    bringUpToDate();
    QSignalSpy resets(&sections, &QAbstractItemModel::modelReset),
        inserts(&sections, &QAbstractItemModel::rowsInserted), removes(&sections, &QAbstractItemModel::rowsRemoved),
        changes(&sections, &QAbstractItemModel::dataChanged);
    drawing().setData(second, kSectionKey, itemsOf(SectionData{L"section S1", L"X", 10.0, L"node A", L"node A"}));
    bringUpToDate();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toModelIndex().row(), changes[0][1].toModelIndex().row());
    EXPECT_EQ(cell(sections, 0, SectionsModel::Name), "X");
    drawing().erase(second);
    bringUpToDate();
    EXPECT_EQ(removes.count(), 1);
    EXPECT_THAT(column(sections, SectionsModel::Name), ElementsAre("S2"));
    EXPECT_EQ(resets.count() + inserts.count(), 0);
}

TEST_F(NetworkModelsTest, ASectionOrNodeThatChangesInItselfIsToldAlone)
{
    AcDbEntity &first = node(L"A", 0, 0);
    AcDbEntity &pipe = section(L"S1", L"A", L"A", 10.0);
    const auto since = [&](const std::function<void()> &change) {
        const std::uint64_t before = watch.revision();
        change();
        return watch.changedSince(before);
    };
    const auto rename = [&](const std::wstring &name, const std::wstring &to) {
        return [&, name, to] {
            drawing().setData(pipe, kSectionKey, itemsOf(SectionData{L"section S1", name, 10.0, L"node A", to}));
        };
    };
    const auto move = [&](AcDbEntity &entity) {
        return [&] { ASSERT_TRUE(moveEntity(drawing(), entity, {1.0, 0.0, 0.0})); };
    };
    EXPECT_THAT(since(rename(L"X", L"node A")), Optional(ElementsAre(&pipe)));
    EXPECT_THAT(since(move(pipe)), Optional(Each(&pipe)));
    EXPECT_THAT(since(move(first)), Optional(Each(&first)));
    EXPECT_THAT(since([&] { line(0, 0, 1, 1); }), Optional(IsEmpty()));
    EXPECT_EQ(since(rename(L"X", L"node none")), std::nullopt) << "it hangs elsewhere";
    EXPECT_EQ(since([&] {
                  drawing().setData(first, kNodeKey, itemsOf(NodeData{L"node A", L"B"}));
              }),
              std::nullopt)
        << "sections show the name";
    EXPECT_EQ(since([&] { drawing().erase(pipe); }), std::nullopt);
    EXPECT_EQ(since([&] { node(L"C", 1, 1); }), std::nullopt);
    EXPECT_EQ(since([&] {
                  for (int i = 0; i < 1000; ++i)
                      move(first)();
              }),
              std::nullopt)
        << "too many to tell one by one";
}

TEST_F(NetworkModelsTest, TablesThatTookUpChangesOneByOneAreThoseOfAFreshPanel)
{
    std::vector<AcDbEntity *> pipes, places;
    for (const wchar_t *name : {L"A", L"B", L" ", L"C"})
        places.push_back(&node(name, 1.0, 2.0));
    for (const wchar_t *name : {L"S1", L"S2", L"S3"})
        pipes.push_back(&section(name, L"A", name[1] == L'2' ? L"none" : L"B", 5.0));
    bringUpToDate();
    auto &log = drawing().component<ChangeLog>();
    const auto step = [&](const std::function<void()> &work) {
        log.begin();
        work();
        log.keepForGood();
    };
    step([] {});
    const std::size_t ground = log.undoCount();
    std::mt19937 random(11);
    for (int i = 0; i < 300; ++i) {
        AcDbEntity &pipe = *pipes[random() % pipes.size()], &place = *places[random() % places.size()];
        const std::wstring name = std::to_wstring(random() % 5);
        const auto changeData = [&](const std::function<void(SectionData &)> &change) {
            auto data = sectionDataOf(drawing().data(pipe, kSectionKey).value()).value();
            change(data);
            step([&] { drawing().setData(pipe, kSectionKey, itemsOf(data)); });
        };
        switch (random() % 6) {
        case 0:
            step([&] { moveEntity(drawing(), pipe, {1.0, 2.0, 0.0}); });
            break;
        case 1:
            step([&] { moveEntity(drawing(), place, {2.0, 1.0, 0.0}); });
            break;
        case 2:
            changeData([&](SectionData &data) { data.name = name; });
            break;
        case 3:
            changeData([&](SectionData &data) { data.length = name == L"0" ? ZEMGis::Topology::kUnknownValue : 7.0; });
            break;
        case 4:
            changeData([&](SectionData &data) { data.endNode = name == L"0" ? L"node none" : L"node B"; });
            break;
        default:
            if (log.undoCount() > ground)
                log.undo();
            break;
        }
        bringUpToDate();
        NetworkWatch freshWatch;
        freshWatch.setDrawing(&drawing());
        SectionsModel freshSections{freshWatch};
        NodesModel freshNodes{freshWatch};
        ChecksModel freshChecks{freshWatch};
        const auto same = [&](NetworkModel &mine, NetworkModel &fresh) {
            fresh.bringUpToDate();
            QList<int> all;
            for (int row = 0; row < std::max(mine.rowCount(), fresh.rowCount()); ++row)
                all.append(row);
            ASSERT_EQ(mine.rowCount(), fresh.rowCount());
            EXPECT_EQ(asText(mine, all), asText(fresh, all)) << i;
        };
        same(sections, freshSections);
        same(nodes, freshNodes);
        same(checks, freshChecks);
        freshWatch.setDrawing(nullptr);
    }
}

TEST_F(NetworkModelsTest, LineworkThatIsNoSectionIsNoNewsForTheTables)
{
    section(L"S1", L"A", L"B", 10.0);
    bringUpToDate();
    const auto before = watch.revision();
    for (int i = 0; i < 100; ++i)
        line(0, 0, i, i);
    EXPECT_EQ(watch.revision(), before);
}

TEST_F(NetworkModelsTest, AnotherDrawingShowsItsOwnNetwork)
{
    section(L"S1", L"A", L"B", 10.0);
    bringUpToDate();
    for (NetworkModel *model : {static_cast<NetworkModel *>(&sections), static_cast<NetworkModel *>(&nodes),
                                static_cast<NetworkModel *>(&checks)})
        model->reset();
    watch.setDrawing(nullptr);
    session.setDrawing(Drawing::createNew());
    watch.setDrawing(&drawing());
    bringUpToDate();
    EXPECT_EQ(sections.rowCount(), 0);
    EXPECT_EQ(checks.rowCount(), 0);
}

// --- Properties -----------------------------------------------------------------------------------------------------

class PropertiesTest : public PanelModelTest {
protected:
    QString value(const char *caption)
    {
        const QString wanted = QString::fromStdWString(uiText(caption));
        for (int row = 0; row < model.rowCount(); ++row)
            if (cell(model, row, PropertiesModel::Property) == wanted)
                return cell(model, row, PropertiesModel::Value);
        return {};
    }

    PropertiesModel model{changer()};
};

TEST_F(PropertiesTest, OneEntityTellsKindLayerHandleAndShape)
{
    QAbstractItemModelTester tester(&model);
    const AcDbObjectId id = rectangle(0, 0, 200, 100);
    model.show(&drawing(), {id});
    EXPECT_EQ(value("ui.property.kind"), "Polyline");
    EXPECT_EQ(value("ui.property.layer"), "0");
    EXPECT_EQ(value("ui.property.color"), "By layer");
    EXPECT_EQ(value("ui.property.handle").toStdWString(), handleText(*open(id)));
    EXPECT_EQ(value("ui.property.vertices"), "4");
    EXPECT_EQ(value("ui.property.length"), "600.0000");
    EXPECT_EQ(value("ui.property.area"), "20000.0000");
    EXPECT_EQ(value("ui.property.hectares"), "2.0000");
}

TEST_F(PropertiesTest, AnArcTellsItsRadiusAndLength)
{
    const AcDbObjectId id = drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(1, 2), 10.0, 0.0, std::numbers::pi));
    model.show(&drawing(), {id});
    EXPECT_EQ(value("ui.property.center"), "1.0000; 2.0000");
    EXPECT_EQ(value("ui.property.radius"), "10.0000");
    EXPECT_EQ(value("ui.property.length"), "31.4159");
    EXPECT_EQ(value("ui.property.area"), QString()) << "an open curve encloses nothing";
}

TEST_F(PropertiesTest, SeveralEntitiesTellWhatTheyHaveInCommonAndTheirSums)
{
    const AcDbObjectId a = line(0, 0, 30, 40), b = onLayer(line(0, 0, 0, 10), L"A");
    model.show(&drawing(), {a, b});
    EXPECT_EQ(value("ui.property.count"), "2");
    EXPECT_EQ(value("ui.property.layer"), "(various)");
    EXPECT_EQ(value("ui.property.color"), "By layer");
    EXPECT_EQ(value("ui.property.totalLength"), "60.0000");
    EXPECT_FALSE(model.commonLayer());
    EXPECT_EQ(model.commonColor(), 256);
}

TEST_F(PropertiesTest, LayerAndColourOfAllChangeInOneStepThatUndoTakesBack)
{
    const AcDbObjectId a = line(0, 0, 30, 40), b = onLayer(line(0, 0, 0, 10), L"A");
    const std::size_t layer = *drawing().findLayer(L"A");
    model.show(&drawing(), {a, b});
    EXPECT_TRUE(model.setLayer(layer));
    EXPECT_EQ(layerIndexOf(*open(a)), layer);
    EXPECT_TRUE(model.setColor(5));
    EXPECT_EQ(open(b)->colorIndex(), 5);
    EXPECT_THAT(steps, ElementsAre("ui.property.step.layer", "ui.property.step.color"));
    EXPECT_EQ(drawing().component<UndoHistory>().undo(2), 2u);
    EXPECT_NE(layerIndexOf(*open(a)), layer);
    EXPECT_EQ(open(b)->colorIndex(), 256);
    EXPECT_FALSE(model.setColor(0)) << "no colour of its own";
}

TEST_F(PropertiesTest, WhatLiesOnALockedLayerIsLeftAsItIsAndTold)
{
    const AcDbObjectId free = line(0, 0, 30, 40), locked = onLayer(line(0, 0, 0, 10), L"A");
    Layer layer = drawing().layer(*drawing().findLayer(L"A"));
    layer.locked = true;
    drawing().setLayer(*drawing().findLayer(L"A"), layer);
    model.show(&drawing(), {free, locked});
    QSignalSpy left(&model, &PropertiesModel::leftOut);
    EXPECT_TRUE(model.setColor(5));
    EXPECT_EQ(open(free)->colorIndex(), 5);
    EXPECT_EQ(open(locked)->colorIndex(), 256);
    EXPECT_EQ(left.count(), 1);
    model.show(&drawing(), {locked});
    EXPECT_FALSE(model.setColor(4));
    EXPECT_EQ(open(locked)->colorIndex(), 256);
}

TEST_F(PropertiesTest, LookingAtAnEntityWithoutAHandleGivesItNone)
{
    LoadResult loaded = Drawing::read("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n5\n21\n5\n"
                                      "0\nENDSEC\n0\nEOF\n");
    ASSERT_TRUE(loaded.drawing);
    session.setDrawing(std::move(loaded.drawing));
    AcDbEntity &entity = *drawing().modelSpace().entities().front();
    const std::string before = drawing().write();
    model.show(&drawing(), {idOf(entity)});
    EXPECT_EQ(value("ui.property.kind"), "Line");
    EXPECT_FALSE(drawing().isModified());
    EXPECT_EQ(drawing().write(), before);
}

TEST_F(PropertiesTest, ASectionTellsItsNetworkInWords)
{
    auto made = std::make_unique<PointEntity>(AcGePoint3d(0, 0));
    AcDbEntity &node = *made;
    drawing().append(std::move(made));
    drawing().setData(node, kNodeKey, itemsOf(NodeData{L"{A}", L"M1"}));
    const AcDbObjectId id = line(0, 0, 30, 40);
    drawing().setData(*open(id), kSectionKey, itemsOf(SectionData{L"{S}", L"D7", 0.0, L"{A}", L"{none}"}));
    model.show(&drawing(), {id});
    EXPECT_EQ(value("ui.property.section"), "D7");
    EXPECT_EQ(value("ui.property.from"), "M1");
    EXPECT_EQ(value("ui.property.to"), QString(QChar(0x2013)));
    EXPECT_EQ(value("ui.property.sectionLength"), "50.0000");
}

TEST_F(PropertiesTest, AnErasedEntityIsNotTold)
{
    const AcDbObjectId id = line(0, 0, 1, 1);
    drawing().erase(*open(id));
    model.show(&drawing(), {id});
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.layerRow(), -1);
}

// --- All tables -----------------------------------------------------------------------------------------------------

TEST_F(PanelModelTest, CopiedTextHasHeadsTabsAndTheLocalesDecimalSeparator)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Croatian, QLocale::Croatia));
    NetworkWatch watch;
    watch.setDrawing(&drawing());
    SectionsModel model(watch);
    const AcDbObjectId id = line(0, 0, 30, 40);
    drawing().setData(*open(id), kSectionKey, itemsOf(SectionData{L"{S}", L"D\t7", 12345.678, L"", L""}));
    model.bringUpToDate();
    const QString text = asText(model, {0});
    QLocale::setDefault(before);
    EXPECT_EQ(text.toStdString(), "Section\tFrom\tTo\tLength\nD 7\t\t\t12345,68\n");
}

TEST_F(PanelModelTest, HeadsFollowTheLanguage)
{
    LayersModel model{changer()};
    EXPECT_EQ(model.headerData(LayersModel::Name, Qt::Horizontal, Qt::DisplayRole).toString(), "Name");
    Services::instance().start({.language = "hr"});
    EXPECT_EQ(model.headerData(LayersModel::Name, Qt::Horizontal, Qt::DisplayRole).toString(), "Ime");
    EXPECT_TRUE(model.headerData(LayersModel::On, Qt::Horizontal, Qt::ToolTipRole)
                    .toString()
                    .startsWith(QStringLiteral("Uključen")));
    QSignalSpy heads(&model, &QAbstractItemModel::headerDataChanged);
    model.languageChanged();
    EXPECT_EQ(heads.count(), 1);
}

} // namespace
} // namespace velmor
