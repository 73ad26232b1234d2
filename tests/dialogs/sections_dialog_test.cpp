// The dialog that shows the shares of an area's sections and edits them in place.
#include "tests/dialogs/small_dialog_fixture.h"

#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "dialogs/DlgCatchmentSections.h"
#include "host/drawing/Entities.h"
#include "host/editor/UndoHistory.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "tests/definition/journal_lines.h"
#include "tests/definition/made_area.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

using testing::ElementsAre;
using testing::IsEmpty;
using velmor::journalText;

namespace {

using ZEMGis::Sewage::CCatchmentAreaManager;
using ZEMGis::Sewage::SectionShares;

/// Counts the keys that reach a widget.
class CKeyCounter : public QObject {
public:
    explicit CKeyCounter(QWidget &widget) { widget.installEventFilter(this); }
    int m_nKeys = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_nKeys += event->type() == QEvent::KeyPress;
        return false;
    }
};

class SectionsDialog : public SmallDialogTest {
protected:
    using AreaPtr = boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea>;
    using SectionPtr = boost::shared_ptr<ZEMGis::Topology::CSection>;
    struct Row {
        std::wstring name, share;
        bool operator==(const Row &) const = default;
        friend std::ostream &operator<<(std::ostream &out, const Row &row)
        {
            return out << journalText(row.name) << ' ' << journalText(row.share);
        }
    };

    SectionsDialog()
    {
        for (const wchar_t *name : {L"D1", L"D2", L"D3"})
            addSection(name);
        m_area = makeArea(L"A", 1, 0);
        SectionShares shares{{section(L"D2"), 0.25}, {section(L"D1"), 0.5}};
        CCatchmentAreaManager::Instance()->AssignCA(shares, m_area);
    }
    void addSection(const std::wstring &name)
    {
        const std::size_t layer = drawing().ensureLayer(velmor::kSectionLayer);
        auto line = std::make_unique<AcDbLine>(AcGePoint3d(0, 100), AcGePoint3d(10, 100));
        AcDbEntity &entity = *line;
        drawing().append(std::move(line));
        drawing().setLayerOf(entity, layer);
        velmor::SectionData data;
        data.guid = L"{" + name + L"}";
        data.name = name;
        drawing().setData(entity, velmor::kSectionKey, velmor::itemsOf(data));
    }
    SectionPtr section(const wchar_t *name) { return drawing().component<velmor::Network>().sectionByName(name); }
    double share(const wchar_t *name)
    {
        SectionShares shares;
        CCatchmentAreaManager::Instance()->GetCatchmentAreaByGuid(m_area->GetGuid())->GetConnectedSections(shares);
        for (const auto &[section, share] : shares)
            if (section->GetName() == name)
                return share;
        return -1.0;
    }
    static CXListCtrl &list(const CAdUiBaseDialog &dialog) { return *dialog.Control<CXListCtrl>(103); }
    static std::vector<Row> rows(const CAdUiBaseDialog &dialog)
    {
        std::vector<Row> found;
        for (int row = 0; row < list(dialog).GetItemCount(); ++row)
            found.push_back({list(dialog).GetItemText(row, 0), list(dialog).GetItemText(row, 1)});
        return found;
    }
    /// As the list tells a change: the text is in the cell already.
    static void enter(CDlgCatchmentSections &dialog, int row, const std::wstring &text)
    {
        list(dialog).SetItemText(row, 1, text);
        EXPECT_TRUE(dialog.RunHandler([&] {
            EXPECT_EQ(dialog.OnWindowMessage(CXListCtrl::DataChangedMessage(), static_cast<std::uintptr_t>(row), 1), 0);
        }));
    }
    static void press(QWidget &target, Qt::Key key, const QString &text = {},
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(&target, &event);
    }
    /// Puts a text into the open editor.
    static void typeIntoEditor(CAdUiBaseDialog &dialog, const QString &text)
    {
        ASSERT_NE(list(dialog).GetEditBox(), nullptr);
        list(dialog).GetEditBox()->setText(text);
    }
    void runOver(const std::function<void(CDlgCatchmentSections &)> &drive)
    {
        CDlgCatchmentSections dialog;
        dialog.m_area = m_area;
        run(dialog, [&] { drive(dialog); });
    }

    AreaPtr m_area;
};

