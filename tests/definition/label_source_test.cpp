// Where labels come from: the block whose place the drawing keeps, the symbol folder, and the catalogue of label types.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"
#include "host/drawing/Entities.h"

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using velmor::Journal;
using velmor::journalText;

namespace fs = std::filesystem;

namespace {

constexpr const char *kLabel = "CCatchmentAreaManager::WriteCatchmentLabel";
constexpr const char *kInsert = "CZEMCDraw::insertBlockDefinition";

class LabelSource : public DefinitionDialogTest {
protected:
    static constexpr const char *kDictionary = "ZEMX_LSD2";

    void keep(const char *name, const std::wstring &value)
    {
        drawing().setDictionaryEntry(kDictionary, std::string("ZEMX_CATCH_DEFINE_") + name, {{1, value}});
    }
    std::wstring kept(const char *name)
    {
        const auto items = drawing().dictionaryEntry(kDictionary, std::string("ZEMX_CATCH_DEFINE_") + name);
        return items && items->size() == 1 ? std::get<std::wstring>(items->front().value) : L"(none)";
    }
    /// A symbol file with the attributes FIRST and SECOND; its path.
    std::wstring makeSymbol(const char *name)
    {
        const auto symbol = velmor::Drawing::createNew();
        for (const wchar_t *tag : {L"FIRST", L"SECOND"})
            symbol->append(std::make_unique<velmor::AttributeDefinitionEntity>(tag, L"", velmor::TextShape{}));
        const fs::path file = m_userFolder / name;
        EXPECT_TRUE(symbol->save(file));
        return ToWide(QString::fromStdString(file.string()));
    }
    /// Saves an island's row and tells the arguments of its own label: area, block, tags.
    std::vector<std::string> islandLabel(CDialogUnderTest &dialog)
    {
        const AcDbObjectId box = addBox(1000, 0, 1010, 10, L"0");
        select(dialog, {L"D1"});
        dialog.type(215, "0.5");
        dialog.addIslandRow(box, 100);
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        Journal::instance().setRecording(true);
        dialog.click(221);
        Journal::instance().setRecording(false);
        const auto labels = entriesOf(kLabel);
        return labels.size() == 1 ? labels.front().arguments : std::vector<std::string>();
    }
    /// Saves a main row and tells the second argument of its label.
    std::string mainLabelItem(CDialogUnderTest &dialog)
    {
        const AcDbObjectId box = addBox(2000, 0, 2010, 10, L"0");
        select(dialog, {L"D1"});
        dialog.type(215, "0.5");
        dialog.addMainRow(box, 100);
        dialog.GetDlgItem(221)->setEnabled(true);
        dialog.selectRows({0});
        Journal::instance().setRecording(true);
        dialog.click(221);
        Journal::instance().setRecording(false);
        const auto labels = entriesOf(kLabel);
        return labels.size() == 1 ? labels.front().arguments.at(1) : std::string("(no label)");
    }
    std::size_t textsInModelSpace()
    {
        std::size_t count = 0;
        for (const AcDbEntity *entity : drawing().modelSpace().entities())
            count += !entity->isErased() &&
                     (entity->isA() == velmor::TextEntity::desc() || entity->isA() == velmor::MTextEntity::desc() ||
                      entity->isA() == AcDbBlockReference::desc());
        return count;
    }
    /// The user's own catalogue of label types goes before the shipped one.
    void makeCatalog(const char *text)
    {
        fs::create_directories(m_userFolder / "support");
        std::ofstream(m_userFolder / "support" / "CA_LABEL_CATALOG.cfg") << text;
    }
};

TEST_F(LabelSource, TheKeptBlockIsInsertedFromItsPathUnderItsKeptName)
{
    const std::wstring path = makeSymbol("File.dxf");
    keep("m_strBlockPath", path);
    keep("m_strBlockName", L"KeptName");
    run([&](CDialogUnderTest &dialog) {
        EXPECT_TRUE(dialog.isChecked(274));
        auto *block = drawing().findBlock(L"KeptName");
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(drawing().findBlock(L"File"), nullptr);
        EXPECT_EQ(drawing().findBlock(L"CatchLabel"), nullptr);
        const auto label = islandLabel(dialog);
        ASSERT_THAT(label, SizeIs(3));
        EXPECT_EQ(label[1], journalText(velmor::idOf(*block)));
        EXPECT_EQ(label[2], "[FIRST, SECOND]");
    });
    EXPECT_EQ(kept("m_strBlockPath"), path);
    EXPECT_EQ(kept("m_strBlockName"), L"KeptName");
}

TEST_F(LabelSource, ASecondRunOfTheDialogLabelsIslandsAsTheFirst)
{
    run([](CDialogUnderTest &) {});
    ASSERT_EQ(kept("m_strBlockName"), L"CatchLabel");
    run([&](CDialogUnderTest &dialog) {
        auto *block = drawing().findBlock(L"CatchLabel");
        ASSERT_NE(block, nullptr);
        const auto label = islandLabel(dialog);
        ASSERT_THAT(label, SizeIs(3));
        EXPECT_EQ(label[1], journalText(velmor::idOf(*block)));
        EXPECT_NE(label[2], "[]");
    });
    EXPECT_GT(textsInModelSpace(), 0u);
}

TEST_F(LabelSource, WithOneOfTheTwoKeptTextsEmptyNoBlockIsInsertedAndTheCheckIsOnAllTheSame)
{
    const std::wstring path = makeSymbol("File.dxf");
    const std::pair<std::wstring, std::wstring> keptTexts[] = {{path, L""}, {L"", L"KeptName"}};
    for (const auto &[keptPath, keptName] : keptTexts) {
        keep("m_strBlockPath", keptPath);
        keep("m_strBlockName", keptName);
        Journal::instance().setRecording(true);
        run([&](CDialogUnderTest &dialog) {
            EXPECT_THAT(entriesOf(kInsert), IsEmpty());
            EXPECT_TRUE(dialog.isChecked(274));
        });
        EXPECT_EQ(kept("m_strBlockPath"), keptPath);
        EXPECT_EQ(kept("m_strBlockName"), keptName);
    }
}

TEST_F(LabelSource, AKeptBlockWhoseFileIsGoneIsPassedOverSilently)
{
    keep("m_strBlockPath", (m_userFolder / "gone.dxf").wstring());
    keep("m_strBlockName", L"Gone");
    run([&](CDialogUnderTest &dialog) { EXPECT_TRUE(dialog.isChecked(274)); });
    EXPECT_EQ(drawing().findBlock(L"Gone"), nullptr);
    EXPECT_EQ(drawing().findBlock(L"CatchLabel"), nullptr);
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(LabelSource, WithoutASymbolFolderNothingIsSetAndTheCheckIsOnAllTheSame)
{
    setSetting("SYMBOL_PATH", (m_userFolder / "no such folder").wstring());
    ASSERT_EQ(CModuleConfiguration::Instance()->GetPath(L"Symbol"), L"");
    Journal::instance().setRecording(true);
    run([&](CDialogUnderTest &dialog) {
        EXPECT_THAT(entriesOf(kInsert), IsEmpty());
        EXPECT_TRUE(dialog.isChecked(274));
    });
    EXPECT_EQ(kept("m_strBlockPath"), L"");
    EXPECT_EQ(kept("m_strBlockName"), L"");
    EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(LabelSource, GroupsOfTheCatalogueAreNotOffered)
{
    makeCatalog("[0]\ngroup = Short ones\n[1]\nname = One\nline = {name}\n[2]\ngroup = Long ones\n"
                "[3]\nname = Three\nline = {area}\n");
    const auto catalog = Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
    ASSERT_TRUE(catalog);
    ASSERT_THAT(*catalog->GetAllElementsMap(), SizeIs(4));
    run([&](CDialogUnderTest &dialog) {
        EXPECT_EQ(entryTexts(dialog, 135), QStringList({"One", "Three"}));
        EXPECT_EQ(dialog.text(135), "One");
        EXPECT_EQ(mainLabelItem(dialog), "One");
    });
}

TEST_F(LabelSource, TheChosenLabelTypeIsTheOneWritten)
{
    makeCatalog("[0]\ngroup = Group\n[1]\nname = One\nline = {name}\n[3]\nname = Three\nline = third {name}\n");
    run([&](CDialogUnderTest &dialog) {
        dialog.Control<QComboBox>(135)->setCurrentIndex(1);
        EXPECT_EQ(mainLabelItem(dialog), "Three");
    });
    EXPECT_GT(textsInModelSpace(), 0u);
}

TEST_F(LabelSource, ACatalogueOfGroupsOnlyLeavesTheComboEmpty)
{
    makeCatalog("[0]\ngroup = Group\n");
    run([&](CDialogUnderTest &dialog) {
        EXPECT_THAT(entryTexts(dialog, 135), IsEmpty());
        EXPECT_EQ(mainLabelItem(dialog), "null");
    });
    EXPECT_EQ(textsInModelSpace(), 0u);
}

TEST_F(LabelSource, WithoutACatalogueTheComboIsEmptyAndAMainAreaIsSavedWithoutLabel)
{
    // Resources without the support files.
    const auto shipped = velmor::Services::instance().paths();
    const fs::path resources = m_userFolder / "resources";
    fs::create_directories(resources);
    for (const char *name : {"messages", "symbols", "icons"})
        fs::create_directory_symlink(fs::absolute(shipped.resource(name)), resources / name);
    velmor::Services::instance().start({.language = "hr"}, velmor::Paths({resources}, m_userFolder));
    ASSERT_FALSE(Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1));
    run([&](CDialogUnderTest &dialog) {
        EXPECT_THAT(entryTexts(dialog, 135), IsEmpty());
        EXPECT_EQ(dialog.Control<QComboBox>(135)->currentIndex(), -1);
        EXPECT_EQ(mainLabelItem(dialog), "null");
        EXPECT_EQ(dialog.text(281), ToQString(message(3498)));
    });
    EXPECT_THAT(areas(), SizeIs(1));
    EXPECT_EQ(textsInModelSpace(), 0u);
    EXPECT_THAT(alerts(), IsEmpty());
}

} // namespace
