// The wrappers that open an object for as short as a step needs, and what they do in the working drawing.
#include "host/drawing/Blocks.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"

#include <gmock/gmock.h>
#include <numbers>

using namespace velmor;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double kPi = std::numbers::pi;

class Wrappers : public testing::Test {
protected:
    void SetUp() override
    {
        m_drawing = Drawing::createNew();
        setWorkingDrawing(m_drawing.get());
    }
    void TearDown() override
    {
        setWorkingDrawing(nullptr);
        Journal::instance().setRecording(false);
    }
    AcDbObjectId add(std::unique_ptr<AcDbEntity> entity) { return m_drawing->append(std::move(entity)); }
    std::unique_ptr<Drawing> m_drawing;
};

std::wstring handleTextOf(const AcDbObjectId &id)
{
    wchar_t buffer[17];
    id.handle().getIntoAsciiBuffer(buffer);
    return buffer;
}

/// True when nobody has the object open: then, and only then, it can be opened for writing.
bool isClosed(const AcDbObjectId &id)
{
    AcDbObject *object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForWrite) != Acad::eOk)
        return false;
    object->close();
    return true;
}

AcDbEntity &entityOf(const AcDbObjectId &id)
{
    AcDbEntity *entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    entity->close();
    return *entity;
}

} // namespace

// --- Opening
// ---------------------------------------------------------------------------------------------------------------

