#include "tests/review/review_fixture.h"

#include "controls/Mnemonics.h"
#include "controls/WideText.h"
#include "host/network/NetworkData.h"
#include "tests/dialogs/DialogProgram.h"

#include <QStyleOptionViewItem>
#include <QTest>

#include <cstdlib>

namespace fs = std::filesystem;
using namespace ZEMGis;

namespace {

boost::shared_ptr<Data::CProperty> propertyOf(const wchar_t *tag, const Data::CDataBox &value)
{
    boost::shared_ptr<Data::CProperty> property(new Data::CProperty);
    property->SetTag(tag);
    property->SetValue(value);
    return property;
}

std::wstring guidOf(const std::wstring &name)
{
    return name.empty() ? std::wstring() : L"{" + name + L"}";
}

} // namespace

// --- The dialog -------------------------------------------------------------------------------------------------

QString CReviewUnderTest::text(int control) const
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

std::vector<std::wstring> CReviewUnderTest::treeNames() const
{
    std::vector<std::wstring> names;
    for (int row = 0; row < tree()->topLevelItemCount(); ++row)
        names.push_back(ToWide(tree()->topLevelItem(row)->text(0)));
    return names;
}

std::vector<std::wstring> CReviewUnderTest::checkedNames() const
{
    std::vector<std::wstring> names;
    for (const AreaPtr &area : CheckedAreas())
        names.push_back(area ? area->GetName() : L"(null)");
    return names;
}

std::wstring CReviewUnderTest::selectedName() const
{
    const QTreeWidgetItem *selected = tree()->SelectedItem();
    return selected ? ToWide(selected->text(0)) : std::wstring();
}

CCatchmentTreeItem *CReviewUnderTest::item(const std::wstring &area) const
{
    for (int row = 0; row < tree()->topLevelItemCount(); ++row) {
        if (ToWide(tree()->topLevelItem(row)->text(0)) == area)
            return tree()->AreaItem(row);
    }
    ADD_FAILURE() << "no item " << ToQString(area).toStdString();
    return nullptr;
}

CCatchmentTreeItem *CReviewUnderTest::item(const std::wstring &area, const std::wstring &section) const
{
    const CCatchmentTreeItem *parent = item(area);
    for (int row = 0; parent && row < parent->childCount(); ++row) {
        if (ToWide(parent->child(row)->text(0)) == section)
            return static_cast<CCatchmentTreeItem *>(parent->child(row));
    }
    ADD_FAILURE() << "no section " << ToQString(section).toStdString();
    return nullptr;
}

QRect CReviewUnderTest::checkBoxOf(CCatchmentTreeItem *clicked) const
{
    if (clicked->parent())
        clicked->parent()->setExpanded(true);
    tree()->scrollToItem(clicked);
    QStyleOptionViewItem option;
    option.initFrom(tree());
    option.rect = tree()->visualItemRect(clicked);
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.decorationSize = tree()->iconSize();
    option.text = clicked->text(0);
    option.widget = tree();
    return tree()->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, tree());
}

void CReviewUnderTest::clickItem(CCatchmentTreeItem *clicked)
{
    const QRect box = checkBoxOf(clicked);
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, box.center() + QPoint(2 * box.width(), 0));
}

void CReviewUnderTest::clickCheckBox(CCatchmentTreeItem *clicked)
{
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, checkBoxOf(clicked).center());
}

void CReviewUnderTest::runPosted()
{
    QCoreApplication::sendPostedEvents();
}

void CReviewUnderTest::press(Qt::Key key, const QString &text)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(tree(), &event);
    runPosted();
}

QLineEdit *CReviewUnderTest::treeEditor() const
{
    return tree()->viewport()->findChild<QLineEdit *>();
}

void CReviewUnderTest::editInTree(CCatchmentTreeItem *edited, const QString &text, Qt::Key end)
{
    tree()->editItem(edited);
    QLineEdit *editor = treeEditor();
    ASSERT_NE(editor, nullptr);
    editor->setText(text);
    QTest::keyClick(editor, end);
    runPosted(); // the editor tells the tree by a posted call
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// --- The host and its drawing -----------------------------------------------------------------------------------

ReviewDialogTest::ReviewDialogTest() : m_userFolder(newDialogFolder("velmor_review_"))
{
    dialogApplication();
    const char *source = std::getenv("VELMOR_SOURCE_DIR");
    velmor::Services::instance().start({.language = "hr"},
                                       velmor::Paths({fs::path(source ? source : ".") / "resources"}, m_userFolder));
    m_session.setMessageSink([](velmor::MessageKind, const std::wstring &) {});
    m_session.setDrawing(velmor::Drawing::createNew());
}

ReviewDialogTest::~ReviewDialogTest()
{
    velmor::Journal::instance().setRecording(false);
    velmor::Journal::instance().clear();
    std::error_code ignored;
    fs::remove_all(m_userFolder, ignored);
}

int ReviewDialogTest::run(const Drive &drive)
{
    m_session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        if (auto *underTest = dynamic_cast<CReviewUnderTest *>(&dialog))
            drive(*underTest);
        else if (m_nested)
            m_nested(dialog);
    });
    CReviewUnderTest dialog;
    const int result = dialog.DoModal();
    m_session.setDialogDriver(nullptr);
    return result;
}

