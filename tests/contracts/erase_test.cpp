// Taking out what is no entity: block definitions, layers, records of dictionaries.
#include "tests/contracts/ContractsFixture.h"

#include "host/drawing/Uses.h"

#include <gmock/gmock.h>

namespace velmor::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class EraseContract : public ContractsFixture {
protected:
    BlockRecord &block(const wchar_t *name)
    {
        BlockRecord &made = drawing().addBlock(name);
        drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)), made);
        return made;
    }
    AcDbObjectId insert(BlockRecord &definition, BlockRecord &owner)
    {
        return drawing().append(std::make_unique<AcDbBlockReference>(idOf(definition), AcDbBlockReference::Placement{}),
                                owner);
    }
    static Acad::ErrorStatus erase(AcDbObject &object, bool erasing = true)
    {
        AcDbObject *open = nullptr;
        if (const auto status = acdbOpenAcDbObject(open, idOf(object), AcDb::kForWrite); status != Acad::eOk)
            return status;
        const auto status = open->erase(erasing);
        open->close();
        return status;
    }
    std::vector<std::wstring> walkedBlocks()
    {
        AcDbBlockTable *table = nullptr;
        EXPECT_EQ(drawing().getBlockTable(table, AcDb::kForRead), Acad::eOk);
        AcDbBlockTableIterator *iterator = nullptr;
        EXPECT_EQ(table->newIterator(iterator), Acad::eOk);
        std::vector<std::wstring> names;
        for (; !iterator->done(); iterator->step()) {
            AcDbBlockTableRecord *record = nullptr;
            EXPECT_EQ(iterator->getRecord(record, AcDb::kForRead), Acad::eOk);
            if (!record->name().starts_with(L'*'))
                names.push_back(record->name());
            record->close();
        }
        delete iterator;
        table->close();
        return names;
    }
};

TEST_F(EraseContract, ABlockThatNothingRefersToGoesWithItsEntitiesAlsoFromTheFile)
{
    block(L"GOES");
    block(L"STAYS");
    reopen();
    BlockRecord &goes = *drawing().findBlock(L"goes");
    AcDbEntity *inside = goes.entities().front();
    ASSERT_EQ(erase(goes), Acad::eOk);
    EXPECT_TRUE(inside->isErased());
    EXPECT_THAT(walkedBlocks(), ElementsAre(L"STAYS"));
    EXPECT_EQ(drawing().findBlock(L"GOES"), nullptr);
    EXPECT_EQ(erase(goes), Acad::eWasErased);
    reopen();
    EXPECT_THAT(walkedBlocks(), ElementsAre(L"STAYS"));
    EXPECT_THAT(savedText(), Not(HasSubstr("GOES")));
}

TEST_F(EraseContract, ABlockThatAnotherBlockHoldsStaysAndSaysSo)
{
    BlockRecord &inner = block(L"INNER"), &outer = block(L"OUTER");
    insert(inner, outer);
    EXPECT_EQ(erase(inner), Acad::eIsReferenced);
    EXPECT_FALSE(inner.isErased());
    EXPECT_EQ(erase(outer), Acad::eOk);
    EXPECT_EQ(erase(inner), Acad::eOk) << "free since the outer one went";
}

TEST_F(EraseContract, AnErasedBlockComesBackWithWhatWentWithIt)
{
    BlockRecord &gone = block(L"GONE");
    AcDbEntity &alone = entityOf(drawing().append(std::make_unique<PointEntity>(AcGePoint3d(3, 3)), gone));
    drawing().erase(alone);
    ASSERT_EQ(drawing().eraseBlock(gone), Acad::eOk);
    ASSERT_EQ(drawing().eraseBlock(gone, false), Acad::eOk);
    EXPECT_FALSE(gone.entities().front()->isErased());
    EXPECT_TRUE(alone.isErased()) << "it had been erased by itself";
    reopen();
    EXPECT_THAT(walkedBlocks(), ElementsAre(L"GONE"));
}

TEST_F(EraseContract, ModelSpaceNeverGoes)
{
    EXPECT_EQ(erase(drawing().modelSpace()), Acad::eInvalidInput);
}

TEST_F(EraseContract, ALayerInUseStaysAndAFreeOneGoesFromListAndFile)
{
    const std::size_t used = drawing().ensureLayer(L"USED"), spare = drawing().ensureLayer(L"SPARE");
    drawing().setLayerOf(entityOf(line(0, 0, 1, 1)), used);
    reopen();
    EXPECT_FALSE(drawing().eraseLayer(*drawing().findLayer(L"used")));
    EXPECT_FALSE(drawing().eraseLayer(*drawing().findLayer(L"0")));
    EXPECT_TRUE(drawing().eraseLayer(*drawing().findLayer(L"SPARE")));
    EXPECT_FALSE(drawing().eraseLayer(spare)) << "gone already";
    CStringArray names;
    ASSERT_TRUE(CZEMCLayerTablePtr().allLayerNames(names));
    EXPECT_THAT(names, testing::Contains(L"USED"));
    EXPECT_THAT(names, Not(testing::Contains(L"SPARE")));
    reopen();
    EXPECT_TRUE(drawing().findLayer(L"USED"));
    EXPECT_FALSE(drawing().findLayer(L"SPARE"));
    EXPECT_THAT(savedText(), Not(HasSubstr("SPARE")));
}

TEST_F(EraseContract, ALayerThatABlocksContentsAreOnIsInUse)
{
    const std::size_t inside = drawing().ensureLayer(L"INSIDE");
    drawing().setLayerOf(*block(L"B").entities().front(), inside);
    EXPECT_FALSE(drawing().eraseLayer(inside));
    EXPECT_THAT(purgeUnused(drawing()).layers, testing::Contains(L"INSIDE")) << "the block goes first";
}

TEST_F(EraseContract, PurgingTakesNestedBlocksInOneGo)
{
    insert(block(L"INNER"), block(L"OUTER"));
    insert(block(L"USED"), drawing().modelSpace());
    EXPECT_THAT(purgeUnused(drawing()).blocks, testing::UnorderedElementsAre(L"OUTER", L"INNER"));
    EXPECT_THAT(walkedBlocks(), ElementsAre(L"USED"));
}

TEST_F(EraseContract, ARecordOfADictionaryGoesWithItsKey)
{
    drawing().setDictionaryEntry("ZEMX_LSD2", "KEY", {{1, std::wstring(L"text")}});
    drawing().setDictionaryEntry("ZEMX_LSD2", "OTHER", {{1, std::wstring(L"text")}});
    reopen();
    // The record's handle stands in the file under its key.
    const std::string text = savedText();
    const auto key = text.find("\nKEY\n");
    ASSERT_NE(key, std::string::npos);
    const auto value = text.find('\n', key + 5);
    const std::string handle = text.substr(value + 1, text.find('\n', value + 1) - value - 1);
    AcDbObject *record = drawing().findByHandle(std::stoull(handle, nullptr, 16));
    ASSERT_TRUE(record);
    EXPECT_EQ(erase(*record), Acad::eOk);
    EXPECT_FALSE(drawing().dictionaryEntry("ZEMX_LSD2", "KEY"));
    reopen();
    EXPECT_FALSE(drawing().dictionaryEntry("ZEMX_LSD2", "KEY"));
    EXPECT_TRUE(drawing().dictionaryEntry("ZEMX_LSD2", "OTHER"));
}

} // namespace
} // namespace velmor::test