TEST_F(Wrappers, AnEntityIsOpenedByIdOrHandleAndClosesItself)
{
    const auto id = add(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    {
        CZEMCEntityPtr byId(id, AcDb::kForRead);
        EXPECT_EQ(byId.openStatus(), 0);
        EXPECT_TRUE(byId.isOpen());
        CZEMCEntityPtr byHandle(handleTextOf(id).c_str(), AcDb::kForRead);
        EXPECT_EQ(byHandle.openStatus(), 0);
        EXPECT_EQ(byHandle.get(), byId.get());
        EXPECT_FALSE(isClosed(id));
    }
    EXPECT_TRUE(isClosed(id));
}

TEST_F(Wrappers, AScopeLeftByAnExceptionClosesTheEntity)
{
    const auto id = add(std::make_unique<AcDbLine>());
    try {
        const CZEMCEntityPtr open(id, AcDb::kForWrite);
        throw 1;
    } catch (int) {
    }
    EXPECT_TRUE(isClosed(id));
}

TEST_F(Wrappers, AnotherOpenClosesTheFirst)
{
    const auto first = add(std::make_unique<AcDbLine>()), second = add(std::make_unique<AcDbLine>());
    CZEMCEntityPtr open(first, AcDb::kForWrite);
    EXPECT_EQ(open.open(second, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(isClosed(first));
    EXPECT_EQ(open.openMode(), AcDb::kForRead);
    open.close();
    open.close();
    EXPECT_TRUE(isClosed(second));
    EXPECT_FALSE(open.isOpen());
}

TEST_F(Wrappers, AnObjectThatIsNoEntityGives34)
{
    CZEMCEntityPtr record(idOf(m_drawing->modelSpace()), AcDb::kForRead);
    EXPECT_EQ(record.openStatus(), 34);
    EXPECT_FALSE(record.isOpen());
    EXPECT_EQ(record.get(), nullptr);
    EXPECT_TRUE(isClosed(idOf(m_drawing->modelSpace())));
}

TEST_F(Wrappers, ALayerRecordOpenedAsAnEntityGives34)
{
    const wchar_t *layerZero = L"10"; // the handle of layer "0" in a new drawing
    AcDbObjectId id;
    ASSERT_EQ(m_drawing->getAcDbObjectId(id, false, AcDbHandle(layerZero), 0), Acad::eOk);
    EXPECT_TRUE(id.isValid());
    CZEMCEntityPtr record(layerZero, AcDb::kForRead);
    EXPECT_EQ(record.openStatus(), 34);
    EXPECT_FALSE(record.isOpen());
    EXPECT_TRUE(isClosed(id));
}

TEST_F(Wrappers, AnEntityOfAnotherClassGives34AndStaysClosed)
{
    const auto text = add(std::make_unique<TextEntity>(TextShape{}));
    const auto line = add(std::make_unique<AcDbLine>());
    EXPECT_EQ(CZEMCCurvePtr(text, AcDb::kForRead).openStatus(), 34);
    EXPECT_EQ(CZEMCCurvePtr(line, AcDb::kForRead).openStatus(), 0);
    EXPECT_EQ(CZEMCPolylineLWPtr(line, AcDb::kForRead).openStatus(), 34);
    EXPECT_EQ(CZEMC2dPolylinePtr(line, AcDb::kForRead).openStatus(), 34);
    EXPECT_EQ(CZEMC3dPolylinePtr(line, AcDb::kForRead).openStatus(), 34);
    EXPECT_EQ(CZEMCArcPtr(line, AcDb::kForRead).openStatus(), 34);
    EXPECT_EQ(CZEMCBlockReferencePtr(line, AcDb::kForRead).openStatus(), 34);
    EXPECT_EQ(CZEMCLinePtr(line, AcDb::kForWrite).openStatus(), 0);
    EXPECT_TRUE(isClosed(text));
    EXPECT_TRUE(isClosed(line));
}

TEST_F(Wrappers, NoIdAMadeUpHandleAndAnErasedEntityFailToOpen)
{
    CZEMCEntityPtr open;
    EXPECT_NE(open.open(AcDbObjectId(), AcDb::kForRead), Acad::eOk);
    EXPECT_NE(open.open(L"FFFFFFF", AcDb::kForRead), Acad::eOk);
    EXPECT_NE(open.open(L"no handle", AcDb::kForRead), Acad::eOk);
    EXPECT_NE(open.open(L"", AcDb::kForRead), Acad::eOk);
    EXPECT_NE(open.open(nullptr, AcDb::kForRead), Acad::eOk);
    const auto id = add(std::make_unique<AcDbLine>());
    CZEMCLinePtr line(id, AcDb::kForWrite);
    EXPECT_EQ(line->erase(true), Acad::eOk);
    line.close();
    EXPECT_NE(open.open(id, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(open.isOpen());
}

TEST_F(Wrappers, AnEntityOpenForWritingIsNotOpenedASecondTime)
{
    const auto id = add(std::make_unique<AcDbLine>());
    CZEMCEntityPtr first(id, AcDb::kForWrite), second;
    EXPECT_NE(second.open(id, AcDb::kForRead), Acad::eOk);
    EXPECT_NE(second.open(id, AcDb::kForWrite), Acad::eOk);
    EXPECT_TRUE(first.isOpen());
    first.close();
    EXPECT_EQ(second.open(id, AcDb::kForWrite), Acad::eOk);
}

TEST_F(Wrappers, HandlesNeedAWorkingDrawing)
{
    const auto id = add(std::make_unique<AcDbLine>());
    const std::wstring handle = handleTextOf(id);
    setWorkingDrawing(nullptr);
    EXPECT_NE(CZEMCEntityPtr(handle.c_str(), AcDb::kForRead).openStatus(), Acad::eOk);
}

// --- Geometry
// --------------------------------------------------------------------------------------------------------------

TEST_F(Wrappers, VerticesComeInOrderWithTheElevationAsZ)
{
    using Vertex = AcDbPolyline::Vertex;
    const std::vector<Vertex> vertices{{1, 2, 0}, {3, 4, 0.5}, {5, 6, 0}};
    const AcGePoint3dArray expected{{1, 2, 5}, {3, 4, 5}, {5, 6, 5}};
    AcGePoint3dArray points;
    EXPECT_TRUE(CZEMCPolylineLWPtr(add(std::make_unique<AcDbPolyline>(vertices, true, 5.0)), AcDb::kForRead)
                    .getVertexPoints(points));
    EXPECT_EQ(points, expected);
    points.clear();
    EXPECT_TRUE(CZEMC2dPolylinePtr(add(std::make_unique<AcDb2dPolyline>(vertices, true, 5.0)), AcDb::kForRead)
                    .getVertexPoints(points));
    EXPECT_EQ(points, expected);
    const AcGePoint3dArray inSpace{{1, 2, 3}, {4, 5, 6}};
    EXPECT_TRUE(CZEMC3dPolylinePtr(add(std::make_unique<AcDb3dPolyline>(inSpace, false)), AcDb::kForRead)
                    .getVertexPoints(points));
    EXPECT_THAT(points, SizeIs(5));
    EXPECT_EQ(points.back(), AcGePoint3d(4, 5, 6));
}

TEST_F(Wrappers, AClosedWrapperGivesNoVertices)
{
    AcGePoint3dArray points;
    EXPECT_FALSE(CZEMCPolylineLWPtr().getVertexPoints(points));
    EXPECT_FALSE(CZEMC2dPolylinePtr().getVertexPoints(points));
    EXPECT_FALSE(CZEMC3dPolylinePtr().getVertexPoints(points));
    EXPECT_EQ(CZEMCArcPtr().getPointOnArc(), AcGePoint3d());
    EXPECT_FALSE(CZEMCBlockReferencePtr().setAttributeText(L"ATT1", L"x"));
    EXPECT_THAT(points, IsEmpty());
}

TEST_F(Wrappers, ThePointOnAnArcIsItsMiddle)
{
    const auto middle = [&](double start, double end) {
        return CZEMCArcPtr(add(std::make_unique<AcDbArc>(AcGePoint3d(100, 200, 7), 10.0, start, end)), AcDb::kForRead)
            .getPointOnArc();
    };
    const double diagonal = 10.0 / std::sqrt(2.0);
    EXPECT_TRUE(middle(0.0, kPi / 2.0).isEqualTo({100 + diagonal, 200 + diagonal, 7}, 1e-9));
    // Over the zero angle: from 315 to 45 degrees.
    EXPECT_TRUE(middle(1.75 * kPi, 0.25 * kPi).isEqualTo({110, 200, 7}, 1e-9));
    EXPECT_TRUE(middle(kPi, 2.0 * kPi).isEqualTo({100, 190, 7}, 1e-9));
}

TEST_F(Wrappers, TheAreaOfASquareWithAHalfCircleOnOneSideCountsTheArc)
{
    for (const double bulge : {1.0, -1.0}) {
        const auto id = add(std::make_unique<AcDbPolyline>(
            std::vector<AcDbPolyline::Vertex>{{0, 0, bulge}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, true));
        double area = 0.0;
        EXPECT_EQ(CZEMCCurvePtr(id, AcDb::kForRead).curve()->getArea(area), Acad::eOk);
        EXPECT_NEAR(area, 100.0 + bulge * 12.5 * kPi, 1e-9);
    }
}

// --- Layers
// ------------------------------------------------------------------------------------------------------------------

TEST_F(Wrappers, AllLayersAreListedAndTheCurrentOneIsNamed)
{
    m_drawing->ensureLayer(L"Parcele");
    const std::size_t streets = m_drawing->ensureLayer(L"Ulice");
    CStringArray names;
    EXPECT_TRUE(CZEMCLayerTablePtr().allLayerNames(names));
    EXPECT_THAT(names, ElementsAre(L"0", L"Parcele", L"Ulice"));
    std::wstring current;
    EXPECT_TRUE(CZEMCLayerTablePtr().getCurrent(current));
    EXPECT_EQ(current, L"0");
    m_drawing->setCurrentLayer(streets);
    EXPECT_TRUE(CZEMCLayerTablePtr().getCurrent(current));
    EXPECT_EQ(current, L"Ulice");
    setWorkingDrawing(nullptr);
    EXPECT_FALSE(CZEMCLayerTablePtr().allLayerNames(names));
    EXPECT_FALSE(CZEMCLayerTablePtr().getCurrent(current));
}

// --- Dictionaries
// ------------------------------------------------------------------------------------------------------------

TEST_F(Wrappers, SettingsAreWrittenAndReadByTheirType)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    ASSERT_TRUE(dictionary.upgradeOpen());
    EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"TEXT", std::wstring(L"staza\nđ"), false, true, 1));
    EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"REAL", 0.1, false, true, 38));
    EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"INT", -7, false, true, 60));
    std::wstring text;
    double real = 0.0;
    int whole = 0;
    const CZEMCDictionaryPtr reader(AcDb::kForRead);
    EXPECT_TRUE(reader.dctRead(L"ZEMX_LSD2", L"TEXT", text, false));
    EXPECT_EQ(text, L"staza\nđ");
    EXPECT_TRUE(reader.dctRead(L"ZEMX_LSD2", L"REAL", real, false));
    EXPECT_EQ(real, 0.1);
    EXPECT_TRUE(reader.dctRead(L"ZEMX_LSD2", L"INT", whole, false));
    EXPECT_EQ(whole, -7);
    EXPECT_EQ(m_drawing->dictionaryEntry("ZEMX_LSD2", "TEXT"), (DataItems{{1, std::wstring(L"staza\nđ")}}));
    EXPECT_EQ(m_drawing->dictionaryEntry("ZEMX_LSD2", "REAL"), (DataItems{{38, 0.1}}));
    EXPECT_EQ(m_drawing->dictionaryEntry("ZEMX_LSD2", "INT"), (DataItems{{60, std::int64_t{-7}}}));
}

