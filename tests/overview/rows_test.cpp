// The rows: branches, sections, areas, their values and sums; and the dialog around them.
#include "tests/overview/overview_fixture.h"

#include "host/services/Services.h"
#include "overview/OverviewTexts.h"

#include <QLineEdit>
#include <QTest>

#include <map>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class OverviewRows : public COverviewTest {};

} // namespace

TEST_F(OverviewRows, StandBranchByBranchFromTheOutfallUpstreamWithAreasBeneathTheirSections)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kFromColumn, kToColumn}),
                    ElementsAre("Outfall O1", "  S1|M1|O1", "    A", "  Branch at M1: T1", "    T1|M4|M1", "      B",
                                "  S2|M2|M1", "    A", "  S3|M3|M2", "    C"));
    });
}

TEST_F(OverviewRows, ShowLengthsAndSumsPerSectionAndPerBranch)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kLengthColumn, kDrainsColumn, kCoefficientColumn}),
                    ElementsAre("Outfall O1|40.00|0.0290|0.5948", "  S1|10.00|0.0025|0.5000", "    A||0.0025|0.5000",
                                "  Branch at M1: T1|10.00|0.0100|1.0000", "    T1|10.00|0.0100|1.0000",
                                "      B||0.0100|1.0000", "  S2|10.00|0.0075|0.5000", "    A||0.0075|0.5000",
                                "  S3|10.00|0.0090|0.2500", "    C||0.0090|0.2500"));
    });
}

TEST_F(OverviewRows, AnAreaShowsItsOwnHectaresAndWhatOfThemDrainsToTheSection)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kHectaresColumn, kShareColumn, kDrainsColumn}),
                    ElementsAre("Outfall O1|||0.0290", "  S1|||0.0025", "    A|0.0100|25.0000|0.0025",
                                "  Branch at M1: T1|||0.0100", "    T1|||0.0100", "      B|0.0100|100.0000|0.0100",
                                "  S2|||0.0075", "    A|0.0100|75.0000|0.0075", "  S3|||0.0090",
                                "    C|0.0100|90.0000|0.0090"));
        EXPECT_EQ(tree(dialog).GetColumnText(kHectaresColumn), L"Net area [ha]");
        EXPECT_EQ(tree(dialog).GetColumnText(kDrainsColumn), L"Drains here [ha]");
    });
}

TEST_F(OverviewRows, ShowPicturesOfWhatTheyStandFor)
{
    makeNetwork();
    addArea(L"D", 60, {});
    run([&](CNetworkOverviewDlg &dialog) {
        const auto picture = [&](const std::vector<std::wstring> &way) { return item(dialog, way)->Images().normal; };
        EXPECT_EQ(picture({L"Outfall O1"}), kImageOutfall);
        EXPECT_EQ(picture({L"Outfall O1", L"S1"}), kImageSection);
        EXPECT_EQ(picture({L"Outfall O1", L"Branch at M1: T1"}), kImageBranch);
        EXPECT_EQ(picture({L"Outfall O1", L"S1", L"A"}), kImageArea);
        EXPECT_EQ(picture({L"Outfall O1", L"S3", L"C"}), kImageHouse);
        EXPECT_EQ(picture({L"Outfall O1", L"Branch at M1: T1", L"T1", L"B"}), kImageIndustrial);
        EXPECT_EQ(picture({L"Areas without a section"}), kImageWarning);
    });
}

TEST_F(OverviewRows, ShowTypesAndWhatIsToBeSaidOfEachRow)
{
    makeNetwork();
    addSection(L"U1", L"M3", L"O1");
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kTypeColumn, kNoteColumn}),
                    ElementsAre("Outfall O1||sections: 5", "  Branch at O1: U1||sections: 1", "    U1||no area", "  S1",
                                "    A|Catchment, Household", "  Branch at M1: T1||sections: 1", "    T1",
                                "      B|Industrial", "  S2", "    A|Catchment, Household",
                                "  S3||what lies upstream stands at another section",
                                "    C|Household|shares add up to 90.0000 %"));
    });
}

TEST_F(OverviewRows, AreasWithoutASectionStandByThemselves)
{
    makeNetwork();
    addArea(L"D", 60, {});
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kShareColumn, kNoteColumn}),
                    testing::IsSupersetOf({"Areas without a section", "  D|0.0000|shares add up to 0.0000 %"}));
        EXPECT_THAT(rows(dialog, {kNameColumn, kHectaresColumn, kDrainsColumn}),
                    testing::IsSupersetOf({"Areas without a section|0.0100", "  D|0.0100"}));
    });
}

