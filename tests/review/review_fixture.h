// The review dialog on a real host with a made drawing, and its controls driven by number as a person would.
#pragma once

#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"
#include "controls/XColorStatic.h"
#include "controls/XListCtrl.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/services/Services.h"
#include "review/DlgEditCatchmentArea.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Opens what a test needs besides the controls.
class CReviewUnderTest : public CDlgEditCatchmentArea {
public:
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;
    using CDlgEditCatchmentArea::CheckedAreas;
    using CDlgEditCatchmentArea::CheckedGuids;
    using CDlgEditCatchmentArea::CurrentArea;
    using CDlgEditCatchmentArea::DecimalPlaces;
    using CDlgEditCatchmentArea::HighlightIds;
    using CDlgEditCatchmentArea::LabelAttributes;
    using CDlgEditCatchmentArea::LabelBlock;
    using CDlgEditCatchmentArea::LabelBlockName;
    using CDlgEditCatchmentArea::LabelBlockPath;

    void click(int control)
    {
        auto *button = Control<QAbstractButton>(control);
        ASSERT_NE(button, nullptr) << control;
        button->click(); // a disabled button takes no click
    }
    /// A button that is never shown takes the click all the same.
    void clickHidden(int control)
    {
        EXPECT_FALSE(GetDlgItem(control)->isVisible()) << control;
        click(control);
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
    /// Text colour of a coloured static.
    unsigned colour(int control) const { return Control<CXColorStatic>(control)->GetTextColor().value_or(0); }

    CCatchmentTree *tree() const { return Control<CCatchmentTree>(107); }
    CXListCtrl *list() const { return Control<CXListCtrl>(108); }
    /// Names of the areas in the tree, in order.
    std::vector<std::wstring> treeNames() const;
    /// Names of the checked areas, in the set's order.
    std::vector<std::wstring> checkedNames() const;
    std::wstring currentName() const { return CurrentArea() ? CurrentArea()->GetName() : std::wstring(); }
    std::wstring selectedName() const;
    CCatchmentTreeItem *item(const std::wstring &area) const;
    CCatchmentTreeItem *item(const std::wstring &area, const std::wstring &section) const;
    /// Selects as the arrow keys do, without a click.
    void select(const std::wstring &area) { tree()->SelectItem(item(area)); }
    void selectSection(const std::wstring &area, const std::wstring &section)
    {
        tree()->SelectItem(item(area, section));
    }
    /// A click of the mouse on the item's text.
    void clickItem(CCatchmentTreeItem *clicked);
    /// A click of the mouse on the item's check box; what it posts stays posted.
    void clickCheckBox(CCatchmentTreeItem *clicked);
    /// What was posted happens.
    static void runPosted();
    /// Brings the area's tick to that state by the mouse, with all that follows.
    void tick(const std::wstring &area, bool on = true)
    {
        if (item(area)->IsChecked() == on)
            return;
        clickCheckBox(item(area));
        runPosted();
        EXPECT_EQ(item(area)->IsChecked(), on);
    }
    /// A key for the tree; what it posts happens.
    void press(Qt::Key key, const QString &text = {});
    /// Opens the editor of the area's name, types and ends it with Enter or with Escape.
    void editName(const std::wstring &area, const QString &text) { editInTree(item(area), text, Qt::Key_Return); }
    void abandonName(const std::wstring &area, const QString &text) { editInTree(item(area), text, Qt::Key_Escape); }
    void tellNameEdited(CCatchmentTreeItem *edited, const QString &text) { Q_EMIT tree()->NameEdited(edited, text); }
    /// The open editor of the tree; null when there is none.
    QLineEdit *treeEditor() const;

private:
    QRect checkBoxOf(CCatchmentTreeItem *clicked) const;
    void editInTree(CCatchmentTreeItem *edited, const QString &text, Qt::Key end);
};

class ReviewDialogTest : public ::testing::Test {
protected:
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;
    using Drive = std::function<void(CReviewUnderTest &)>;
    using DriveNested = std::function<void(CAdUiBaseDialog &)>;
    using Shares = std::vector<std::pair<const wchar_t *, double>>;

    ReviewDialogTest();
    ~ReviewDialogTest() override;

    /// Runs the dialog once; drive works it while it is shown, then it is cancelled. What DoModal gave.
    int run(const Drive &drive);
    /// What works the dialogs that the dialog opens; without it they are cancelled.
    void onNested(DriveNested drive) { m_nested = std::move(drive); }

    velmor::Drawing &drawing() { return *m_session.drawing(); }
    velmor::Network &network() { return drawing().component<velmor::Network>(); }
    std::vector<std::wstring> &alerts() { return m_session.alerts(); }
    /// A node named so; its GUID is the name in braces.
    AcDbObjectId addNode(const std::wstring &name, const AcGePoint3d &at);
    /// A section named so, GUID as above; nodes by name, empty for none.
    AcDbObjectId addSection(const std::wstring &name, const AcGePoint3d &from, const AcGePoint3d &to,
                            const std::wstring &startNode = {}, const std::wstring &endNode = {});
    /// A square of 10 by 10 units whose lower left corner is (x, 0), which is 0.01 ha. GUID as above.
    AreaPtr addArea(const std::wstring &name, int mask, double x, double coefficient = 0.5, double population = 100.0,
                    const Shares &shares = {});
    AreaPtr addHiddenArea(const std::wstring &section, double squareMetres, int mask);
    void setSetting(const char *key, const velmor::SettingValue &value);
    /// A value that the drawing keeps for the dialog.
    void keep(const char *key, const velmor::DataItem &value);
    velmor::DataItems kept(const char *key);

    static std::wstring message(unsigned number);
    static std::vector<AreaPtr> areas();
    static AreaPtr areaNamed(const std::wstring &name);
    /// The area under the point is picked; nothing there is a miss.
    void pickAt(double x, double y) { m_session.answers().push({AcGePoint3d(x, y)}); }
    void endPicking() { m_session.answers().push({velmor::Answer::Escape{}}); }

    DriveNested m_nested;
    std::filesystem::path m_userFolder;
    velmor::Session m_session;
};