TEST_F(Wrappers, AValueOfAnotherTypeIsNotFoundAndTheVariableKeepsItsValue)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    ASSERT_TRUE(dictionary.upgradeOpen());
    dictionary.dctWrite(L"D", L"TEXT", std::wstring(L"5"), false, true, 1);
    dictionary.dctWrite(L"D", L"REAL", 5.0, false, true, 38);
    dictionary.dctWrite(L"D", L"INT", 5, false, true, 60);
    std::wstring text = L"untouched";
    double real = 1.5;
    int whole = 42;
    for (const wchar_t *key : {L"REAL", L"INT", L"absent"})
        EXPECT_FALSE(dictionary.dctRead(L"D", key, text, false)) << key;
    for (const wchar_t *key : {L"TEXT", L"INT", L"absent"})
        EXPECT_FALSE(dictionary.dctRead(L"D", key, real, false)) << key;
    for (const wchar_t *key : {L"REAL", L"TEXT", L"absent"})
        EXPECT_FALSE(dictionary.dctRead(L"D", key, whole, false)) << key;
    EXPECT_FALSE(dictionary.dctRead(L"absent", L"INT", whole, false));
    EXPECT_FALSE(dictionary.dctRead(nullptr, L"INT", whole, false));
    EXPECT_EQ(text, L"untouched");
    EXPECT_EQ(real, 1.5);
    EXPECT_EQ(whole, 42);
}

