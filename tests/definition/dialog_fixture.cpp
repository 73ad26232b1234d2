#include "tests/definition/dialog_fixture.h"

#include "controls/Mnemonics.h"
#include "controls/WideText.h"
#include "host/network/NetworkData.h"
#include "tests/dialogs/DialogProgram.h"

#include <cmath>
#include <cstdlib>

namespace fs = std::filesystem;
using namespace ZEMGis;

QString CDialogUnderTest::text(int control) const
{
    const QWidget *widget = GetDlgItem(control);
    QString shown;
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        shown = label->text();
    else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        shown = button->text();
    else if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
        return edit->text();
    else if (const auto *combo = qobject_cast<const QComboBox *>(widget))
        return combo->currentText();
    return ToQString(WithoutMnemonic(ToWide(shown)));
}

DefinitionDialogTest::DefinitionDialogTest() : m_userFolder(newDialogFolder("velmor_definition_"))
{
    dialogApplication();
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    velmor::Services::instance().start({.language = "hr"},
                                       velmor::Paths({fs::path(source ? source : ".") / "resources"}, m_userFolder));
    m_session.setMessageSink([](velmor::MessageKind, const std::wstring &) {});
    m_session.setDrawing(velmor::Drawing::createNew());
    // D1 and D2 lie in the first parcel, D3 in the second, D4 in the third with its courtyard, D5 in none.
    addSection(L"D1", {20, 30}, {80, 30});
    addSection(L"D2", {20, 70}, {60, 70});
    addSection(L"D3", {120, 30}, {180, 30});
    addSection(L"D4", {210, 20}, {240, 20});
    addSection(L"D5", {500, 500}, {520, 500});
    addBox(0, 0, 100, 100);
    addLine(100, 0, 200, 0);
    addLine(200, 0, 200, 100);
    addLine(200, 100, 100, 100);
    addBox(200, 0, 300, 100);
    addBox(250, 60, 270, 80); // the courtyard
    setLayers({L"PARCELS"});
}

DefinitionDialogTest::~DefinitionDialogTest()
{
    velmor::Journal::instance().setRecording(false);
    velmor::Journal::instance().clear();
    std::error_code ignored;
    fs::remove_all(m_userFolder, ignored);
}

void DefinitionDialogTest::run(const Drive &drive)
{
    m_session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        if (auto *underTest = dynamic_cast<CDialogUnderTest *>(&dialog))
            drive(*underTest);
        else if (m_nested)
            m_nested(dialog);
    });
    CDialogUnderTest dialog;
    EXPECT_EQ(dialog.DoModal(), CAdUiBaseDialog::kCancel);
    m_session.setDialogDriver(nullptr);
}

void DefinitionDialogTest::select(CDialogUnderTest &dialog, std::initializer_list<const wchar_t *> names)
{
    std::vector<AcDbObjectId> ids;
    for (const wchar_t *name : names) {
        const auto section = network().sectionByName(name);
        ASSERT_TRUE(section);
        ids.push_back(section->GetObjectId());
    }
    m_session.setNextSelection(std::move(ids));
    dialog.click(203);
}

AcDbObjectId DefinitionDialogTest::addSection(const std::wstring &name, const AcGePoint3d &from, const AcGePoint3d &to)
{
    return addSectionEntity(name, std::make_unique<AcDbLine>(from, to));
}

AcDbObjectId DefinitionDialogTest::addArcSection(const std::wstring &name, const AcGePoint3d &center, double radius)
{
    return addSectionEntity(name, std::make_unique<AcDbArc>(center, radius, 0.0, std::acos(-1.0)));
}

AcDbObjectId DefinitionDialogTest::addSectionEntity(const std::wstring &name, std::unique_ptr<AcDbEntity> entity)
{
    const std::size_t layer = drawing().ensureLayer(velmor::kSectionLayer);
    AcDbEntity &section = *entity;
    const AcDbObjectId id = drawing().append(std::move(entity));
    drawing().setLayerOf(section, layer);
    velmor::SectionData data;
    data.guid = L"{" + name + L"}";
    data.name = name;
    drawing().setData(section, velmor::kSectionKey, velmor::itemsOf(data));
    return id;
}

