#include "contracts/CoreServices.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"

#include <gmock/gmock.h>

#include <set>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;
using ZEMGis::Data::CDataRW;
using ZEMGis::Utility::CUtility;

class AttachedData : public testing::Test {
protected:
    AttachedData()
    {
        setWorkingDrawing(drawing.get());
        id = drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 0)));
    }
    ~AttachedData() override { setWorkingDrawing(nullptr); }

    std::unique_ptr<Drawing> drawing = Drawing::createNew();
    AcDbObjectId id;
};

TEST_F(AttachedData, WhatWasWrittenIsReadInItsKind)
{
    for (const CDataBox &written : {CDataBox(L"{A-1}"), CDataBox(2.5), CDataBox(-3),
                                    CDataBox(CStringArray{L"1F", L"20"}), CDataBox(CStringArray{})}) {
        {
            CZEMCEntityPtr entity(id, AcDb::kForWrite);
            EXPECT_NE(CDataRW::Write(L"SLIV_ISLANDS", entity, written, nullptr), 0);
        }
        CZEMCEntityPtr entity(id, AcDb::kForRead);
        CDataBox read(9);
        EXPECT_NE(CDataRW::Read(L"SLIV_ISLANDS", entity, read, 0, nullptr), 0);
        EXPECT_EQ(read, written);
    }
}

TEST_F(AttachedData, AnAbsentKeyLeavesTheBoxNull)
{
    CZEMCEntityPtr entity(id, AcDb::kForRead);
    CDataBox box(9);

    EXPECT_EQ(CDataRW::Read(L"SLIV_MAIN_AREA", entity, box, 0, nullptr), 0);
    EXPECT_FALSE(box.IsNotNull());
}

TEST_F(AttachedData, WritingNeedsAnEntityThatIsOpenForWriting)
{
    CZEMCEntityPtr reading(id, AcDb::kForRead), closed;

    EXPECT_EQ(CDataRW::Write(L"SLIV_MAIN_AREA", reading, CDataBox(L"x"), nullptr), 0);
    EXPECT_EQ(CDataRW::Write(L"SLIV_MAIN_AREA", closed, CDataBox(L"x"), nullptr), 0);
    CDataBox box;
    EXPECT_EQ(CDataRW::Read(L"SLIV_MAIN_AREA", reading, box, 0, nullptr), 0);
    EXPECT_EQ(CDataRW::Read(L"SLIV_MAIN_AREA", closed, box, 0, nullptr), 0);
}

TEST_F(AttachedData, AnEmptyBoxTakesTheDataAway)
{
    CZEMCEntityPtr entity(id, AcDb::kForWrite);
    CDataRW::Write(L"SLIV_MAIN_AREA", entity, CDataBox(L"x"), nullptr);
    CDataRW::Write(L"SLIV_MAIN_AREA", entity, CDataBox(), nullptr);

    EXPECT_TRUE(drawing->dataKeys(*entity.get()).empty());
}

TEST_F(AttachedData, EveryCallIsInTheJournalWithItsArguments)
{
    Journal::instance().setRecording(true);
    CZEMCEntityPtr entity(id, AcDb::kForWrite);
    CDataBox box;
    CDataRW::Write(L"SLIV_ISLANDS", entity, CDataBox(CStringArray{L"a", L"b"}), nullptr);
    CDataRW::Read(L"SLIV_ISLANDS", entity, box, 0, nullptr);
    Journal::instance().setRecording(false);

    const auto &entries = Journal::instance().entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].operation, "CDataRW::Write");
    EXPECT_EQ(entries[0].arguments, (std::vector<std::string>{"SLIV_ISLANDS", journalText(id), "[a,b]"}));
    EXPECT_EQ(entries[1].operation, "CDataRW::Read");
}

TEST_F(AttachedData, TagsOfABlocksAttributesAreAppendedInOrder)
{
    BlockRecord &block = drawing->addBlock(L"LABEL");
    for (const wchar_t *tag : {L"ATT1", L"ATT3", L"ATT2"})
        drawing->append(std::make_unique<AttributeDefinitionEntity>(tag, L"", TextShape{}), block);
    drawing->append(std::make_unique<AcDbLine>(), block);
    CStringArray tags{L"first"};

    EXPECT_EQ(CUtility::GetAttributesFromBlockDef(idOf(block), tags), 3);
    EXPECT_EQ(tags, (CStringArray{L"first", L"ATT1", L"ATT3", L"ATT2"}));
    EXPECT_EQ(CUtility::GetAttributesFromBlockDef({}, tags), 0);
    EXPECT_EQ(CUtility::GetAttributesFromBlockDef(id, tags), 0) << "an entity is no definition";
    EXPECT_EQ(tags.size(), 4u);
}

TEST(Guid, IsRandomOfVersionFourInUpperCaseAndBraces)
{
    std::set<std::wstring> seen;
    for (int i = 0; i < 1000; ++i) {
        const std::wstring guid = CUtility::CreateGUID();
        ASSERT_EQ(guid.size(), 38u);
        EXPECT_EQ(guid.front(), L'{');
        EXPECT_EQ(guid.back(), L'}');
        EXPECT_EQ(guid[15], L'4');
        EXPECT_NE(std::wstring(L"89AB").find(guid[20]), std::wstring::npos);
        for (std::size_t at = 1; at < 37; ++at) {
            const bool dash = at == 9 || at == 14 || at == 19 || at == 24;
            EXPECT_NE(std::wstring(dash ? L"-" : L"0123456789ABCDEF").find(guid[at]), std::wstring::npos) << at;
        }
        EXPECT_TRUE(seen.insert(guid).second);
    }
}

TEST(DataConfiguration, AnswersForAnyKeyAndDoesNothing)
{
    EXPECT_NE(ZEMGis::Data::CDataConfiguration::Instance()->GetDataDefinitionByID(L"SLIV_LABEL"), nullptr);
    EXPECT_NE(ZEMGis::System::CSystemManager::Instance()->GetActiveSystem(), nullptr);
}

} // namespace
} // namespace velmor