TEST_F(Wrappers, AnEmptyTextIsAValue)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    ASSERT_TRUE(dictionary.upgradeOpen());
    EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_SEWAGE_CATCHMENT", L"LABEL_BLOCK", std::wstring(), false, true, 1));
    std::wstring text = L"before";
    EXPECT_TRUE(dictionary.dctRead(L"ZEMX_SEWAGE_CATCHMENT", L"LABEL_BLOCK", text, false));
    EXPECT_EQ(text, L"");
}

TEST_F(Wrappers, ADictionaryOpenForReadingIsUpgradedBeforeAWrite)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"K", 5, false, true, 60));
    EXPECT_FALSE(m_drawing->dictionaryEntry("D", "K"));
    EXPECT_TRUE(dictionary.upgradeOpen());
    EXPECT_TRUE(dictionary.dctWrite(L"D", L"K", 5, false, true, 60));
    EXPECT_TRUE(CZEMCDictionaryPtr(AcDb::kForWrite).dctWrite(L"D", L"K", 6, false, true, 60));
}

TEST_F(Wrappers, WithoutADrawingNothingIsReadOrWritten)
{
    setWorkingDrawing(nullptr);
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    int whole = 3;
    EXPECT_FALSE(dictionary.upgradeOpen());
    EXPECT_FALSE(dictionary.dctRead(L"D", L"K", whole, false));
    EXPECT_FALSE(CZEMCDictionaryPtr(AcDb::kForWrite).dctWrite(L"D", L"K", 5, false, true, 60));
}

TEST_F(Wrappers, ACodeThatHoldsNoSuchValueIsRefused)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForWrite);
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"K", std::wstring(L"x"), false, true, 60));
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"K", 1.0, false, true, 1));
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"K", 1, false, true, 38));
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"K", NAN, false, true, 38));
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"", 1, false, true, 60));
    EXPECT_FALSE(dictionary.dctWrite(L"no dictionary", L"K", 1, false, false, 60));
    EXPECT_FALSE(m_drawing->dictionaryEntry("D", "K"));
}

TEST_F(Wrappers, AChainOfAnyLengthComesBack)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForWrite);
    resbuf *layers = acutBuildList(RTSTR, L"Parcele", RTSTR, L"", RTNONE), *last = layers->rbnext;
    for (int i = 0; i < 500; ++i)
        last = last->rbnext = acutBuildList(1, (L"layer " + std::to_wstring(i)).c_str(), 0);
    EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"LAYERS", layers, false, true));
    acutRelRb(layers);
    resbuf *back = nullptr;
    ASSERT_TRUE(dictionary.dctRead(L"ZEMX_LSD2", L"LAYERS", back, false));
    std::vector<std::wstring> names;
    for (const resbuf *item = back; item; item = item->rbnext) {
        EXPECT_EQ(item->restype, 1);
        names.push_back(item->resval.rstring);
    }
    acutRelRb(back);
    ASSERT_THAT(names, SizeIs(502));
    EXPECT_EQ(names[0], L"Parcele");
    EXPECT_EQ(names[1], L"");
    EXPECT_EQ(names[501], L"layer 499");
}