AcDbObjectId ReviewDialogTest::addNode(const std::wstring &name, const AcGePoint3d &at)
{
    const std::size_t layer = drawing().ensureLayer(velmor::kNodeLayer);
    auto point = std::make_unique<velmor::PointEntity>(at);
    AcDbEntity &entity = *point;
    const AcDbObjectId id = drawing().append(std::move(point));
    drawing().setLayerOf(entity, layer);
    drawing().setData(entity, velmor::kNodeKey, velmor::itemsOf(velmor::NodeData{.guid = guidOf(name), .name = name}));
    return id;
}

AcDbObjectId ReviewDialogTest::addSection(const std::wstring &name, const AcGePoint3d &from, const AcGePoint3d &to,
                                          const std::wstring &startNode, const std::wstring &endNode)
{
    const std::size_t layer = drawing().ensureLayer(velmor::kSectionLayer);
    auto line = std::make_unique<AcDbLine>(from, to);
    AcDbEntity &entity = *line;
    const AcDbObjectId id = drawing().append(std::move(line));
    drawing().setLayerOf(entity, layer);
    velmor::SectionData data;
    data.guid = guidOf(name);
    data.name = name;
    data.startNode = guidOf(startNode);
    data.endNode = guidOf(endNode);
    drawing().setData(entity, velmor::kSectionKey, velmor::itemsOf(data));
    return id;
}

ReviewDialogTest::AreaPtr ReviewDialogTest::addArea(const std::wstring &name, int mask, double x, double coefficient,
                                                    double population, const Shares &shares)
{
    boost::shared_ptr<Data::CProperties> bag(new Data::CProperties);
    bag->AddProperty(propertyOf(L"CA_GUID", guidOf(name)));
    bag->AddProperty(propertyOf(L"CA_POPULATION", population));
    bag->AddProperty(propertyOf(L"CA_COEFF", coefficient));
    const AcGePoint3dArray ring{{x, 0}, {x + 10, 0}, {x + 10, 10}, {x, 10}};
    auto *manager = Sewage::CCatchmentAreaManager::Instance();
    AreaPtr area = manager->CreateCA(Utility::CTransform::PolygonText(Utility::CTransform::AcadPoly2GeosPoly(ring)),
                                     name, mask, bag);
    Sewage::SectionShares pairs;
    for (const auto &[section, share] : shares)
        pairs.emplace_back(network().sectionByName(section), share);
    if (!pairs.empty())
        manager->AssignCA(pairs, area);
    return area;
}

ReviewDialogTest::AreaPtr ReviewDialogTest::addHiddenArea(const std::wstring &section, double squareMetres, int mask)
{
    boost::shared_ptr<Data::CProperties> bag(new Data::CProperties);
    bag->AddProperty(propertyOf(L"CA_GUID", L"{hidden " + section + L"}"));
    return Sewage::CCatchmentAreaManager::Instance()->SetHiddenCA(network().sectionByName(section), squareMetres, mask,
                                                                  bag);
}

void ReviewDialogTest::setSetting(const char *key, const velmor::SettingValue &value)
{
    const auto result = velmor::Services::instance().set(key, value);
    ASSERT_TRUE(result) << result.message;
}

void ReviewDialogTest::keep(const char *key, const velmor::DataItem &value)
{
    drawing().setDictionaryEntry("ZEMX_LSD2", std::string("ZEMX_CATCHMENT_") + key, {value});
}

velmor::DataItems ReviewDialogTest::kept(const char *key)
{
    const auto items = drawing().dictionaryEntry("ZEMX_LSD2", std::string("ZEMX_CATCHMENT_") + key);
    return items ? *items : velmor::DataItems();
}

std::wstring ReviewDialogTest::message(unsigned number)
{
    return CModuleConfiguration::Instance()->GetMsg(number);
}

std::vector<ReviewDialogTest::AreaPtr> ReviewDialogTest::areas()
{
    Sewage::CatchmentAreas all;
    Sewage::CCatchmentAreaManager::Instance()->GetAllCatchmentAreas(all, Sewage::kTypeAll);
    return all;
}

ReviewDialogTest::AreaPtr ReviewDialogTest::areaNamed(const std::wstring &name)
{
    for (const AreaPtr &area : areas()) {
        if (area->GetName() == name)
            return area;
    }
    return {};
}
