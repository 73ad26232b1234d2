#include "host/drawing/Journal.h"
#include "host/drawing/Transient.h"
#include "host/services/Services.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <cwchar>
#include <limits>

namespace velmor {
namespace {

using test::EditorFixture;
using testing::HasSubstr;

class InputTest : public EditorFixture {
protected:
    void answer(const wchar_t *text) { session.answers().push({std::wstring(text)}); }
    ads_point result = {-1, -1, -1};
};

TEST_F(InputTest, APointComesAsAValueOrAsText)
{
    session.answers().push({AcGePoint3d(1, 2, 3)});
    EXPECT_EQ(acedGetPoint(nullptr, L"Point", result), RTNORM);
    EXPECT_THAT(result, testing::ElementsAre(1, 2, 3));
    answer(L"4,5");
    EXPECT_EQ(acedGetPoint(nullptr, L"Point", result), RTNORM);
    EXPECT_THAT(result, testing::ElementsAre(4, 5, 0));
    const ads_point base = {10, 10, 0};
    answer(L"@1,2");
    EXPECT_EQ(acedGetPoint(base, L"Point", result), RTNORM);
    EXPECT_THAT(result, testing::ElementsAre(11, 12, 0));
}

TEST_F(InputTest, AWrongPointIsAskedForAgain)
{
    answer(L"here");
    answer(L"7,8");
    EXPECT_EQ(acedGetPoint(nullptr, L"Point", result), RTNORM);
    EXPECT_THAT(result, testing::ElementsAre(7, 8, 0));
}

TEST_F(InputTest, EnterEscapeAndNoAnswerGiveNoPoint)
{
    answer(L"");
    EXPECT_EQ(acedGetPoint(nullptr, L"Point", result), RTNONE_INPUT);
    session.answers().push({Answer::Escape{}});
    EXPECT_EQ(acedGetPoint(nullptr, L"Point", result), RTCAN);
    EXPECT_EQ(acedGetPoint(nullptr, L"Point", result), RTCAN);
    EXPECT_THAT(result, testing::ElementsAre(-1, -1, -1));
}

TEST_F(InputTest, AnEntityIsPickedByIdByHandleOrByAPointNearIt)
{
    const AcDbObjectId near = line(0, 0, 10, 0);
    line(0, 0.9, 10, 0.9);
    const auto pick = [&] {
        ads_name name = {0, 0};
        EXPECT_EQ(acedEntSel(L"Entity", name, result), RTNORM);
        AcDbObjectId id;
        EXPECT_EQ(acdbGetObjectId(id, name), Acad::eOk);
        return id;
    };
    session.answers().push({Answer::Pick{near, {3, 0}}});
    EXPECT_EQ(pick(), near);
    EXPECT_THAT(result, testing::ElementsAre(3, 0, 0));
    session.answers().push({std::wstring(L"#" + handleText(*open(near)))});
    EXPECT_EQ(pick(), near);
    answer(L"5,0.4");
    EXPECT_EQ(pick(), near);
}

TEST_F(InputTest, APickBesideEverythingIsAMiss)
{
    line(0, 0, 10, 0);
    ads_name name;
    answer(L"5,3");
    EXPECT_EQ(acedEntSel(L"Entity", name, result), RTERROR);
    session.setVariable(L"PICKRADIUS", 4.0);
    answer(L"5,3");
    EXPECT_EQ(acedEntSel(L"Entity", name, result), RTNORM);
    answer(L"#FFFFFF");
    EXPECT_EQ(acedEntSel(L"Entity", name, result), RTERROR);
    EXPECT_EQ(acedEntSel(L"Entity", name, result), RTCAN);
}

TEST_F(InputTest, APickSeesArcsWhereTheyRunNotWhereTheirCircleDoes)
{
    drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(0, 0), 10.0, 0.0, std::numbers::pi));
    ads_name name;
    answer(L"0,10.2");
    EXPECT_EQ(acedEntSel(L"Entity", name, result), RTNORM);
    answer(L"0,-10.2");
    EXPECT_EQ(acedEntSel(L"Entity", name, result), RTERROR);
}