TEST_F(Wrappers, AChainKeepsEveryKindOfValue)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForWrite);
    const double point[3] = {1.5, -2.5, 3.5};
    resbuf *chain =
        acutBuildList(RTREAL, 2.5, RTSHORT, -3, RTLONG, 100000, RT3DPOINT, point, 62, 7, 11, point, 1, L"t", RTNONE);
    EXPECT_TRUE(dictionary.dctWrite(L"D", L"MIXED", chain, false, true));
    acutRelRb(chain);
    resbuf *back = nullptr;
    ASSERT_TRUE(dictionary.dctRead(L"D", L"MIXED", back, false));
    const resbuf *item = back;
    EXPECT_EQ(item->restype, 38);
    EXPECT_EQ(item->resval.rreal, 2.5);
    item = item->rbnext;
    EXPECT_EQ(item->restype, 60);
    EXPECT_EQ(item->resval.rint, -3);
    item = item->rbnext;
    EXPECT_EQ(item->restype, 90);
    EXPECT_EQ(item->resval.rlong, 100000);
    item = item->rbnext;
    EXPECT_EQ(item->restype, 10);
    EXPECT_EQ(item->resval.rpoint[2], 3.5);
    item = item->rbnext;
    EXPECT_EQ(item->restype, 62);
    EXPECT_EQ(item->resval.rint, 7);
    item = item->rbnext;
    EXPECT_EQ(item->restype, 11);
    EXPECT_EQ(item->resval.rpoint[1], -2.5);
    item = item->rbnext;
    EXPECT_STREQ(item->resval.rstring, L"t");
    EXPECT_EQ(item->rbnext, nullptr);
    acutRelRb(back);
}

TEST_F(Wrappers, AChainThatIsNoneLeavesThePointerAlone)
{
    CZEMCDictionaryPtr dictionary(AcDb::kForWrite);
    resbuf *untouched = acutNewRb(RTSHORT), *value = untouched;
    EXPECT_FALSE(dictionary.dctRead(L"D", L"absent", value, false));
    EXPECT_EQ(value, untouched);
    const std::int64_t picks[2] = {1, 2};
    resbuf *names = acutBuildList(RTPICKS, picks, RTNONE);
    EXPECT_FALSE(dictionary.dctWrite(L"D", L"K", names, false, true));
    acutRelRb(names);
    EXPECT_TRUE(dictionary.dctWrite(L"D", L"K", untouched, false, true));
    EXPECT_TRUE(dictionary.dctWrite(L"D", L"K", static_cast<const resbuf *>(nullptr), false, true));
    EXPECT_FALSE(m_drawing->dictionaryEntry("D", "K")) << "an empty chain takes the key away";
    acutRelRb(untouched);
}

TEST_F(Wrappers, DictionariesBelongToTheirDrawing)
{
    CZEMCDictionaryPtr(AcDb::kForWrite).dctWrite(L"D", L"K", 5, false, true, 60);
    const auto other = Drawing::createNew();
    setWorkingDrawing(other.get());
    int whole = 0;
    EXPECT_FALSE(CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"D", L"K", whole, false));
    setWorkingDrawing(m_drawing.get());
    EXPECT_TRUE(CZEMCDictionaryPtr(AcDb::kForRead).dctRead(L"D", L"K", whole, false));
}

// --- Drawing
// -----------------------------------------------------------------------------------------------------------------

TEST_F(Wrappers, APolylineIsDrawnClosedInModelSpaceOnTheCurrentLayer)
{
    m_drawing->setCurrentLayer(m_drawing->ensureLayer(L"Slivovi"));
    const auto id = CZEMCDraw::polylineLW({{0, 0, 4}, {10, 0, 4}, {10, 10, 4}}, 0.0, 1, nullptr);
    ASSERT_TRUE(id.isValid());
    auto &polyline = static_cast<AcDbPolyline &>(entityOf(id));
    EXPECT_EQ(polyline.isA(), AcDbPolyline::desc());
    EXPECT_EQ(polyline.numVerts(), 3u);
    EXPECT_TRUE(polyline.isClosed());
    EXPECT_TRUE(polyline.isOnlyLines());
    EXPECT_EQ(polyline.elevation(), 4.0);
    EXPECT_EQ(polyline.layer(), L"Slivovi");
    EXPECT_THAT(m_drawing->modelSpace().entities(), ElementsAre(&polyline));
    EXPECT_TRUE(isClosed(id));
    EXPECT_FALSE(
        static_cast<AcDbPolyline &>(entityOf(CZEMCDraw::polylineLW({{0, 0}, {1, 1}}, 0.0, 0, nullptr))).isClosed());
}