TEST_F(SectionsDialog, TextsOfBothLanguagesStandAtTheirControls)
{
    for (const char *language : {"hr", "en"}) {
        start(language);
        runOver([&](CDlgCatchmentSections &dialog) {
            EXPECT_EQ(dialog.windowTitle(), ToQString(message(1221)));
            EXPECT_EQ(text(dialog, 105), ToQString(message(1989)));
            EXPECT_EQ(text(dialog, 1), ToQString(message(60)));
            EXPECT_EQ(text(dialog, 100), "DEL");
            EXPECT_EQ(list(dialog).GetHeaderText(0), message(3098));
            EXPECT_EQ(list(dialog).GetHeaderText(1), message(4434) + L" [%]");
            EXPECT_GE(list(dialog).GetColumnWidth(0), 100);
            EXPECT_EQ(dialog.GetDlgItem(2), nullptr) << "there is nothing to cancel";
        });
    }
}

TEST_F(SectionsDialog, TheAreaAndItsSectionsStandWithFourDecimalsInTheirOrder)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        EXPECT_EQ(text(dialog, 104), "0.0100");
        EXPECT_TRUE(dialog.Control<QLineEdit>(104)->isReadOnly());
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"}));
        EXPECT_EQ(list(dialog).GetItemData(0), reinterpret_cast<std::uintptr_t>(section(L"D2").get()));
        EXPECT_TRUE(list(dialog).GetCells().GetRecord(0, 1)->numeric);
        EXPECT_FALSE(list(dialog).GetCells().GetRecord(0, 0)->numeric);
    });
}

TEST_F(SectionsDialog, WithoutAnAreaItIsEmpty)
{
    CDlgCatchmentSections dialog;
    const int result = run(dialog, [&] {
        EXPECT_EQ(text(dialog, 104), "");
        EXPECT_THAT(rows(dialog), IsEmpty());
        EXPECT_EQ(list(dialog).GetColumnCount(), 2);
        click(dialog, 1);
    });
    EXPECT_EQ(result, CAdUiBaseDialog::kOk);
}

TEST_F(SectionsDialog, AnEntryGoesToTheAreaAtOnceAndIsWrittenAnew)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        const auto lines = recorded([&] { enter(dialog, 1, L"12.5"); });
        EXPECT_THAT(lines, ElementsAre("CCatchmentArea::SetConnectedSectionShare(" + journalText(m_area->GetGuid()) +
                                       ", " + journalText(section(L"D1")->GetHandleText()) + ", 0.125, 1)"));
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"12.5000"}));
    });
    EXPECT_EQ(share(L"D1"), 0.125) << "though the dialog ended by its cancel path";
    EXPECT_EQ(share(L"D2"), 0.25);
}

TEST_F(SectionsDialog, ExactlyZeroAndExactlyAHundredAreTaken)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        enter(dialog, 0, L"0");
        EXPECT_EQ(share(L"D2"), 0.0);
        enter(dialog, 0, L"100");
        EXPECT_EQ(share(L"D2"), 1.0);
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"100.0000"}, Row{L"D1", L"50.0000"}));
    });
}

TEST_F(SectionsDialog, AnEntryBeyondTheRangeAndOneThatIsNoNumberBringTheStoredShareBackWithoutAWord)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        for (const wchar_t *refused : {L"100.5", L"-1", L"100.0001", L"x", L"", L"5 %", L"1e9"}) {
            const auto lines = recorded([&] { enter(dialog, 0, refused); });
            EXPECT_THAT(lines, IsEmpty()) << journalText(refused);
            EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"}));
        }
    });
    EXPECT_EQ(share(L"D2"), 0.25);
    EXPECT_THAT(m_session.alerts(), IsEmpty());
}

TEST_F(SectionsDialog, ADecimalCommaIsTaken)
{
    runOver([&](CDlgCatchmentSections &dialog) { enter(dialog, 0, L"33,25"); });
    EXPECT_EQ(share(L"D2"), 0.3325);
}

TEST_F(SectionsDialog, SharesNeedNotAddUpToAHundred)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        enter(dialog, 0, L"90");
        enter(dialog, 1, L"80");
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"90.0000"}, Row{L"D1", L"80.0000"}));
    });
    EXPECT_NEAR(share(L"D2") + share(L"D1"), 1.7, 1e-9);
}

TEST_F(SectionsDialog, ARowWithoutASectionOnlyFillsTheListAnew)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        list(dialog).SetItemData(0, 0);
        const auto lines = recorded([&] { enter(dialog, 0, L"10"); });
        EXPECT_THAT(lines, IsEmpty());
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"}));
    });
}