TEST_F(InputTest, AStringIsAnyAnswerAndEnterAnEmptyOne)
{
    std::wstring text = L"kept";
    EXPECT_EQ(acedGetString(1, L"Text", text), RTCAN);
    EXPECT_EQ(text, L"kept");
    answer(L"two words");
    EXPECT_EQ(acedGetString(1, L"Text", text), RTNORM);
    EXPECT_EQ(text, L"two words");
    answer(L"two words");
    EXPECT_EQ(acedGetString(0, L"Text", text), RTNORM);
    EXPECT_EQ(text, L"two");
    answer(L"");
    EXPECT_EQ(acedGetString(0, L"Text", text), RTNORM);
    EXPECT_EQ(text, L"");
}

TEST_F(InputTest, VariablesComeAndGoInTheirKind)
{
    resbuf value;
    EXPECT_EQ(acedGetVar(L"OSMODE", &value), RTNORM);
    EXPECT_EQ(value.restype, RTSHORT);
    value.resval.rint = 37;
    EXPECT_EQ(acedSetVar(L"osmode", &value), RTNORM);
    resbuf again;
    EXPECT_EQ(acedGetVar(L"OSMODE", &again), RTNORM);
    EXPECT_EQ(again.resval.rint, 37);
    EXPECT_EQ(acedGetVar(L"CLAYER", &value), RTNORM);
    EXPECT_EQ(value.restype, RTSTR);
    EXPECT_STREQ(value.resval.rstring, L"0");
    acutDelBuffer(value.resval.rstring);
}

TEST_F(InputTest, AnUnknownVariableAWrongKindAndAReadOnlyOneAreRefused)
{
    resbuf value;
    value.restype = RTSHORT;
    value.resval.rint = 1;
    EXPECT_EQ(acedSetVar(L"NOSUCH", &value), RTERROR);
    EXPECT_EQ(acedGetVar(L"NOSUCH", &value), RTERROR);
    value.restype = RTREAL;
    value.resval.rreal = 1.5;
    EXPECT_EQ(acedSetVar(L"OSMODE", &value), RTERROR);
    value.restype = RTSTR;
    wchar_t name[] = L"x.dxf";
    value.resval.rstring = name;
    EXPECT_EQ(acedSetVar(L"DWGNAME", &value), RTERROR);
    EXPECT_EQ(acedSetVar(L"CLAYER", &value), RTERROR); // no such layer
}

TEST_F(InputTest, EachVariableTakesItsLimitsAndNothingBeyond)
{
    const auto give = [](const wchar_t *name, double number, bool whole) {
        resbuf value;
        value.restype = whole ? RTSHORT : RTREAL;
        if (whole)
            value.resval.rint = static_cast<short>(number);
        else
            value.resval.rreal = number;
        return acedSetVar(name, &value);
    };
    const auto read = [](const wchar_t *name) {
        resbuf value;
        EXPECT_EQ(acedGetVar(name, &value), RTNORM);
        return value.restype == RTSHORT ? value.resval.rint : value.resval.rreal;
    };
    const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const wchar_t *name;
        bool whole;
        std::vector<double> taken, refused;
    } rows[] = {
        {L"APERTURE", true, {1, 50}, {0, 51, -1}},
        {L"PICKBOX", true, {1, 50}, {0, 51, -1}},
        {L"AUTOSNAP", true, {0, 63}, {-1, 64}},
        {L"ORTHOMODE", true, {0, 1}, {-1, 2}},
        {L"OSMODE", true, {0, 32767}, {-1}},
        {L"HPGAPTOL", false, {0, 0.25}, {-1e-9, inf, nan}},
        {L"PICKRADIUS", false, {0, 12.5}, {-1e-9, inf, nan}},
        {L"POLARANG", false, {0.5, 180}, {0, -45, 180.1, inf, nan}},
    };
    for (const auto &row : rows) {
        const std::string name(row.name, row.name + std::wcslen(row.name));
        for (const double number : row.taken) {
            EXPECT_EQ(give(row.name, number, row.whole), RTNORM) << name << " " << number;
            EXPECT_EQ(read(row.name), number) << name;
        }
        for (const double number : row.refused) {
            EXPECT_EQ(give(row.name, number, row.whole), RTERROR) << name << " " << number;
            EXPECT_EQ(read(row.name), row.taken.back()) << name << ": what was refused changes nothing";
        }
        // A number that is whole may stand for a length or an angle; nothing but a whole one for a whole one.
        EXPECT_EQ(give(row.name, 1.0, !row.whole), row.whole ? RTERROR : RTNORM) << name;
    }
}