AcDbObjectId DefinitionDialogTest::addLine(double x1, double y1, double x2, double y2, const wchar_t *layer)
{
    const std::size_t index = drawing().ensureLayer(layer);
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(x1, y1), AcGePoint3d(x2, y2));
    AcDbLine &entity = *line;
    const AcDbObjectId id = drawing().append(std::move(line));
    drawing().setLayerOf(entity, index);
    return id;
}

AcDbObjectId DefinitionDialogTest::addBox(double x1, double y1, double x2, double y2, const wchar_t *layer)
{
    const std::size_t index = drawing().ensureLayer(layer);
    auto box = std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{x1, y1, 0}, {x2, y1, 0}, {x2, y2, 0}, {x1, y2, 0}}, true);
    AcDbPolyline &entity = *box;
    const AcDbObjectId id = drawing().append(std::move(box));
    drawing().setLayerOf(entity, index);
    return id;
}

void DefinitionDialogTest::setLayers(const std::vector<std::wstring> &layers)
{
    velmor::DataItems items;
    for (const std::wstring &layer : layers)
        items.push_back({1, layer});
    drawing().setDictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_LAYERS", items);
}

void DefinitionDialogTest::setSetting(const char *key, const velmor::SettingValue &value)
{
    const auto result = velmor::Services::instance().set(key, value);
    ASSERT_TRUE(result) << result.message;
}

std::wstring DefinitionDialogTest::message(unsigned number)
{
    return CModuleConfiguration::Instance()->GetMsg(number);
}

std::vector<boost::shared_ptr<Sewage::CCatchmentArea>> DefinitionDialogTest::areas()
{
    Sewage::CatchmentAreas all;
    Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(all, Sewage::kTypeAll);
    return all;
}

boost::shared_ptr<Sewage::CCatchmentArea> DefinitionDialogTest::areaNamed(const std::wstring &name)
{
    for (const auto &area : areas()) {
        if (area->GetName() == name)
            return area;
    }
    return {};
}

Data::CDataBox DefinitionDialogTest::property(const Sewage::CCatchmentArea &area, const wchar_t *tag)
{
    Data::CDataBox box;
    area.GetPropertyData(tag, box);
    return box;
}

Data::CDataBox DefinitionDialogTest::attached(AcDbObjectId id, const wchar_t *key)
{
    Data::CDataBox box;
    CZEMCEntityPtr entity(id, AcDb::kForRead);
    EXPECT_TRUE(entity.isOpen());
    Data::CDataRW::Read(key, entity, box, 0, nullptr);
    return box;
}

std::vector<AcDbObjectId> DefinitionDialogTest::loosePolylines()
{
    std::vector<AcDbObjectId> ids;
    for (AcDbEntity *entity : drawing().modelSpace().entities()) {
        if (entity->isA() == AcDbPolyline::desc() && !entity->isErased() && entity->layer() != L"PARCELS" &&
            entity->layer() != L"VELMOR_CATCHMENTS")
            ids.push_back(entity->objectId());
    }
    return ids;
}

std::vector<AcDbObjectId> DefinitionDialogTest::hatches()
{
    std::vector<AcDbObjectId> ids;
    for (AcDbEntity *entity : drawing().modelSpace().entities()) {
        if (entity->isA() == AcDbHatch::desc() && !entity->isErased())
            ids.push_back(entity->objectId());
    }
    return ids;
}

std::vector<std::string> DefinitionDialogTest::calls(std::initializer_list<const char *> operations)
{
    std::vector<std::string> names;
    for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries()) {
        if (std::ranges::find(operations, entry.operation) != operations.end())
            names.push_back(entry.operation);
    }
    return names;
}

std::vector<velmor::JournalEntry> DefinitionDialogTest::entriesOf(const char *operation)
{
    std::vector<velmor::JournalEntry> found;
    for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries()) {
        if (entry.operation == operation)
            found.push_back(entry);
    }
    return found;
}