TEST_F(OverviewRows, WhatIsNotKnownIsAQuestionMarkAndEntersNoSum)
{
    makeNetwork();
    areaNamed(L"B")->SetConnectedSectionShare(network().sectionByName(L"T1"), ZEMGis::Topology::kUnknownValue, 1);
    areaNamed(L"C")->SetFlowCoeff(ZEMGis::Topology::kUnknownValue);
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kDrainsColumn, kShareColumn, kCoefficientColumn, kNoteColumn}),
                    testing::IsSupersetOf({"Outfall O1|0.0190||0.5000|sections: 4", "    T1|0.0000|||no area",
                                           "      B|?|?|1.0000|shares add up to ? %",
                                           "    C|0.0090|90.0000|?|shares add up to 90.0000 %"}));
        EXPECT_THAT(findingsOf(dialog),
                    testing::IsSupersetOf({"Shares that don't add up to 100 % (2): B: ? %, C: 90.0000 %",
                                           "Areas with values that are not known (2): B, C"}));
        clickFinding(dialog, "B");
        EXPECT_EQ(tree(dialog).GetItemText(tree(dialog).GetSelectedItem()), L"B");
    });
}

TEST_F(OverviewRows, ASectionWhoseAreasHaveAShareOfNothingSaysThatItDrainsNothing)
{
    makeNetwork();
    areaNamed(L"B")->SetConnectedSectionShare(network().sectionByName(L"T1"), 0.0, 1);
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn, kNoteColumn}), testing::Contains("    T1|no area"));
    });
}

TEST_F(OverviewRows, TheWidthThatAPersonGivesTheNamesIsKept)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        dialog.resize(1600, 500);
        settle();
        for (const int width : {300, 111}) {
            tree(dialog).SetColumnWidth(kNameColumn, width);
            dialog.resize(dialog.size() + QSize(40, 0));
            settle();
            EXPECT_EQ(tree(dialog).GetColumnWidth(kNameColumn), width);
        }
    });
    run([&](CNetworkOverviewDlg &dialog) {
        dialog.resize(300, 500);
        settle();
        EXPECT_EQ(tree(dialog).GetColumnWidth(kNameColumn), 111) << "what it had when it was left";
    });
}

TEST_F(OverviewRows, HideGivesThePersonTheDrawingUntilEnterAndAClickZoomsAgainAfterIt)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        tree(dialog).SelectItem(item(dialog, {L"Outfall O1", L"S2"}), kLengthColumn);
        click(dialog, CNetworkOverviewDlg::kBtnCheckRow);
        velmor::Journal::instance().clear();
        velmor::Journal::instance().setRecording(true);
        session.answers().push({std::wstring()});
        click(dialog, CNetworkOverviewDlg::kBtnHide);
        EXPECT_EQ(calls("CAdUiBaseDialog::BeginEditorCommand").size(), 1u);
        EXPECT_EQ(calls("CAdUiBaseDialog::CompleteEditorCommand").size(), 1u);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(calls("acedRedraw").empty()) << "what is highlighted stays";
        EXPECT_EQ(tree(dialog).GetSelectedItem(), item(dialog, {L"Outfall O1", L"S2"}));
        tree(dialog).SelectItem(item(dialog, {L"Outfall O1", L"S2"}), kTypeColumn);
        EXPECT_EQ(calls("CZEMCEdit::zoom").size(), 1u);
        {
            const ZEMGis::Notification::SetActiveCommand other(L"OTHER");
            click(dialog, CNetworkOverviewDlg::kBtnHide);
        }
        EXPECT_EQ(calls("CAdUiBaseDialog::BeginEditorCommand").size(), 1u) << "not while a command of the family runs";
    });
}

TEST_F(OverviewRows, ADrawingWithoutANetworkSaysSo)
{
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_THAT(rows(dialog, {kNameColumn}), IsEmpty());
        EXPECT_EQ(text(dialog, CNetworkOverviewDlg::kTextMessage), "The drawing holds no network.");
        EXPECT_FALSE(findings(dialog).isVisible());
    });
}

TEST_F(OverviewRows, ASessionWithoutADrawingOpensItEmpty)
{
    session.setDrawing(nullptr);
    run([&](CNetworkOverviewDlg &dialog) { EXPECT_THAT(rows(dialog, {kNameColumn}), IsEmpty()); });
}

TEST_F(OverviewRows, AreOpenedAtTheOutfallsAllOfThemByAButtonAndClosedByAnother)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        const CTreeListCtrl &list = tree(dialog);
        EXPECT_EQ(list.GetVisibleCount(), 5); // the outfall with three sections and a branch
        click(dialog, CNetworkOverviewDlg::kBtnExpand);
        EXPECT_EQ(list.GetVisibleCount(), 10);
        tree(dialog).SelectItem(item(dialog, {L"Outfall O1", L"S2", L"A"}), 4);
        click(dialog, CNetworkOverviewDlg::kBtnCollapse);
        EXPECT_EQ(list.GetVisibleCount(), 1);
        EXPECT_EQ(list.GetItemText(list.GetSelectedItem()), L"Outfall O1") << "what hides the row is selected for it";
    });
}