TEST_F(InputTest, AlertsAreKeptAndGoToTheSink)
{
    std::vector<std::wstring> sunk;
    session.setMessageSink([&](MessageKind kind, const std::wstring &text) {
        if (kind == MessageKind::Alert)
            sunk.push_back(text);
    });
    acedAlert(L"stop");
    EXPECT_THAT(session.alerts(), testing::ElementsAre(L"stop"));
    EXPECT_THAT(sunk, testing::ElementsAre(L"stop"));
}

TEST_F(InputTest, AFileIsAskedForByPromptWhereNobodyCanChooseIt)
{
    resbuf file;
    file.restype = RTNONE;
    answer(L"/some/folder/label block.dxf");
    EXPECT_EQ(acedGetFileD(L"Block", L"/some", L"dwg", 0, &file), RTNORM);
    EXPECT_EQ(file.restype, RTSTR);
    EXPECT_STREQ(file.resval.rstring, L"/some/folder/label block.dxf");
    acutDelBuffer(file.resval.rstring);

    file.restype = RTNONE;
    answer(L"");
    EXPECT_EQ(acedGetFileD(L"Block", L"/some", L"dwg", 0, &file), RTCAN);
    session.answers().push({Answer::Escape{}});
    EXPECT_EQ(acedGetFileD(L"Block", L"/some", L"dwg", 0, &file), RTCAN);
    EXPECT_EQ(acedGetFileD(nullptr, nullptr, nullptr, 0, &file), RTCAN); // no answer left
    EXPECT_EQ(file.restype, RTNONE);
    EXPECT_EQ(acedGetFileD(L"Block", L"/some", L"dwg", 0, nullptr), RTERROR);
}

TEST_F(InputTest, TheCurrentDocumentIsNoneWithoutADrawing)
{
    EXPECT_NE(acDocManagerPtr()->curDocument(), nullptr);
    session.setDrawing(nullptr);
    EXPECT_EQ(acDocManagerPtr()->curDocument(), nullptr);
    Journal::instance().setRecording(true);
    RefreshDrawingDisplay(); // does what it can without one
    Journal::instance().setRecording(false);
    EXPECT_THAT(Journal::instance().entries(), testing::ElementsAre(JournalEntry{"acedUpdateDisplay", {}}));
}

TEST_F(InputTest, RedrawWithModeFourWipesTemporaryDrawing)
{
    auto &transient = drawing().component<TransientGraphics>();
    transient.drawTemporary(TransientPath{{{0, 0, 0}, {1, 1, 0}}, false, 2});
    for (const int mode : {0, 1, 2, 3})
        EXPECT_EQ(acedRedraw(nullptr, mode), RTNORM) << mode;
    EXPECT_EQ(acedRedraw(nullptr, 5), RTREJ);
    ads_name entity{};
    EXPECT_EQ(acedRedraw(entity, 4), RTERROR);
    EXPECT_EQ(transient.temporary().size(), 1u);
    EXPECT_EQ(acedRedraw(nullptr, 4), RTNORM);
    EXPECT_TRUE(transient.temporary().empty());
}

TEST_F(InputTest, RefreshFlushesFirstAndThenUpdates)
{
    Journal::instance().setRecording(true);
    RefreshDrawingDisplay();
    Journal::instance().setRecording(false);
    ASSERT_EQ(Journal::instance().entries().size(), 2u);
    EXPECT_EQ(Journal::instance().entries()[0].operation, "AcTransactionManager::flushGraphics");
    EXPECT_EQ(Journal::instance().entries()[1].operation, "acedUpdateDisplay");
}

struct ZoomView final : SessionView {
    void showDrawing(Drawing *) override {}
    void redraw() override {}
    void zoomTo(const Extents &to) override { extents = to; }
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
    Extents extents;
};

