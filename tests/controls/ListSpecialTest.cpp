// Colour, hatch and layer columns of the extended list, with the host whose dialogs they open.
#include "tests/controls/ListFixture.h"

#include "contracts/DrawingHost.h"
#include "contracts/HostDialog.h"
#include "host/drawing/Drawing.h"
#include "host/editor/Session.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Services.h"

#include <QAbstractButton>
#include <QSpinBox>

#include <cstdlib>
#include <filesystem>

using list_clicks::cellOf;
using list_clicks::clickCell;
using list_clicks::pressKey;
using testing::ElementsAre;
using testing::IsEmpty;

class ListSpecial : public ListWidgetTest {
protected:
    ListSpecial()
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        const auto top = std::filesystem::path(source ? source : ".");
        velmor::Services::instance().start({}, velmor::Paths({top / "resources"}, testing::TempDir()));
        session.setDrawing(velmor::Drawing::createNew());
    }
    QPushButton *Button(int control) const
    {
        for (auto *button : list->viewport()->findChildren<QPushButton *>()) {
            if (button->property(kControlIdProperty).toInt() == control)
                return button;
        }
        return nullptr;
    }
    bool Shows(int control) const { return Button(control) && Button(control)->isVisible(); }

    velmor::Session session;
};

TEST_F(ListSpecial, EachSpecialColumnShowsItsOwnBrowseButton)
{
    Fill({L"a", L"b"});
    list->AddColorColumn(0);
    list->AddHatchColumn(1);
    list->AddLayerColumn(2);
    Show();

    clickCell(*list, 1, 0);
    EXPECT_TRUE(Shows(CXListCtrl::kColorButton));
    const QRect cell = cellOf(*list, 1, 0);
    EXPECT_EQ(Button(714)->geometry(), QRect(cell.right() - 19, cell.top(), 20, cell.height()));
    EXPECT_EQ(Button(714)->text(), QStringLiteral("..."));
    clickCell(*list, 0, 1);
    EXPECT_FALSE(Shows(CXListCtrl::kColorButton));
    EXPECT_TRUE(Shows(CXListCtrl::kHatchButton));
    clickCell(*list, 0, 2);
    EXPECT_FALSE(Shows(CXListCtrl::kHatchButton));
    EXPECT_TRUE(Shows(CXListCtrl::kLayerButton));
    list->ClearLayerColumns();
    clickCell(*list, 0, 2);
    EXPECT_FALSE(Shows(CXListCtrl::kLayerButton));
}

TEST_F(ListSpecial, TheColourButtonWritesTheChosenNumber)
{
    Fill({L"a"});
    list->AddColorColumn(1);
    list->SetItemText(0, 1, L"3");
    Show();
    session.setDialogDriver([](CAdUiBaseDialog &dialog) {
        dialog.Control<QSpinBox>(velmor::kControlColourNumber)->setValue(40);
        dialog.Control<QAbstractButton>(velmor::kControlOk)->click();
    });
    clickCell(*list, 0, 1);
    Button(CXListCtrl::kColorButton)->click();

    EXPECT_EQ(Text(0, 1), L"40");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListSpecial, ACancelledColourLeavesTheCell)
{
    Fill({L"a"});
    list->AddColorColumn(1);
    list->SetItemText(0, 1, L"3");
    Show();
    session.setDialogDriver([](CAdUiBaseDialog &) {});
    list->setCurrentIndex(list->model()->index(0, 1));
    pressKey(*list, Qt::Key_F4); // its key

    EXPECT_EQ(Text(0, 1), L"3");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListSpecial, TheHatchButtonBeginsWithSolidAndWritesTheChosenName)
{
    Fill({L"a"});
    list->AddHatchColumn(1);
    Show();
    QString offered;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        auto *patterns = dialog.Control<QListWidget>(velmor::kControlPatterns);
        offered = patterns->currentItem() ? patterns->currentItem()->text() : QString();
        const auto found = patterns->findItems(QStringLiteral("ANSI31"), Qt::MatchStartsWith);
        ASSERT_FALSE(found.isEmpty());
        patterns->setCurrentItem(found.front());
        dialog.Control<QAbstractButton>(velmor::kControlOk)->click();
    });
    clickCell(*list, 0, 1);
    Button(CXListCtrl::kHatchButton)->click();

    EXPECT_EQ(offered, QStringLiteral("SOLID"));
    EXPECT_EQ(Text(0, 1), L"ANSI31");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListSpecial, TheLayerListWritesTheChoiceAndCloses)
{
    session.drawing()->ensureLayer(L"PIPES");
    Fill({L"a"});
    list->AddLayerColumn(1);
    Show();
    clickCell(*list, 0, 1);
    Button(CXListCtrl::kLayerButton)->click();
    QListWidget *layers = list->GetLayerList();
    ASSERT_NE(layers, nullptr);
    EXPECT_GE(layers->width(), 150);
    EXPECT_GE(layers->height(), 200);
    ASSERT_NE(layers->currentItem(), nullptr);
    EXPECT_EQ(layers->currentItem()->text(), QStringLiteral("0"));
    layers->setCurrentItem(layers->findItems(QStringLiteral("PIPES"), Qt::MatchExactly).value(0));

    EXPECT_EQ(list->GetLayerList(), nullptr);
    EXPECT_EQ(Text(0, 1), L"PIPES");
    EXPECT_THAT(told, ElementsAre(Place(0, 1)));
}

TEST_F(ListSpecial, AClickOnTheListClosesTheLayersWithoutAChoice)
{
    Fill({L"a"});
    list->AddLayerColumn(1);
    Show();
    clickCell(*list, 0, 1);
    Button(CXListCtrl::kLayerButton)->click();
    clickCell(*list, 0, 0);

    EXPECT_EQ(list->GetLayerList(), nullptr);
    EXPECT_EQ(Text(0, 1), L"");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(ListSpecial, ThePlatformHidingTheLayersIsNoChoice)
{
    Fill({L"a"});
    list->AddLayerColumn(1);
    Show();
    clickCell(*list, 0, 1);
    Button(CXListCtrl::kLayerButton)->click();
    list->GetLayerList()->hide();

    EXPECT_EQ(list->GetLayerList(), nullptr);
    EXPECT_EQ(Text(0, 1), L"");
}

TEST_F(ListSpecial, AColourCellShowsItsColourAndTheLabelInPlaceOfMinusOne)
{
    SetDesktop(Qt::white, Qt::white, Qt::black);
    Fill({L"a", L"b"});
    list->AddColorColumn(2);
    list->SetColorLabel(L"ByLayer");
    EXPECT_EQ(list->GetColorLabel(), L"ByLayer");
    list->SetItemText(0, 2, L"1");
    list->SetItemText(1, 2, L"-1");
    Show();
    const QImage picture = Picture();
    const auto swatch = [&](int row) {
        const QRect cell = cellOf(*list, row, 2);
        return picture.pixelColor(cell.left() + 10, cell.center().y());
    };

    EXPECT_EQ(swatch(0), ColourOf(acedGetRGB(1)));
    EXPECT_EQ(swatch(1), ColourOf(acedGetRGB(7)));
    EXPECT_EQ(list->model()->index(1, 2).data().toString(), QStringLiteral("ByLayer"));
    EXPECT_EQ(Text(1, 2), L"-1");
}