TEST_F(OverviewRows, ColumnWidthsOrderAndTheZoomAreAsTheyWereLeft)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        tree(dialog).SetColumnWidth(kTypeColumn, 123);
        tree(dialog).SetColumnOrderArray({0, 2, 1, 3, 4, 5, 6, 7, 8, 9});
        click(dialog, CNetworkOverviewDlg::kCheckZoom);
        dialog.resize(dialog.size() + QSize(13, 17));
    });
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_EQ(tree(dialog).GetColumnWidth(kTypeColumn), 123);
        EXPECT_THAT(tree(dialog).GetColumnOrderArray(), ElementsAre(0, 2, 1, 3, 4, 5, 6, 7, 8, 9));
        EXPECT_FALSE(dialog.Control<QAbstractButton>(CNetworkOverviewDlg::kCheckZoom)->isChecked());
        click(dialog, CNetworkOverviewDlg::kCheckZoom);
        tree(dialog).SetColumnOrderArray({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    });
}

TEST_F(OverviewRows, InAnotherLanguageColumnsAreFittedAnewSoThatNoTypeIsCut)
{
    makeNetwork();
    run([](CNetworkOverviewDlg &dialog) { tree(dialog).SetColumnWidth(kTypeColumn, 20); });
    velmor::Services::instance().start(
        {.language = "hr"},
        velmor::Paths({std::filesystem::path(std::getenv("VELMOR_SOURCE_DIR")) / "resources"}, folder));
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_GT(tree(dialog).GetColumnWidth(kTypeColumn),
                  tree(dialog).fontMetrics().horizontalAdvance(Msg(OverviewMessage::kTypeCatchment)));
    });
}

TEST_F(OverviewRows, WidthThatNoColumnTakesGoesToTheNamesAndComesBackFromThem)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        CTreeListCtrl &list = tree(dialog);
        dialog.resize(700, 500);
        settle();
        const int narrow = list.GetColumnWidth(kNameColumn), note = list.GetColumnWidth(kNoteColumn);
        for (int round = 0; round < 2; ++round) {
            dialog.resize(1600, 500);
            settle();
            EXPECT_EQ(list.GetTotalWidth(), list.viewport()->width());
            EXPECT_EQ(list.GetColumnWidth(kNoteColumn), note);
            dialog.resize(700, 500);
            settle();
            EXPECT_EQ(list.GetColumnWidth(kNameColumn), narrow);
        }
    });
}

TEST_F(OverviewRows, OpensNextTimeWhereItWasLeft)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        dialog.resize(500, 400);
        dialog.move(33, 44);
    });
    run([&](CNetworkOverviewDlg &dialog) { EXPECT_EQ(dialog.frameGeometry().topLeft(), QPoint(33, 44)); });
}

TEST_F(OverviewRows, EveryTextIsThereInBothLanguagesAndNoTwoControlsShareALetter)
{
    makeNetwork();
    for (const char *language : {"en", "hr"}) {
        velmor::Services::instance().start(
            {.language = language},
            velmor::Paths({std::filesystem::path(std::getenv("VELMOR_SOURCE_DIR")) / "resources"}, folder));
        for (unsigned number = OverviewMessage::kTitle; number <= OverviewMessage::kLastMessage; ++number)
            EXPECT_FALSE(Msg(number).isEmpty()) << language << ' ' << number;
        run([&](CNetworkOverviewDlg &dialog) {
            std::map<QChar, QString> letters;
            for (const QAbstractButton *button : dialog.findChildren<QAbstractButton *>()) {
                const QString caption = button->text();
                const auto mark = caption.indexOf(QLatin1Char('&'));
                if (mark < 0)
                    continue;
                const auto [known, isNew] = letters.emplace(caption[mark + 1].toUpper(), caption);
                EXPECT_TRUE(isNew) << language << ": " << caption.toStdString() << ", " << known->second.toStdString();
            }
            EXPECT_GE(letters.size(), 6u);
        });
    }
}

TEST_F(OverviewRows, EveryWidgetThatTakesTheFocusHasANameToBeHeard)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        int seen = 0;
        for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
            if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0)
                continue;
            ++seen;
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            EXPECT_FALSE(widget->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
                << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        }
        EXPECT_GE(seen, 9);
    });
}

TEST_F(OverviewRows, TheKeyboardAloneReachesEveryControl)
{
    makeNetwork();
    run([&](CNetworkOverviewDlg &dialog) {
        QSet<QWidget *> met;
        for (int i = 0; i < 30; ++i) {
            met.insert(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        for (const int control :
             {CNetworkOverviewDlg::kTreeNetwork, CNetworkOverviewDlg::kTreeFindings, CNetworkOverviewDlg::kBtnExpand,
              CNetworkOverviewDlg::kBtnCollapse, CNetworkOverviewDlg::kBtnCheckAll, CNetworkOverviewDlg::kBtnCheckNone,
              CNetworkOverviewDlg::kBtnCheckRow, CNetworkOverviewDlg::kCheckZoom, CNetworkOverviewDlg::kBtnHide,
              CNetworkOverviewDlg::kBtnClose})
            EXPECT_TRUE(met.contains(dialog.GetDlgItem(control))) << control;
    });
}