TEST_F(InputTest, ZoomShowsTheExtentsEnlargedByTheFactorAboutTheirCentre)
{
    ZoomView view;
    session.setView(&view);
    const AcDbObjectId a = line(0, 0, 10, 0), b = line(30, 40, 30, 20), gone = line(500, 500, 600, 600);
    drawing().erase(*open(gone));
    EXPECT_TRUE(CZEMCEdit::zoom(AcDbObjectIdArray{a, b, gone}, 2.0));
    session.setView(nullptr);
    EXPECT_EQ(view.extents, (Extents{-15, -20, 45, 60}));
    EXPECT_FALSE(CZEMCEdit::zoom(gone, 2.0));
    EXPECT_FALSE(CZEMCEdit::zoom(a, 0.0));
}

/// Lives as long as its drawing does.
struct Witness {
    explicit Witness(Drawing &) { isAlive() = true; }
    ~Witness() { isAlive() = false; }
    static bool &isAlive()
    {
        static bool alive = false;
        return alive;
    }
};

struct DrawingView final : SessionView {
    void showDrawing(Drawing *drawing) override
    {
        shown.push_back(drawing);
        formerWasAlive = Witness::isAlive();
    }
    void redraw() override { ++redraws; }
    void zoomTo(const Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
    std::vector<Drawing *> shown;
    bool formerWasAlive = false;
    int redraws = 0;
};

TEST_F(InputTest, AFormerDrawingLivesTillTheViewHasTheNewOne)
{
    DrawingView view;
    session.setView(&view);
    drawing().component<Witness>();
    session.setDrawing(Drawing::createNew());
    EXPECT_THAT(view.shown, testing::ElementsAre(session.drawing()));
    EXPECT_TRUE(view.formerWasAlive);
    EXPECT_FALSE(Witness::isAlive());
    EXPECT_EQ(view.redraws, 0); // nothing is painted before the view has taken the new one
    session.setDrawing(nullptr);
    EXPECT_EQ(view.shown.back(), nullptr);
    session.setView(nullptr);
}

TEST_F(InputTest, FilesAreFoundBesideTheDrawing)
{
    const auto folder = std::filesystem::path(testing::TempDir()) / "velmor_find";
    std::filesystem::create_directories(folder);
    std::FILE *file = std::fopen((folder / "beside.cfg").c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    session.setPath(folder / "town.dxf");
    std::wstring path;
    EXPECT_EQ(acedFindFile(L"beside.cfg", path), RTNORM);
    EXPECT_EQ(path, (folder / "beside.cfg").wstring());
    EXPECT_EQ(acedFindFile(L"nowhere.cfg", path), RTERROR);
    std::filesystem::remove_all(folder);
}

TEST_F(InputTest, FilesAreFoundAlongTheSupportPath)
{
    const auto folder = std::filesystem::path(testing::TempDir()) / "velmor_support";
    for (const char *name : {"first/own.cfg", "second/own.cfg", "second/only.cfg", "user/support/users.cfg"}) {
        std::filesystem::create_directories((folder / name).parent_path());
        std::FILE *file = std::fopen((folder / name).c_str(), "w");
        ASSERT_NE(file, nullptr);
        std::fclose(file);
    }
    const Paths before = Services::instance().paths();
    Services::instance().start({.language = "en"}, Paths({}, folder / "user"));
    Services::instance().set("SUPPORT_PATH", (folder / "first;").wstring() + (folder / "second").wstring());
    std::wstring path;

    EXPECT_EQ(acedFindFile(L"own.cfg", path), RTNORM);
    EXPECT_EQ(path, (folder / "first/own.cfg").wstring());
    EXPECT_EQ(acedFindFile(L"only.cfg", path), RTNORM);
    EXPECT_EQ(path, (folder / "second/only.cfg").wstring());
    EXPECT_EQ(acedFindFile(L"users.cfg", path), RTNORM);
    EXPECT_EQ(path, (folder / "user/support/users.cfg").wstring());
    EXPECT_EQ(acedFindFile(L"nowhere.cfg", path), RTERROR);

    Services::instance().start({.language = "en"}, before);
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace velmor
