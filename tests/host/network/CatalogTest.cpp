#include "host/network/Catalog.h"

#include "host/services/Services.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::TestFolder;
using ZEMGis::Data::CCatalogManager;

std::vector<std::wstring> namesOf(ZEMGis::Data::CCatalog &catalog)
{
    std::vector<std::wstring> names;
    if (const auto *elements = catalog.GetAllElementsMap())
        for (const auto &[key, item] : *elements)
            if (!item->IsGroup())
                names.push_back(item->GetName());
    return names;
}

TEST(LabelCatalog, ShipsThreeTypesInBothLanguages)
{
    TestFolder user;
    for (const auto &[language, first] : {std::pair("hr", L"Ime"), std::pair("en", L"Name")}) {
        Services::instance().start({language}, {{VELMOR_TEST_RESOURCES}, user.path()});
        const auto catalog = CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
        ASSERT_TRUE(catalog);
        EXPECT_TRUE(static_cast<LabelCatalog &>(*catalog).findings().empty());
        const auto names = namesOf(*catalog);
        ASSERT_EQ(names.size(), 3u);
        EXPECT_EQ(names[0], first);
        const auto item = catalog->GetAllElementsMap()->at(L"2");
        EXPECT_EQ(static_cast<const LabelCatalogItem &>(*item).type().lines,
                  (std::vector<std::wstring>{L"{name}", L"A = {area} ha", L"C = {coeff}"}));
    }
}

TEST(LabelCatalog, UnknownNamesAndAMissingFileGiveNull)
{
    TestFolder empty;
    Services::instance().start({"en"}, {{empty.path()}, empty.path()});

    EXPECT_FALSE(CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1));
    EXPECT_FALSE(CCatalogManager::Instance()->GetCatalog(L"OTHER", 1));
    EXPECT_FALSE(CCatalogManager::Instance()->GetCatalog(nullptr, 1));
}

TEST(LabelCatalog, AnEditedFileIsReadAnewAndItemsOfTheOldOneStay)
{
    TestFolder user;
    user.write("support/CA_LABEL_CATALOG.cfg", "[a]\nname = First\nline = {name}\n");
    Services::instance().start({"en"}, {{VELMOR_TEST_RESOURCES}, user.path()});
    ZEMGis::Data::CCatalogItem *item =
        CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1)->GetAllElementsMap()->at(L"a").get();

    user.write("support/CA_LABEL_CATALOG.cfg", "[a]\nname = Second\nline = {name}\n");
    const auto second = CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);

    EXPECT_EQ(item->GetName(), L"First");
    EXPECT_EQ(namesOf(*second), std::vector<std::wstring>{L"Second"});
}

TEST(LabelCatalog, EntriesComeInKeyOrderAndGroupsAreMarked)
{
    LabelCatalog catalog("[b]\nname = B\nline = {name}\n[a]\ngroup = Rain\n[c]\nname = C\nname.en = See\nline = x\n",
                         "en");

    const auto &elements = *catalog.GetAllElementsMap();
    std::vector<std::wstring> names;
    for (const auto &[key, item] : elements)
        names.push_back(item->GetName());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Rain", L"B", L"See"}));
    EXPECT_NE(elements.at(L"a")->IsGroup(), 0);
    EXPECT_EQ(elements.at(L"b")->IsGroup(), 0);
}

TEST(LabelCatalog, TheLanguagesNameCountsWhereverItStands)
{
    LabelCatalog catalog("[a]\nname.hr = Ime\nname = Name\nline = x\n", "hr");
    EXPECT_EQ(namesOf(catalog), std::vector<std::wstring>{L"Ime"});
}

TEST(LabelCatalog, WrongLinesAreToldAndDefaultsStay)
{
    LabelCatalog catalog("name = lost\n[a]\nname = A\nline = {nam}\nheight = 0\ncolor = 300\nfont = x\n[b]\nname = B\n",
                         "en");

    std::vector<std::size_t> lines;
    for (const Finding &finding : catalog.findings())
        lines.push_back(finding.line);
    EXPECT_EQ(lines, (std::vector<std::size_t>{1, 4, 5, 6, 7, 9}));
    const auto item = catalog.GetAllElementsMap()->at(L"a");
    EXPECT_EQ(static_cast<const LabelCatalogItem &>(*item).type().textHeight, 2.0);
    EXPECT_EQ(static_cast<const LabelCatalogItem &>(*item).type().color, 256);
    EXPECT_EQ(catalog.GetAllElementsMap()->size(), 1u);
}

TEST(LabelCatalog, AFileWithoutTypesHasNoMap)
{
    EXPECT_EQ(LabelCatalog("# nothing\n", "en").GetAllElementsMap(), nullptr);
    EXPECT_EQ(LabelCatalog("", "en").GetAllElementsMap(), nullptr);
}

} // namespace
} // namespace velmor
