// The definition dialog on a real host with a made drawing: parcels as boundary linework, a small network, and the
// controls driven by number as a person would.
#pragma once

#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"
#include "controls/XColorStatic.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/services/Services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Opens what a test needs besides the controls.
class CDialogUnderTest : public CDlgCreateCatchmentArea {
public:
    using CDlgCreateCatchmentArea::AddBoundaryRow;
    using CDlgCreateCatchmentArea::LabelAttributes;
    using CDlgCreateCatchmentArea::LabelBlock;
    using CDlgCreateCatchmentArea::LastBoundary;
    using CDlgCreateCatchmentArea::LastIslands;
    const AcDbObjectIdArray &tempBoundaries() const { return m_tempBoundaries; }

    /// A row over a boundary polyline with islands; the area counts in square metres.
    void addMainRow(AcDbObjectId boundary, double area, AcDbObjectIdArray islands = {})
    {
        auto item = boost::shared_ptr<CCatchItemData>(new CCatchItemData);
        item->m_id = boundary;
        item->m_islands = std::move(islands);
        item->m_area = area / 10000.0;
        AddBoundaryRow(item, L"main", area);
    }
    void addIslandRow(AcDbObjectId boundary, double area)
    {
        auto item = boost::shared_ptr<CCatchItemData>(new CCatchItemData);
        item->m_bIsland = 1;
        item->m_id = boundary;
        item->m_area = area;
        AddBoundaryRow(item, L"island", area);
    }

    void click(int control)
    {
        auto *button = Control<QAbstractButton>(control);
        ASSERT_NE(button, nullptr) << control;
        button->click(); // a disabled button takes no click
    }
    /// Chooses the entry with that item data as a person does.
    void choose(int control, int itemData)
    {
        auto *combo = Control<QComboBox>(control);
        const int index = combo->findData(itemData);
        ASSERT_GE(index, 0) << control << " has no entry " << itemData;
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
    }
    void type(int control, const QString &text) { Control<QLineEdit>(control)->setText(text); }
    void check(int control, bool on)
    {
        if (Control<QAbstractButton>(control)->isChecked() != on)
            click(control);
    }
    bool isChecked(int control) const { return Control<QAbstractButton>(control)->isChecked(); }
    bool isEnabled(int control) const { return GetDlgItem(control)->isEnabled(); }
    /// What the control shows, without keyboard marks.
    QString text(int control) const;
    /// Text colour of a coloured static, and what a swatch shows.
    unsigned colour(int control) const { return Control<CXColorStatic>(control)->GetTextColor().value_or(0); }
    unsigned swatch(int control) const { return Control<CXColorStatic>(control)->GetBackgroundColor().value_or(0); }
    QTreeWidget *list() const { return Control<QTreeWidget>(210); }
    void selectRows(std::initializer_list<int> rows)
    {
        list()->clearSelection();
        for (const int row : rows)
            list()->topLevelItem(row)->setSelected(true);
    }
};

class DefinitionDialogTest : public ::testing::Test {
protected:
    DefinitionDialogTest();
    ~DefinitionDialogTest() override;

    using Drive = std::function<void(CDialogUnderTest &)>;
    using DriveNested = std::function<void(CAdUiBaseDialog &)>;
    /// Runs the dialog once and closes it; drive works it while it is shown.
    void run(const Drive &drive);
    /// What works the dialogs that the dialog opens; without it they are cancelled.
    void onNested(DriveNested drive) { m_nested = std::move(drive); }
    /// Selects sections by name in the open dialog.
    void select(CDialogUnderTest &dialog, std::initializer_list<const wchar_t *> names);

    velmor::Drawing &drawing() { return *m_session.drawing(); }
    velmor::Network &network() { return drawing().component<velmor::Network>(); }
    std::vector<std::wstring> &alerts() { return m_session.alerts(); }
    AcDbObjectId addSection(const std::wstring &name, const AcGePoint3d &from, const AcGePoint3d &to);
    /// A section that is the upper half of a circle; its middle is straight above the centre.
    AcDbObjectId addArcSection(const std::wstring &name, const AcGePoint3d &center, double radius);
    AcDbObjectId addLine(double x1, double y1, double x2, double y2, const wchar_t *layer = L"PARCELS");
    AcDbObjectId addBox(double x1, double y1, double x2, double y2, const wchar_t *layer = L"PARCELS");
    void setLayers(const std::vector<std::wstring> &layers);
    void setSetting(const char *key, const velmor::SettingValue &value);

    static std::wstring message(unsigned number);
    static std::vector<boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>> areas();
    static boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> areaNamed(const std::wstring &name);
    static ZEMGis::Data::CDataBox property(const ZEMGis::Sewage::CCatchmentArea &area, const wchar_t *tag);
    /// Attached data of an entity.
    static ZEMGis::Data::CDataBox attached(AcDbObjectId id, const wchar_t *key);
    /// Ids of all light-weight polylines in model space that aren't erased, but for those of areas.
    std::vector<AcDbObjectId> loosePolylines();
    std::vector<AcDbObjectId> hatches();

    /// Names of the journal's entries among those asked for, in order.
    static std::vector<std::string> calls(std::initializer_list<const char *> operations);
    static std::vector<velmor::JournalEntry> entriesOf(const char *operation);

    AcDbObjectId addSectionEntity(const std::wstring &name, std::unique_ptr<AcDbEntity> entity);
    DriveNested m_nested;

    std::filesystem::path m_userFolder;
    velmor::Session m_session;
};
