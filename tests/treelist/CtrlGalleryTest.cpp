// What the page of the gallery shows can be switched by its options, whatever the control takes at its making only.
#include "tests/gallery/Options.h"
#include "tests/gallery/Rows.h"
#include "tests/treelist/TreeFixture.h"

#include <QCheckBox>

namespace {

class TreeListGallery : public TreeListTest {
protected:
    TreeListGallery() : rows(gallery::TreeRows({none, [](const QString &) {}}).rows.front())
    {
        rows.control->show();
        Settle();
    }
    ~TreeListGallery() override
    {
        delete rows.options;
        delete rows.control;
    }
    /// Of both lists, the upper one first.
    QList<CTreeListCtrl *> Lists() const
    {
        return rows.control->findChildren<CTreeListCtrl *>(QString(), Qt::FindDirectChildrenOnly);
    }
    CTreeListCtrl &Named(const char *name) const
    {
        for (CTreeListCtrl *found : Lists()) {
            if (found->accessibleName() == QLatin1String(name))
                return *found;
        }
        throw std::out_of_range(name);
    }
    QCheckBox &Switch(const char *label) const
    {
        for (QCheckBox *box : rows.options->findChildren<QCheckBox *>()) {
            if (box->text() == QLatin1String(label))
                return *box;
        }
        throw std::out_of_range(label);
    }

    AMSEdit::CNoRegionalSettings none;
    gallery::Row rows;
};

} // namespace

TEST_F(TreeListGallery, TheSunkenFrameComesAndGoesAndTheRowsStay)
{
    QCheckBox &sunken = Switch("Sunken frame");
    EXPECT_FALSE(sunken.isChecked());
    Switch("Rows in two colours").click();
    CTreeListCtrl &before = Named("Tree list");
    before.SetColumnWidth(1, 133);
    before.SetColumnOrderArray({0, 2, 1, 3, 4});
    before.SetItemCheck(before.GetFirstShowItem(3), true);
    before.SelectItem(before.GetFirstShowItem(4), 2);
    const int shown = before.GetVisibleCount(), all = before.GetCount();
    const std::uint32_t style = before.GetStyle();
    const std::wstring name = before.GetSelectedItem()->Text(0);
    std::vector<std::uint32_t> states;
    for (CTreeListItem *item = before.GetFirstVisibleItem(); item; item = before.GetNextVisibleItem(item))
        states.push_back(item->State());
    for (const bool on : {true, false}) {
        sunken.click();
        Settle();
        EXPECT_EQ(sunken.isChecked(), on);
        EXPECT_EQ(Lists().size(), 2);
        for (const CTreeListCtrl *now : Lists()) {
            EXPECT_EQ(now->frameShape() == QFrame::StyledPanel, on) << now->accessibleName().toStdString();
            EXPECT_TRUE(now->isVisible());
        }
        CTreeListCtrl &now = Named("Tree list");
        EXPECT_EQ(now.GetStyle(), style);
        EXPECT_EQ(now.GetVisibleCount(), shown);
        EXPECT_EQ(now.GetCount(), all);
        EXPECT_EQ(now.GetColumnWidth(1), 133);
        EXPECT_EQ(now.GetColumnOrderArray(), (std::vector<int>{0, 2, 1, 3, 4}));
        ASSERT_NE(now.GetSelectedItem(), nullptr);
        EXPECT_EQ(now.GetSelectedItem()->Text(0), name);
        EXPECT_EQ(now.GetSelectColumn(), 2);
        std::vector<std::uint32_t> copied;
        for (CTreeListItem *item = now.GetFirstVisibleItem(); item; item = now.GetNextVisibleItem(item))
            copied.push_back(item->State());
        EXPECT_EQ(copied, states);
    }
}

TEST_F(TreeListGallery, TheOtherSwitchesActOnListsThatWereMadeAnew)
{
    Switch("Sunken frame").click();
    Switch("Header").click();
    for (const CTreeListCtrl *now : Lists()) {
        EXPECT_FALSE(now->HasStyle(StyleHeader));
        EXPECT_EQ(now->frameShape(), QFrame::StyledPanel) << "no other switch takes the frame away";
    }
    EXPECT_TRUE(Switch("Sunken frame").isChecked());
}
