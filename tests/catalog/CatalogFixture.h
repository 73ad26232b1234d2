// A program with an empty drawing, a folder of shipped files and a folder of the user's.
#pragma once

#include "contracts/CoreServices.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"
#include "tests/catalog/PlainUser.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

#include <functional>

namespace velmor::test {

class CatalogFixture : public testing::Test {
protected:
    CatalogFixture()
    {
        start();
        session.setMessageSink({});
        session.setDrawing(Drawing::createNew());
    }
    ~CatalogFixture() override { Journal::instance().setRecording(false); }
    /// Starts the program anew, with these lines as the user's settings.
    void start(const std::string &settings = {})
    {
        user.write("settings.cfg", settings);
        Services::instance().start({"en"}, {{resources.path()}, user.path()});
    }
    /// The drawing's record of the terrain list; "(none)" without one.
    static std::wstring record()
    {
        std::wstring text;
        const bool found =
            CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"ZEMX_TERRAINTYPE", L"TT_DEFINITION", text, false);
        return found ? text : L"(none)";
    }
    static void setRecord(const std::wstring &text)
    {
        CZEMCDictionaryPtr writer(AcDb::kForWrite);
        ASSERT_TRUE(writer.dctWrite(L"ZEMX_TERRAINTYPE", L"TT_DEFINITION", text, false, true, 1));
    }
    /// Takes all rights off a file of the user's, and runs as a plain user.
    bool withoutRightsTo(const std::string &name, const std::function<bool()> &run) const
    {
        namespace fs = std::filesystem;
        fs::permissions(user.path(), fs::perms(0755));
        fs::permissions(user.path() / name, fs::perms::none);
        return asPlainUser(run);
    }
    static std::size_t recordedWrites()
    {
        std::size_t count = 0;
        for (const JournalEntry &entry : Journal::instance().entries())
            count += entry.operation == "CZEMCDictionaryPtr::dctWrite";
        return count;
    }

    TestFolder resources, user;
    Session session;
};

} // namespace velmor::test
