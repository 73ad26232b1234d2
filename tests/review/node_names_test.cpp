// The name that an area takes from the nodes of its sections.
#include "review/NodeNames.h"

#include "contracts/NetworkTopology.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

using namespace ZEMGis;

namespace {

class CNamedNode final : public Topology::CNode {
public:
    explicit CNamedNode(std::wstring name) : m_strName(std::move(name)) {}
    AcDbObjectId GetObjectId() const override { return {}; }
    void DrawTemporary(int, int) override {}
    std::wstring GetGuid() const override { return m_strName; }
    std::wstring GetName() const override { return m_strName; }
    int GetPropertyData(const wchar_t *, Data::CDataBox &) const override { return 0; }
    int SetPropertyData(const wchar_t *, const Data::CDataBox &) override { return 0; }

private:
    std::wstring m_strName;
};

using NodePtr = boost::shared_ptr<Topology::CNode>;

class CSectionBetween final : public Topology::CSection {
public:
    CSectionBetween(NodePtr start, NodePtr end) : m_start(std::move(start)), m_end(std::move(end)) {}
    AcDbObjectId GetObjectId() const override { return {}; }
    void DrawTemporary(int, int) override {}
    std::wstring GetGuid() const override { return L"{section}"; }
    std::wstring GetName() const override { return L"1"; } // names of sections have no say
    int GetPropertyData(const wchar_t *, Data::CDataBox &) const override { return 0; }
    int SetPropertyData(const wchar_t *, const Data::CDataBox &) override { return 0; }
    Topology::enmSectionType GetType() const override { return Topology::kSectionStraight; }
    double GetLength2D() const override { return 1.0; }
    NodePtr GetStartingNode() const override { return m_start; }
    NodePtr GetEndingNode() const override { return m_end; }
    AcGePoint3d GetStartPoint() const override { return {}; }
    AcGePoint3d GetEndPoint() const override { return {}; }

private:
    NodePtr m_start, m_end;
};

NodePtr node(const wchar_t *name)
{
    return boost::make_shared<CNamedNode>(name);
}

void add(Selection::CSelectionSet &set, NodePtr start, NodePtr end)
{
    set.m_sections.push_back(boost::make_shared<CSectionBetween>(std::move(start), std::move(end)));
}

std::wstring nameOf(const wchar_t *start, const wchar_t *end)
{
    Selection::CSelectionSet set;
    add(set, node(start), node(end));
    return NameFromNodes(set);
}

TEST(FirstDigitRunOfAName, IsTheFirstUnbrokenRunOfDigits)
{
    EXPECT_EQ(FirstDigitRun(L"MH12a3"), L"12");
    EXPECT_EQ(FirstDigitRun(L"7"), L"7");
    EXPECT_EQ(FirstDigitRun(L"007-8"), L"007");
    EXPECT_EQ(FirstDigitRun(L"a 1 22"), L"1");
    EXPECT_EQ(FirstDigitRun(L"manhole 345"), L"345");
}

TEST(FirstDigitRunOfAName, IsEmptyWithoutDigits)
{
    EXPECT_EQ(FirstDigitRun(L""), L"");
    EXPECT_EQ(FirstDigitRun(L"Manhole"), L"");
    EXPECT_EQ(FirstDigitRun(L"MH-\u0663\u00b2"), L"") << "only the ten decimal digits count";
}

TEST(NameFromNodesOfSections, IsTheWholeNameOfTheNodeWithTheLowestNumber)
{
    Selection::CSelectionSet set;
    add(set, node(L"MH30"), node(L"MH4b"));
    add(set, node(L"MH200"), node(L"MH10"));
    EXPECT_EQ(NameFromNodes(set), L"MH4b");
}

TEST(NameFromNodesOfSections, ComparesNumbersNotTexts)
{
    EXPECT_EQ(nameOf(L"MH10", L"MH9"), L"MH9");
    EXPECT_EQ(nameOf(L"MH010", L"MH9"), L"MH9");
}

TEST(NameFromNodesOfSections, OfNodesWithTheSameNumberTheLaterOneCounts)
{
    EXPECT_EQ(nameOf(L"A5", L"B5"), L"B5");
    EXPECT_EQ(nameOf(L"A5", L"B005x"), L"B005x");
    Selection::CSelectionSet set;
    add(set, node(L"A5"), node(L"B9"));
    add(set, node(L"C5"), node(L"D9"));
    EXPECT_EQ(NameFromNodes(set), L"C5");
}

TEST(NameFromNodesOfSections, MissingSectionsAndNodesArePassedOver)
{
    Selection::CSelectionSet set;
    set.m_sections.emplace_back();
    add(set, nullptr, node(L"MH8"));
    add(set, node(L"MH9"), nullptr);
    add(set, nullptr, nullptr);
    EXPECT_EQ(NameFromNodes(set), L"MH8");
}

TEST(NameFromNodesOfSections, NodesWithoutDigitsDontCount)
{
    EXPECT_EQ(nameOf(L"Outfall", L"MH3"), L"MH3");
    EXPECT_EQ(nameOf(L"Outfall", L"Well"), L"");
    EXPECT_EQ(NameFromNodes(Selection::CSelectionSet()), L"");
}

TEST(NameFromNodesOfSections, ANumberBeyondTheRangeIsTheHighest)
{
    EXPECT_EQ(nameOf(L"MH99999999999999", L"MH2000000000"), L"MH2000000000");
}

} // namespace
