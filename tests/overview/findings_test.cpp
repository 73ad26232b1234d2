// What is wrong: in two lines, in a list, and a click that leads to each.
#include "tests/overview/overview_fixture.h"

#include "overview/OverviewTexts.h"

#include <QProxyStyle>
#include <QTest>

#include <stdexcept>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::pair<const char *, const char *> kLines[] = {{"iconShares", "textShares"}, {"iconDrains", "textDrains"}};

/// Another theme: its signs are all of one colour.
class CPlainSigns final : public QProxyStyle {
public:
    QIcon standardIcon(StandardPixmap, const QStyleOption *, const QWidget *) const override
    {
        QPixmap plain(64, 64);
        plain.fill(Qt::magenta);
        return QIcon(plain);
    }
};

constexpr int kShares = CNetworkOverviewDlg::kTextShares, kDrains = CNetworkOverviewDlg::kTextDrains;

class OverviewFindings : public COverviewTest {
protected:
    OverviewFindings() { makeNetwork(); }
    static QImage signOf(CNetworkOverviewDlg &dialog, const char *name)
    {
        return dialog.findChild<QLabel *>(name)->pixmap().toImage();
    }
    /// As it stands beside the first line.
    static QImage standardSign(CNetworkOverviewDlg &dialog, QStyle::StandardPixmap sign)
    {
        const int size = dialog.fontMetrics().height();
        return dialog.style()->standardIcon(sign, nullptr, &dialog).pixmap(QSize(size, size), 1.0).toImage();
    }
    static std::wstring selected(CNetworkOverviewDlg &dialog)
    {
        return tree(dialog).GetItemText(tree(dialog).GetSelectedItem());
    }
};

} // namespace

TEST_F(OverviewFindings, AreaSharesThatDoNotAddUpAreCountedAndListed)
{
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_EQ(text(dialog, kShares), "Shares that don't add up to 100 %: 1 of 3 areas.");
        EXPECT_EQ(text(dialog, kDrains), "Every section drains an area: 4 sections.");
        EXPECT_THAT(findingsOf(dialog), ElementsAre("Shares that don't add up to 100 % (1): C: 90.0000 %"));
        EXPECT_TRUE(findings(dialog).isVisible());
    });
}

TEST_F(OverviewFindings, WhenAllIsWellTheTwoLinesSaySoAndThereIsNoList)
{
    areaNamed(L"C")->SetConnectedSectionShare(network().sectionByName(L"S3"), 1.0, 1);
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_EQ(text(dialog, kShares), "The shares of each area add up to 100 %: 3 areas.");
        EXPECT_EQ(text(dialog, kDrains), "Every section drains an area: 4 sections.");
        EXPECT_FALSE(findings(dialog).isVisible());
    });
}

TEST_F(OverviewFindings, SectionsThatDrainNothingAreCountedAndListed)
{
    areaNamed(L"B")->SetConnectedSectionShare(network().sectionByName(L"T1"), 0.0, 1);
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_EQ(text(dialog, kDrains), "Sections that drain nothing: 1 of 4.");
        EXPECT_THAT(findingsOf(dialog), ElementsAre("Shares that don't add up to 100 % (2): B: 0.0000 %, C: 90.0000 %",
                                                    "Sections that drain nothing (1): T1"));
    });
}

TEST_F(OverviewFindings, AnAreaWithoutASectionIsOneOfThem)
{
    addArea(L"D", 60, {});
    run([&](CNetworkOverviewDlg &dialog) {
        clickFinding(dialog, "D: 0.0000 %");
        EXPECT_EQ(selected(dialog), L"D");
    });
}

TEST_F(OverviewFindings, AClickLeadsToTheRowWhereverItIsHidden)
{
    run([&](CNetworkOverviewDlg &dialog) {
        click(dialog, CNetworkOverviewDlg::kBtnCollapse);
        velmor::Journal::instance().setRecording(true);
        clickFinding(dialog, "C: 90.0000 %");
        CTreeListItem *row = item(dialog, {L"Outfall O1", L"S3", L"C"});
        EXPECT_EQ(tree(dialog).GetSelectedItem(), row);
        QRect place;
        EXPECT_TRUE(tree(dialog).GetItemRect(row, place));
        EXPECT_TRUE(tree(dialog).GetClient().contains(place.center().x() < 0 ? place.topLeft()
                                                                             : QPoint(5, place.center().y())));
        EXPECT_FALSE(calls("CZEMCEdit::zoom").empty());
        EXPECT_EQ(tree(dialog).GetState(kControlEditing), 0u);
    });
}