TEST_F(Wrappers, WithoutPointsOrDrawingNothingIsDrawn)
{
    EXPECT_TRUE(CZEMCDraw::polylineLW({}, 0.0, 1, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::polylineLW({{NAN, 0}, {1, 1}}, 0.0, 1, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::polylineLW({{0, 0}, {1, 1}}, -2.0, 1, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::polylineLW({{0, 0}, {1, 1}}, NAN, 1, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::line({0, 0}, {INFINITY, 0}, nullptr).isNull());
    EXPECT_THAT(m_drawing->modelSpace().entities(), IsEmpty());
    setWorkingDrawing(nullptr);
    EXPECT_TRUE(CZEMCDraw::polylineLW({{0, 0}, {1, 1}}, 0.0, 1, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::line({0, 0}, {1, 0}, nullptr).isNull());
}

TEST_F(Wrappers, ALineIsDrawnAndCanBeErasedThroughItsWrapper)
{
    CZEMCLinePtr opened;
    const auto id = CZEMCDraw::line({1, 2, 3}, {4, 5, 6}, &opened);
    EXPECT_TRUE(opened.isOpen());
    EXPECT_TRUE(opened->isWriteEnabled());
    EXPECT_EQ(static_cast<AcDbLine *>(opened.get())->endPoint(), AcGePoint3d(4, 5, 6));
    opened.close();
    CZEMCLinePtr line(id, AcDb::kForWrite);
    EXPECT_EQ(line->erase(true), Acad::eOk);
    line.close();
    EXPECT_TRUE(id.isErased());
}

TEST_F(Wrappers, AnAppendedEntityBelongsToTheDrawingAndIsOpen)
{
    auto *line = new AcDbLine({0, 0}, {1, 1});
    AcDbObjectId id;
    EXPECT_EQ(CZEMCDraw::appendToModelSpace(line, id), Acad::eOk);
    EXPECT_TRUE(line->isWriteEnabled());
    EXPECT_FALSE(isClosed(id));
    EXPECT_EQ(CZEMCDraw::appendToModelSpace(line, id), Acad::eAlreadyInDatabase);
    line->close();
    EXPECT_TRUE(isClosed(id));
    EXPECT_EQ(line->objectId(), id);
    EXPECT_NE(CZEMCDraw::appendToModelSpace(nullptr, id), Acad::eOk);
    AcDbLine mine;
    setWorkingDrawing(nullptr);
    EXPECT_NE(CZEMCDraw::appendToModelSpace(&mine, id), Acad::eOk) << "what is refused stays its owner's";
}

// --- Block references
// --------------------------------------------------------------------------------------------------------

class BlockReferences : public Wrappers {
protected:
    void SetUp() override
    {
        Wrappers::SetUp();
        m_definition = &m_drawing->addBlock(L"CatchLabel", {1, 1});
        m_drawing->append(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 2.0), *m_definition);
        addDefinition(L"ATT1", L"name", {2, 3});
        addDefinition(L"ATT2", L"area", {2, 1});
    }
    void addDefinition(const wchar_t *tag, const wchar_t *text, const AcGePoint3d &position)
    {
        TextShape shape;
        shape.position = position;
        shape.height = 0.5;
        shape.text = text;
        m_drawing->append(std::make_unique<AttributeDefinitionEntity>(tag, L"prompt", shape), *m_definition);
    }
    BlockRecord *m_definition = nullptr;
};

TEST_F(BlockReferences, AReferenceIsPlacedWithTheDefinitionsAttributes)
{
    const auto id = CZEMCDraw::insertBlockReference(idOf(*m_definition), {100, 200, 5}, nullptr, 3.0, nullptr);
    ASSERT_TRUE(id.isValid());
    const auto &reference = static_cast<AcDbBlockReference &>(entityOf(id));
    EXPECT_EQ(reference.blockTableRecord(), idOf(*m_definition));
    EXPECT_EQ(reference.placement().position, AcGePoint3d(100, 200, 5));
    EXPECT_EQ(reference.placement().scaleX, 3.0);
    EXPECT_EQ(reference.placement().scaleY, 3.0);
    const auto attributes = attributesOf(reference);
    ASSERT_THAT(attributes, SizeIs(2));
    EXPECT_EQ(attributes[0]->tag(), L"ATT1");
    EXPECT_EQ(attributes[0]->shape().text, L"name");
    EXPECT_EQ(attributes[0]->shape().position, AcGePoint3d(103, 206, 5));
    EXPECT_EQ(attributes[0]->shape().height, 1.5);
    EXPECT_EQ(attributes[1]->shape().position, AcGePoint3d(103, 200, 5));
    EXPECT_EQ(m_drawing->modelSpace().entities().back(), &reference);
}

TEST_F(BlockReferences, TheLayerGivenIsMadeAndTheAttributesFollow)
{
    const auto id = CZEMCDraw::insertBlockReference(idOf(*m_definition), {0, 0}, L"Oznake", 1.0, nullptr);
    const auto &reference = static_cast<AcDbBlockReference &>(entityOf(id));
    EXPECT_EQ(reference.layer(), L"Oznake");
    for (const AttributeEntity *attribute : attributesOf(reference))
        EXPECT_EQ(attribute->layer(), L"Oznake");
}

TEST_F(BlockReferences, WhatIsNoDefinitionGivesNoReference)
{
    EXPECT_TRUE(CZEMCDraw::insertBlockReference(AcDbObjectId(), {0, 0}, nullptr, 3.0, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::insertBlockReference(idOf(m_drawing->modelSpace()), {0, 0}, nullptr, 3.0, nullptr).isNull());
    const auto line = add(std::make_unique<AcDbLine>());
    EXPECT_TRUE(CZEMCDraw::insertBlockReference(line, {0, 0}, nullptr, 3.0, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::insertBlockReference(idOf(*m_definition), {0, 0}, nullptr, 0.0, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::insertBlockReference(idOf(*m_definition), {NAN, 0}, nullptr, 1.0, nullptr).isNull());
    const auto other = Drawing::createNew();
    const auto foreign = idOf(other->addBlock(L"B"));
    EXPECT_TRUE(CZEMCDraw::insertBlockReference(foreign, {0, 0}, nullptr, 3.0, nullptr).isNull());
}

TEST_F(BlockReferences, AnAttributesTextIsSetByItsTagInAnyCase)
{
    CZEMCBlockReferencePtr reference;
    const auto id = CZEMCDraw::insertBlockReference(idOf(*m_definition), {0, 0}, nullptr, 3.0, &reference);
    ASSERT_TRUE(reference.isOpen());
    EXPECT_TRUE(reference.setAttributeText(L"ATT1", L"Sliv 1"));
    EXPECT_TRUE(reference.setAttributeText(L"att2", L"0.25 ha"));
    EXPECT_FALSE(reference.setAttributeText(L"ATT3", L"none"));
    EXPECT_FALSE(reference.setAttributeText(nullptr, L"none"));
    reference.close();
    const auto attributes = attributesOf(static_cast<AcDbBlockReference &>(entityOf(id)));
    EXPECT_EQ(attributes[0]->shape().text, L"Sliv 1");
    EXPECT_EQ(attributes[1]->shape().text, L"0.25 ha");
    // Other references and the definition keep their texts.
    EXPECT_EQ(static_cast<AttributeDefinitionEntity *>(m_definition->entities()[1])->shape().text, L"name");
    reference.open(id, AcDb::kForRead);
    EXPECT_FALSE(reference.setAttributeText(L"ATT1", L"not open for writing"));
}

TEST_F(BlockReferences, TagsOfADefinitionComeInItsOrder)
{
    EXPECT_THAT(attributeTagsOf(*m_definition), ElementsAre(L"ATT1", L"ATT2"));
    m_drawing->erase(*m_definition->entities()[1]);
    EXPECT_THAT(attributeTagsOf(*m_definition), ElementsAre(L"ATT2"));
    EXPECT_THAT(attributeTagsOf(m_drawing->modelSpace()), IsEmpty());
}

TEST_F(BlockReferences, AConstantAttributeIsPartOfTheDefinitionOnly)
{
    m_drawing->append(std::make_unique<AttributeDefinitionEntity>(L"FIXED", L"", TextShape{}, false, true),
                      *m_definition);
    EXPECT_THAT(attributeTagsOf(*m_definition), ElementsAre(L"ATT1", L"ATT2"));
    const auto id = CZEMCDraw::insertBlockReference(idOf(*m_definition), {0, 0}, nullptr, 1.0, nullptr);
    EXPECT_THAT(attributesOf(static_cast<AcDbBlockReference &>(entityOf(id))), SizeIs(2));
}

TEST_F(BlockReferences, ATurnedAndScaledReferenceTurnsItsTexts)
{
    AcDbBlockReference::Placement placement;
    placement.position = {10, 0};
    placement.scaleX = 4.0;
    placement.scaleY = 2.0;
    placement.rotation = kPi / 2.0;
    TextShape shape;
    shape.position = {2, 3};
    shape.height = 1.0;
    shape.rotation = 0.25;
    const TextShape placed = placedShape(shape, {1, 1}, placement);
    EXPECT_TRUE(placed.position.isEqualTo({10 - 4, 4, 0}, 1e-12));
    EXPECT_EQ(placed.height, 2.0);
    EXPECT_EQ(placed.widthFactor, 2.0);
    EXPECT_NEAR(placed.rotation, 0.25 + kPi / 2.0, 1e-12);
}

// --- Journal
// -----------------------------------------------------------------------------------------------------------------

TEST_F(BlockReferences, WhatTheWrappersDoIsInTheJournal)
{
    Journal::instance().setRecording(true);
    CZEMCDraw::polylineLW({{0, 0}, {1, 0}, {1, 1}}, 0.0, 1, nullptr);
    CZEMCDraw::line({0, 0}, {1, 2.5}, nullptr);
    CZEMCDictionaryPtr dictionary(AcDb::kForRead);
    dictionary.upgradeOpen();
    dictionary.dctWrite(L"ZEMX_LSD2", L"KEY", 0.5, false, true, 38);
    double value = 0.0;
    dictionary.dctRead(L"ZEMX_LSD2", L"KEY", value, false);
    dictionary.dctRead(L"ZEMX_LSD2", L"GONE", value, false);
    CZEMCBlockReferencePtr reference;
    const auto id = CZEMCDraw::insertBlockReference(idOf(*m_definition), {1, 2}, nullptr, 3.0, &reference);
    reference.setAttributeText(L"ATT1", L"Sliv");
    Journal::instance().setRecording(false);
    const std::string definition = journalText(idOf(*m_definition));
    EXPECT_THAT(
        Journal::instance().entries(),
        ElementsAre(JournalEntry{"CZEMCDraw::polylineLW", {"3", "0", "1"}},
                    JournalEntry{"CZEMCDraw::line", {"0,0,0", "1,2.5,0"}},
                    JournalEntry{"CZEMCDictionaryPtr::dctWrite", {"ZEMX_LSD2", "KEY", "0.5", "38"}},
                    JournalEntry{"CZEMCDictionaryPtr::dctRead", {"ZEMX_LSD2", "KEY", "1"}},
                    JournalEntry{"CZEMCDictionaryPtr::dctRead", {"ZEMX_LSD2", "GONE", "0"}},
                    JournalEntry{"CZEMCDraw::insertBlockReference", {definition, "1,2,0", "null", "3"}},
                    JournalEntry{"CZEMCBlockReferencePtr::setAttributeText", {journalText(id), "ATT1", "Sliv"}}));
}

TEST_F(Wrappers, WhatIsDoneToEntitiesIsInTheJournal)
{
    const auto id = add(std::make_unique<AcDbLine>());
    const std::string handle = journalText(id);
    m_drawing->ensureLayer(L"Slivovi");
    CZEMCEntityPtr line(id, AcDb::kForWrite);
    Journal::instance().setRecording(true);
    line->setLayer(L"Slivovi");
    line->setColorIndex(5);
    line->highlight();
    line->unhighlight();
    EXPECT_EQ(line->layer(), L"Slivovi");
    EXPECT_EQ(line->booleanOper(0, line.get()), Acad::eInvalidInput);
    line->erase(true);
    Journal::instance().setRecording(false);
    EXPECT_THAT(Journal::instance().entries(),
                ElementsAre(JournalEntry{"AcDbEntity::setLayer", {handle, "Slivovi"}},
                            JournalEntry{"AcDbEntity::setColorIndex", {handle, "5"}},
                            JournalEntry{"AcDbEntity::highlight", {handle}},
                            JournalEntry{"AcDbEntity::unhighlight", {handle}},
                            JournalEntry{"AcDbEntity::booleanOper", {handle, "0", handle}},
                            JournalEntry{"AcDbObject::erase", {handle, "1"}}));
}
