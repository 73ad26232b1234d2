// The drawing alone carries the network: what was imported comes back out of the drawing file.
#include "tests/host/network/NetworkFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;

/// Everything that the contract tells of a network, a line for each section.
std::vector<std::wstring> described(const Network &network)
{
    const auto text = [](double value) { return CDataBox(value).operator std::wstring(); };
    std::vector<std::wstring> lines;
    for (const auto &section : network.sections())
        lines.push_back(section->GetGuid() + L" " + section->GetName() + L" " + std::to_wstring(section->GetType()) +
                        L" " + text(section->GetLength2D()) + L" " + section->GetHandleText() + L" " +
                        section->GetStartingNode()->GetName() + L" " + section->GetEndingNode()->GetName() + L" " +
                        text(section->GetStartPoint().x) + L" " + text(section->GetEndPoint().y));
    return lines;
}

constexpr char kNetwork[] = "[OPTIONS]\nFLOW_UNITS CFS\n[JUNCTIONS]\nŠ-1 10\nB 9\n[OUTFALLS]\nC 8 FREE\n"
                            "[CONDUITS]\n\"D 1\" Š-1 B 12.5 0.01\nD2 B C 0 0.01\n"
                            "[COORDINATES]\nŠ-1 583195.159999074 0.1\nB 10 0\nC 10 20\n"
                            "[VERTICES]\nD2 15 0\nD2 15 20\n[POLYGONS]\nS1 0 0\nS1 10 0\nS1 10 10\n";

/// A drawing of the oldest version, which has neither light-weight polylines nor dictionaries.
constexpr char kOldDrawing[] = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                               "0\nLINE\n8\n0\n10\n0.0\n20\n0.0\n11\n1.0\n21\n1.0\n0\nENDSEC\n0\nEOF\n";

TEST(NetworkInAFile, ComesBackWholeFromADrawingFile)
{
    const auto drawing = Drawing::createNew();
    ASSERT_TRUE(importInpText(*drawing, kNetwork, "test.inp", {.withPolygons = true}));
    const auto before = described(drawing->component<Network>());
    ASSERT_EQ(before.size(), 2u);

    const auto loaded = Drawing::read(drawing->write());

    ASSERT_TRUE(loaded.drawing) << loaded.message;
    EXPECT_EQ(described(loaded.drawing->component<Network>()), before);
    EXPECT_EQ(loaded.drawing->component<Network>().upstreamOf(L"C").size(), 2u);
}

TEST(NetworkInAFile, AnOldDrawingGetsOldPolylinesAndKeepsItsNetworkToo)
{
    const auto old = Drawing::read(kOldDrawing);
    ASSERT_TRUE(old.drawing) << old.message;
    ASSERT_TRUE(old.drawing->isR12());
    ASSERT_TRUE(importInpText(*old.drawing, kNetwork, "test.inp", {.withPolygons = true}));
    const auto before = described(old.drawing->component<Network>());
    for (const AcDbEntity *entity : old.drawing->modelSpace().entities())
        EXPECT_NE(kindOf(*entity), EntityKind::LwPolyline);

    const auto loaded = Drawing::read(old.drawing->write());

    ASSERT_TRUE(loaded.drawing) << loaded.message;
    EXPECT_TRUE(loaded.drawing->isR12());
    EXPECT_EQ(described(loaded.drawing->component<Network>()), before);
}

TEST(NetworkInAFile, PropertiesOfEveryKindComeBack)
{
    const std::pair<const wchar_t *, CDataBox> values[] = {
        {L"TEXT", CDataBox(L"{A-1} č")}, {L"REAL", CDataBox(0.1)},
        {L"WHOLE", CDataBox(-7)},        {L"LIST", CDataBox(CStringArray{L"1F", L"", L"20"})},
        {L"EMPTY", CDataBox(L"")},       {L"NONE", CDataBox(CStringArray{})},
    };
    for (const std::string &text : {Drawing::createNew()->write(), std::string(kOldDrawing)}) {
        const auto first = Drawing::read(text);
        ASSERT_TRUE(first.drawing);
        ASSERT_TRUE(importInpText(*first.drawing, kNetwork, "test.inp"));
        const auto section = first.drawing->component<Network>().sectionByName(L"D2");
        for (const auto &[tag, value] : values)
            EXPECT_NE(section->SetPropertyData(tag, value), 0);

        const auto second = Drawing::read(first.drawing->write());

        ASSERT_TRUE(second.drawing);
        const auto again = second.drawing->component<Network>().sectionByName(L"D2");
        ASSERT_TRUE(again);
        for (const auto &[tag, value] : values) {
            CDataBox box;
            again->GetPropertyData(tag, box);
            EXPECT_EQ(box, value) << first.drawing->version();
        }
    }
}

} // namespace
} // namespace velmor