TEST_F(SectionsDialog, ASectionThatTheNetworkDoesNotHaveAnyMoreIsHandedOnAsNull)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        auto *object = drawing().findByHandle(section(L"D2")->GetObjectId().handle().value());
        drawing().erase(static_cast<AcDbEntity &>(*object));
        const auto lines = recorded([&] { enter(dialog, 0, L"10"); });
        EXPECT_THAT(lines, ElementsAre("CCatchmentArea::SetConnectedSectionShare(" + journalText(m_area->GetGuid()) +
                                       ", null, 0.1, 1)"));
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D1", L"50.0000"}));
    });
}

TEST_F(SectionsDialog, TypedInPlaceAShareGoesTheWholeWay)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        ASSERT_TRUE(list(dialog).EditCell(1, 1));
        typeIntoEditor(dialog, "12.5");
        press(*list(dialog).GetEditBox(), Qt::Key_Return);
        EXPECT_FALSE(list(dialog).IsEditing());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"12.5000"}));
        EXPECT_EQ(list(dialog).currentIndex().row(), 1) << "the keys go on from there";
        EXPECT_FALSE(list(dialog).EditCell(0, 0)) << "a name is no share";
    });
    EXPECT_EQ(share(L"D1"), 0.125);
}

TEST_F(SectionsDialog, TypedInPlaceTheListsRuleComesFirstAndTheDialogsBehindIt)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        // Refused by the list (above a thousand, below a thousandth), then by the dialog (above a hundred).
        for (const char *refused : {"1000.5", "0.0001", "500"}) {
            ASSERT_TRUE(list(dialog).EditCell(0, 1)) << refused;
            typeIntoEditor(dialog, refused);
            press(*list(dialog).GetEditBox(), Qt::Key_Return);
            EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"})) << refused;
        }
    });
    EXPECT_EQ(share(L"D2"), 0.25);
}

TEST_F(SectionsDialog, ByKeysAloneAShareIsEdited)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        EXPECT_EQ(dialog.focusWidget(), &list(dialog));
        press(list(dialog), Qt::Key_F2);
        ASSERT_TRUE(list(dialog).IsEditing());
        typeIntoEditor(dialog, "40");
        press(*list(dialog).GetEditBox(), Qt::Key_Return);
        press(list(dialog), Qt::Key_Down);
        press(list(dialog), Qt::Key_F2);
        ASSERT_TRUE(list(dialog).IsEditing());
        typeIntoEditor(dialog, "60");
        press(*list(dialog).GetEditBox(), Qt::Key_Enter);
    });
    EXPECT_EQ(share(L"D2"), 0.4);
    EXPECT_EQ(share(L"D1"), 0.6);
}

TEST_F(SectionsDialog, ATypedDecimalCommaIsTakenToo)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        ASSERT_TRUE(list(dialog).EditCell(0, 1));
        for (const auto &[key, letter] :
             {std::pair{Qt::Key_1, "1"}, {Qt::Key_2, "2"}, {Qt::Key_Comma, ","}, {Qt::Key_5, "5"}})
            press(*list(dialog).GetEditBox(), key, QString::fromLatin1(letter));
        press(*list(dialog).GetEditBox(), Qt::Key_Return);
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"12.5000"}, Row{L"D1", L"50.0000"}));
    });
    EXPECT_EQ(share(L"D2"), 0.125);
}

TEST_F(SectionsDialog, ALongNameIsShownWholeAndAnEndlessOneDoesNotWidenTheDialogWithoutEnd)
{
    const auto widthWith = [&](const std::wstring &name) {
        addSection(name);
        SectionShares shares{{section(name.c_str()), 1.0}};
        CCatchmentAreaManager::Instance()->AssignCA(shares, m_area);
        int width = 0;
        runOver([&](CDlgCatchmentSections &dialog) {
            width = list(dialog).GetColumnWidth(0);
            QFont bold = list(dialog).font();
            bold.setBold(true);
            const int text = QFontMetrics(bold).horizontalAdvance(ToQString(name));
            if (name.size() < 30)
                EXPECT_GE(width, text + 12);
            else
                EXPECT_LT(width, text / 4);
        });
        return width;
    };
    EXPECT_EQ(widthWith(L"S"), 100);
    EXPECT_GT(widthWith(L"Collector of the old town"), 100);
    widthWith(std::wstring(1000, L'W'));
}