TEST_F(OverviewFindings, TheKeyboardLeadsThereTooAndEscapeClosesTheDialog)
{
    run([&](CNetworkOverviewDlg &dialog) {
        QTreeWidget &list = findings(dialog);
        list.setFocus();
        list.setCurrentItem(finding(dialog, "C: 90.0000 %"));
        EXPECT_EQ(tree(dialog).GetSelectedItem(), nullptr) << "looking through the list does nothing yet";
        QTest::keyClick(&list, Qt::Key_Return);
        EXPECT_EQ(selected(dialog), L"C");
        QTest::keyClick(&tree(dialog), Qt::Key_Escape);
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST_F(OverviewFindings, ARowInEditWhoseNameIsRefusedHoldsTheListBack)
{
    run([&](CNetworkOverviewDlg &dialog) {
        clickPart(dialog, item(dialog, {L"Outfall O1", L"S2"}), kHitText);
        QTest::keyClicks(QApplication::focusWidget(), "S1");
        clickFinding(dialog, "C: 90.0000 %");
        EXPECT_EQ(text(dialog, CNetworkOverviewDlg::kTextMessage), "Another section has the name S1 already.");
        EXPECT_EQ(tree(dialog).GetSelectedItem(), item(dialog, {L"Outfall O1", L"S2"}));
        EXPECT_NE(tree(dialog).GetState(kControlEditing), 0u);
        tree(dialog).CancelModify();
        EXPECT_EQ(selected(dialog), L"S2");
    });
}

TEST_F(OverviewFindings, SplitsLoopsAndPartsWithoutAnOutfallAreTold)
{
    addSection(L"U1", L"M3", L"O1"); // a split at M3
    for (const wchar_t *node : {L"R1", L"R2", L"E1"})
        addNode(node, 0, 50);
    addSection(L"R12", L"R1", L"R2");
    addSection(L"R21", L"R2", L"R1");
    addSection(L"E", L"E1", L"");
    run([&](CNetworkOverviewDlg &dialog) {
        const auto all = findingsOf(dialog);
        EXPECT_THAT(all, testing::IsSupersetOf({"Splits: several sections leave a node (1): M3", "Loops (2): R12, R21",
                                                "Parts without an outfall (2): Ring at R2, End without a node"}));
        clickFinding(dialog, "Ring at R2");
        EXPECT_EQ(selected(dialog), L"Ring at R2");
        clickFinding(dialog, "R21");
        EXPECT_EQ(selected(dialog), L"R21");
        clickFinding(dialog, "M3");
        EXPECT_EQ(selected(dialog), L"S3") << "where the upstream of the split does not stand";
    });
}

TEST_F(OverviewFindings, FollowTheNames)
{
    run([&](CNetworkOverviewDlg &dialog) {
        tree(dialog).Expand(item(dialog, {L"Outfall O1", L"S3"}), kExpand);
        rename(dialog, item(dialog, {L"Outfall O1", L"S3", L"C"}), kNameColumn, "South");
        EXPECT_THAT(findingsOf(dialog), ElementsAre("Shares that don't add up to 100 % (1): South: 90.0000 %"));
    });
}

TEST_F(OverviewFindings, StayAsThePersonHasThemWhenANameChanges)
{
    areaNamed(L"B")->SetConnectedSectionShare(network().sectionByName(L"T1"), 0.0, 1);
    run([&](CNetworkOverviewDlg &dialog) {
        QTreeWidget &list = findings(dialog);
        list.topLevelItem(0)->setExpanded(false);
        list.setCurrentItem(list.topLevelItem(1)->child(0));
        const QTreeWidgetItem *current = list.currentItem();
        CTreeListItem *branch = item(dialog, {L"Outfall O1", L"Branch at M1: T1"});
        tree(dialog).Expand(branch, kExpand);
        rename(dialog, branch->FirstChild(), kNameColumn, "Side");
        EXPECT_FALSE(list.topLevelItem(0)->isExpanded());
        EXPECT_EQ(list.currentItem(), current);
        EXPECT_EQ(current->text(0), "Side");
    });
}

namespace {

/// A window whose view can't be moved once.
class CStuckView final : public velmor::SessionView {
public:
    void showDrawing(velmor::Drawing *) override {}
    void redraw() override {}
    void zoomTo(const velmor::Extents &) override
    {
        if (m_nFailures-- > 0)
            throw std::runtime_error("the view is stuck");
    }
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
    int m_nFailures = 1;
};

} // namespace

TEST_F(OverviewFindings, WhenTheZoomFailsTheRowIsLeftAloneAndTheNextClickLeadsToIt)
{
    CStuckView view;
    session.setView(&view);
    run([&](CNetworkOverviewDlg &dialog) {
        clickFinding(dialog, "C: 90.0000 %");
        EXPECT_EQ(view.m_nFailures, 0) << "it failed";
        clickFinding(dialog, "C: 90.0000 %");
        EXPECT_EQ(selected(dialog), L"C");
        EXPECT_LT(view.m_nFailures, 0);
    });
    session.setView(nullptr);
}

TEST_F(OverviewFindings, BeforeThereAreAreasTheyAreNotBlamed)
{
    for (const wchar_t *name : {L"A", L"B", L"C"})
        ZEMGis::Sewage::CCatchmentAreaManager::Instance()->DeleteCA(areaNamed(name));
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_EQ(text(dialog, kShares), "There are no areas yet.");
        EXPECT_EQ(text(dialog, kDrains), "Sections that drain nothing: 4 of 4.");
        for (const auto &[sign, line] : kLines) {
            EXPECT_FALSE(dialog.findChild<QLabel *>(line)->font().bold()) << line;
            EXPECT_EQ(signOf(dialog, sign), standardSign(dialog, QStyle::SP_MessageBoxInformation)) << sign;
        }
    });
}

TEST_F(OverviewFindings, WhatIsWrongStandsOutWithASignAndWhatIsRightHasOneToo)
{
    run([&](CNetworkOverviewDlg &dialog) {
        EXPECT_TRUE(dialog.findChild<QLabel *>("textShares")->font().bold());
        EXPECT_EQ(signOf(dialog, "iconShares"), standardSign(dialog, QStyle::SP_MessageBoxWarning));
        EXPECT_FALSE(dialog.findChild<QLabel *>("textDrains")->font().bold());
        EXPECT_EQ(signOf(dialog, "iconDrains"), standardSign(dialog, QStyle::SP_DialogApplyButton));
    });
}

TEST_F(OverviewFindings, ADrawingWithoutANetworkIsNotBlamedEither)
{
    session.setDrawing(velmor::Drawing::createNew());
    run([&](CNetworkOverviewDlg &dialog) {
        for (const auto &[sign, line] : kLines) {
            EXPECT_FALSE(dialog.findChild<QLabel *>(line)->font().bold()) << line;
            EXPECT_EQ(signOf(dialog, sign), standardSign(dialog, QStyle::SP_MessageBoxInformation)) << sign;
        }
    });
}

TEST_F(OverviewFindings, SignsAndLettersFollowTheDesktop)
{
    run([&](CNetworkOverviewDlg &dialog) {
        const auto *sign = dialog.findChild<QLabel *>("iconShares");
        QFont large = dialog.font();
        large.setPointSize(2 * large.pointSize());
        dialog.setFont(large);
        settle();
        EXPECT_EQ(sign->pixmap().height(), dialog.findChild<QLabel *>("textShares")->fontMetrics().height());
        EXPECT_EQ(dialog.findChild<QLabel *>("textShares")->font().pointSize(), large.pointSize());
        const QImage before = signOf(dialog, "iconShares");
        CPlainSigns signs;
        for (QLabel *label : dialog.findChildren<QLabel *>())
            label->setStyle(&signs);
        QEvent change(QEvent::StyleChange);
        QCoreApplication::sendEvent(&dialog, &change);
        EXPECT_EQ(sign->pixmap().toImage().pixelColor(1, 1), QColor(Qt::magenta));
        for (QLabel *label : dialog.findChildren<QLabel *>())
            label->setStyle(nullptr);
        QCoreApplication::sendEvent(&dialog, &change);
        EXPECT_EQ(signOf(dialog, "iconShares"), before);
    });
}
