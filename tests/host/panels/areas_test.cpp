// The table of catchment areas: values, order, filter, sums, and that it reads only what concerns it.
#include "host/sewage/AreasModel.h"
#include "tests/host/sewage/AreaWorld.h"

#include "host/services/Services.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace velmor {
namespace {

using testing::ElementsAre;

class AreasModelTest : public test::AreaWorld {
protected:
    void SetUp() override
    {
        Services::instance().start({.language = "en"});
        test::AreaWorld::SetUp();
        model.setDrawing(&drawing());
    }
    void TearDown() override { model.setDrawing(nullptr); }

    test::AreaPtr area(const std::wstring &name, double x, double side, int type, const std::wstring &main = {})
    {
        const double right = x + side;
        const std::wstring wkt = L"POLYGON ((" + std::to_wstring(x) + L" 0, " + std::to_wstring(right) + L" 0, " +
                                 std::to_wstring(right) + L" " + std::to_wstring(side) + L", " + std::to_wstring(x) +
                                 L" " + std::to_wstring(side) + L", " + std::to_wstring(x) + L" 0))";
        auto bag =
            main.empty()
                ? test::bag({{L"CA_GUID", test::CDataBox(L"{" + name + L"}")}, {L"CA_COEFF", test::CDataBox(0.5)}})
                : test::bag({{L"CA_GUID", test::CDataBox(L"{" + name + L"}")},
                             {L"CA_TYPE_ISLAND", test::CDataBox(1)},
                             {L"CA_MAIN_AREA", test::CDataBox(main)}});
        return test::CCatchmentAreaManager::Instance()->CreateCA(wkt.c_str(), name.c_str(), type, bag);
    }
    std::vector<std::string> column(const QAbstractItemModel &of, int column)
    {
        std::vector<std::string> cells;
        for (int row = 0; row < of.rowCount(); ++row)
            cells.push_back(of.index(row, column).data().toString().toStdString());
        return cells;
    }

    AreasModel model;
};

TEST_F(AreasModelTest, AreasComeWithTypeHectaresAndShares)
{
    QAbstractItemModelTester tester(&model);
    const auto made = area(L"P1", 0, 100, 3);
    ASSERT_TRUE(made);
    const auto section = drawing().component<Network>().sectionByName(L"S1");
    test::CCatchmentAreaManager::Instance()->AssignCA({{section, 0.25}}, made);
    model.bringUpToDate();
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_THAT(column(model, AreasModel::Type), ElementsAre("catchment, household"));
    EXPECT_THAT(column(model, AreasModel::Gross), ElementsAre("1.0000"));
    EXPECT_THAT(column(model, AreasModel::Coefficient), ElementsAre("0.50"));
    EXPECT_THAT(column(model, AreasModel::Sections), ElementsAre("S1 25.0%"));
}

TEST_F(AreasModelTest, TheNetAreaOfAMainAreaIsLessItsIslands)
{
    area(L"P1", 0, 100, 1);
    area(L"O1", 20, 10, 1, L"{P1}");
    test::CDataBox islands{[] {
        CStringArray names;
        names.push_back(L"{O1}");
        return names;
    }()};
    test::CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(L"{P1}")->SetPropertyData(L"CA_ISLANDS", islands);
    model.bringUpToDate();
    EXPECT_THAT(column(model, AreasModel::Net), ElementsAre("0.9900", "0.0100"));
    EXPECT_THAT(column(model, AreasModel::Kind), ElementsAre("main", "island"));
}

TEST_F(AreasModelTest, SumsCountAnAreaOfTwoTypesInEachAndOnceInAll)
{
    area(L"P1", 0, 100, 3);
    area(L"P2", 200, 100, 1);
    model.bringUpToDate();
    const AreaSums sums = model.sumsOf({0, 1});
    EXPECT_EQ(sums.byType[0].areas, 2);
    EXPECT_EQ(sums.byType[1].areas, 1);
    EXPECT_EQ(sums.byType[2].areas, 0);
    EXPECT_DOUBLE_EQ(sums.byType[0].gross, 2.0);
    EXPECT_DOUBLE_EQ(sums.byType[1].gross, 1.0);
    EXPECT_DOUBLE_EQ(sums.all.gross, 2.0);
    EXPECT_EQ(model.sumsOf({1}).all.areas, 1);
}

TEST_F(AreasModelTest, AFilterLooksIntoNamesTypesAndSections)
{
    const auto first = area(L"P1", 0, 100, 2);
    area(L"P2", 200, 100, 1);
    const auto section = drawing().component<Network>().sectionByName(L"S3");
    test::CCatchmentAreaManager::Instance()->AssignCA({{section, 1.0}}, first);
    model.bringUpToDate();
    PanelOrder order(model);
    for (const auto &[text, count] : {std::pair{"p", 2}, {"p2", 1}, {"house", 1}, {"s3", 1}, {"none", 0}}) {
        order.setFilter(QString::fromLatin1(text));
        EXPECT_EQ(order.rowCount(), count) << text;
    }
}

TEST_F(AreasModelTest, ARenamedAreaIsOneChangedRowAndADeletedOneIsRemoved)
{
    const auto first = area(L"P1", 0, 100, 1);
    area(L"P2", 200, 100, 1);
    model.bringUpToDate();
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset), changes(&model, &QAbstractItemModel::dataChanged),
        removes(&model, &QAbstractItemModel::rowsRemoved);
    first->SetName(L"Z");
    model.bringUpToDate();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][1].toModelIndex().row(), 0);
    test::CCatchmentAreaManager::Instance()->DeleteCA(first);
    model.bringUpToDate();
    EXPECT_EQ(removes.count(), 1);
    EXPECT_THAT(column(model, AreasModel::Name), ElementsAre("P2"));
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(AreasModelTest, AreasSortByHectares)
{
    area(L"Large", 0, 200, 1);
    area(L"Small", 500, 10, 1);
    area(L"Middle", 900, 100, 1);
    model.bringUpToDate();
    PanelOrder order(model);
    order.sort(AreasModel::Gross);
    EXPECT_THAT(column(order, AreasModel::Name), ElementsAre("Small", "Middle", "Large"));
}

} // namespace
} // namespace velmor