TEST_F(SectionsDialog, EscapeInTheEditorAbandonsTheEntryAndLeavesTheDialogOpen)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        ASSERT_TRUE(list(dialog).EditCell(0, 1));
        typeIntoEditor(dialog, "70");
        press(*list(dialog).GetEditBox(), Qt::Key_Escape);
        EXPECT_FALSE(list(dialog).IsEditing());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"}));
        press(list(dialog), Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible()) << "without an editor it ends the dialog";
    });
    EXPECT_EQ(share(L"D2"), 0.25);
}

TEST_F(SectionsDialog, AKeyWithCtrlGoesToTheEditorAndNoFurther)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        ASSERT_TRUE(list(dialog).EditCell(0, 1));
        QLineEdit &editor = *list(dialog).GetEditBox();
        typeIntoEditor(dialog, "7");
        press(editor, Qt::Key_A, {}, Qt::ControlModifier);
        EXPECT_EQ(editor.selectedText(), "7");
        CKeyCounter atList(list(dialog)), atDialog(dialog);
        press(editor, Qt::Key_F9, {}, Qt::ControlModifier);
        EXPECT_TRUE(list(dialog).IsEditing());
        EXPECT_EQ(atList.m_nKeys + atDialog.m_nKeys, 0);
        press(editor, Qt::Key_8, "8");
        EXPECT_EQ(editor.text(), "8") << "other keys take the normal route";
    });
}

TEST_F(SectionsDialog, EnterWithoutAnEditorMovesTheFocusAndNeverEndsTheDialog)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        QWidget *first = dialog.GetDlgItem(104);
        first->setFocus();
        std::vector<QWidget *> visited{dialog.focusWidget()};
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Return}) {
            press(*dialog.focusWidget(), key);
            visited.push_back(dialog.focusWidget());
            EXPECT_TRUE(dialog.isVisible());
        }
        EXPECT_THAT(visited, ElementsAre(first, &list(dialog), dialog.GetDlgItem(1), first));
    });
}

TEST_F(SectionsDialog, NoButtonLooksAsIfEnterPressedIt)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        dialog.GetDlgItem(1)->setFocus();
        EXPECT_FALSE(dialog.Control<QPushButton>(1)->isDefault());
        press(*dialog.GetDlgItem(1), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
    });
}

TEST_F(SectionsDialog, ItKeepsTheFocusWhenTheHostAsks)
{
    CDlgCatchmentSections dialog;
    EXPECT_EQ(dialog.OnWindowMessage(0x7101, 0, 0), 1);
    EXPECT_EQ(dialog.OnWindowMessage(0x7100, 0, 0), 0);
}

TEST_F(SectionsDialog, TheHiddenButtonDoesNothing)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        EXPECT_FALSE(dialog.GetDlgItem(100)->isVisible());
        EXPECT_THAT(recorded([&] { click(dialog, 100); }), IsEmpty());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"}));
    });
}

TEST_F(SectionsDialog, AfterAHandlerThatFailedTheListShowsWhatTheAreaHas)
{
    runOver([&](CDlgCatchmentSections &dialog) {
        EXPECT_FALSE(dialog.RunHandler([&] {
            list(dialog).SetItemText(0, 1, L"75");
            dialog.OnWindowMessage(CXListCtrl::DataChangedMessage(), 0, 1);
            EXPECT_EQ(list(dialog).GetItemText(0, 1), L"75.0000");
            throw std::runtime_error("full");
        }));
        EXPECT_THAT(rows(dialog), ElementsAre(Row{L"D2", L"25.0000"}, Row{L"D1", L"50.0000"}));
        enter(dialog, 0, L"30");
    });
    EXPECT_EQ(share(L"D2"), 0.3);
}

TEST_F(SectionsDialog, EachEntryIsAnUndoStepOfItsOwn)
{
    auto &history = drawing().component<velmor::UndoHistory>();
    const std::size_t before = history.undoCount();
    runOver([&](CDlgCatchmentSections &dialog) {
        enter(dialog, 0, L"10");
        enter(dialog, 0, L"x");
        enter(dialog, 1, L"20");
    });
    EXPECT_EQ(history.undoCount(), before + 2) << "a refused entry is none";
    EXPECT_EQ(history.undoName(), message(1221));
    ASSERT_EQ(history.undo(), 1u);
    EXPECT_EQ(share(L"D1"), 0.5);
    EXPECT_EQ(share(L"D2"), 0.1);
}

} // namespace
