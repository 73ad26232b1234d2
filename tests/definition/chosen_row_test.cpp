// What a chosen row of the list shows in the edits: what is known of its boundary, and only when it is chosen alone.
#include "tests/definition/dialog_fixture.h"

namespace {

class ChosenRow : public DefinitionDialogTest {
protected:
    static constexpr double kUnknown = ZEMGis::Topology::kUnknownValue;

    void addRow(CDialogUnderTest &dialog, double area, double coefficient, double slope)
    {
        const auto item = boost::shared_ptr<CCatchItemData>(new CCatchItemData);
        item->m_id = addBox(1000, 0, 1010, 10, L"0");
        item->m_area = area;
        item->m_coefficient = coefficient;
        item->m_slope = slope;
        dialog.AddBoundaryRow(item, L"row", 100);
    }
    static void type(CDialogUnderTest &dialog)
    {
        dialog.type(213, "7");
        dialog.type(215, "8");
        dialog.type(216, "9");
    }
    static QStringList edits(const CDialogUnderTest &dialog)
    {
        return {dialog.text(213), dialog.text(215), dialog.text(216)};
    }
};

TEST_F(ChosenRow, AloneItShowsItsAreaToFourPlacesItsCoefficientAndItsSlope)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        addRow(dialog, 0.123456, 0.25, 3.5);
        addRow(dialog, 2.00004, 0.5, 1.25);
        dialog.selectRows({0});
        EXPECT_EQ(edits(dialog), QStringList({"0.1235", "0.25", "3.5"})); // rounded, not cut
        dialog.selectRows({1});
        EXPECT_EQ(edits(dialog), QStringList({"2", "0.5", "1.25"}));
    });
}

TEST_F(ChosenRow, HalfAPlaceIsRoundedAsTheProductWithOneMorePlaceHasIt)
{
    const std::pair<double, const char *> expected[] = {
        {0.00145, "0.0015"},   {0.00225, "0.0022"},   {0.00435, "0.0043"},   {0.00565, "0.0057"},
        {-0.00145, "-0.0015"}, {-0.00225, "-0.0022"}, {-0.00435, "-0.0043"}, {-0.00565, "-0.0057"},
    };
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        for (const auto &[area, text] : expected)
            addRow(dialog, area, kUnknown, kUnknown);
        for (int row = 0; row < static_cast<int>(std::size(expected)); ++row) {
            dialog.selectRows({row});
            EXPECT_EQ(dialog.text(213).toStdString(), expected[row].second) << expected[row].first;
        }
    });
}

TEST_F(ChosenRow, WhatIsNotKnownLeavesItsEdit)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        addRow(dialog, 1.0, kUnknown, kUnknown);
        addRow(dialog, kUnknown, 0.25, kUnknown);
        addRow(dialog, kUnknown, kUnknown, 3.5);
        const QStringList expected[] = {{"1", "8", "9"}, {"7", "0.25", "9"}, {"7", "8", "3.5"}};
        for (int row = 0; row < 3; ++row) {
            type(dialog);
            dialog.selectRows({row});
            EXPECT_EQ(edits(dialog), expected[row]) << row;
        }
    });
}

TEST_F(ChosenRow, OfSeveralNoneIsShownAndTheMarkedTextOfTheAreaGoes)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        addRow(dialog, 1.0, 0.25, 3.5);
        addRow(dialog, 2.0, 0.5, 1.25);
        dialog.selectRows({0});
        type(dialog);
        dialog.list()->topLevelItem(1)->setSelected(true);
        EXPECT_EQ(edits(dialog), QStringList({"7", "8", "9"})); // nothing was marked

        dialog.selectRows({0});
        dialog.type(213, "123");
        dialog.Control<QLineEdit>(213)->setSelection(1, 1);
        dialog.list()->topLevelItem(1)->setSelected(true);
        EXPECT_EQ(dialog.text(213), "13");
    });
}

} // namespace
