// How the review dialog ends, and what the drawing keeps of it.
#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

#include "host/drawing/Transient.h"

#include <QKeyEvent>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Closing : public ReviewDialogTest {
protected:
    Closing()
    {
        addArea(L"A1", 1, 0);
        addArea(L"A2", 2, 20);
    }
    static void key(CReviewUnderTest &dialog, QWidget *widget, int code)
    {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier);
        QApplication::sendEvent(widget, &press);
        static_cast<void>(dialog);
    }
};

TEST_F(Closing, OkWritesTheSixKeysInOrderThenTakesTheHighlightAwayAndEnds)
{
    const std::string entity = velmor::journalText(areaNamed(L"A1")->GetObjectId());
    EXPECT_EQ(run([&](CReviewUnderTest &dialog) {
                  dialog.type(218, "3.5");
                  dialog.check(296, true);
                  dialog.type(353, "NET");
                  dialog.type(352, "2.25");
                  dialog.Control<QComboBox>(135)->setCurrentIndex(1);
                  dialog.check(296, false);
                  const JournalLines lines = recorded([&] { dialog.click(1); });
                  EXPECT_THAT(
                      lines,
                      ElementsAre("CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCHMENT_m_edZoom, 3.5, 38)",
                                  "CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCHMENT_m_checkZoom, 0, 60)",
                                  "CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCHMENT_m_comboMode, 3, 60)",
                                  "CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCHMENT_m_edHatchType, NET, 1)",
                                  "CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCHMENT_m_edHScale, 2.25, 38)",
                                  "CZEMCDictionaryPtr::dctWrite(ZEMX_LSD2, ZEMX_CATCHMENT_m_cmbLabel, 1, 60)",
                                  "AcDbEntity::unhighlight(" + entity + ")", "CCatchmentArea::UnMark({A1})",
                                  "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()",
                                  "CAdUiBaseDialog::EndDialog(1)"));
              }),
              CAdUiBaseDialog::kOk);
    EXPECT_EQ(kept("m_edHatchType"), (velmor::DataItems{{1, std::wstring(L"NET")}}));
    EXPECT_EQ(kept("m_edZoom"), (velmor::DataItems{{38, 3.5}}));
    EXPECT_EQ(kept("m_checkZoom"), (velmor::DataItems{{60, std::int64_t{0}}}));
}

TEST_F(Closing, WhatOkWroteIsThereAtTheNextOpening)
{
    run([](CReviewUnderTest &dialog) {
        dialog.type(218, "3.5");
        dialog.check(296, true);
        dialog.click(133);
        dialog.type(352, "2.25");
        dialog.click(1);
    });
    run([](CReviewUnderTest &dialog) {
        EXPECT_EQ(dialog.text(218), "3.5");
        EXPECT_TRUE(dialog.isChecked(296));
        EXPECT_TRUE(dialog.isChecked(133));
        EXPECT_THAT(dialog.treeNames(), IsEmpty());
        EXPECT_EQ(dialog.text(352), "2.25");
    });
}

TEST_F(Closing, EscapeTakesTheHighlightAwayAndWritesNothing)
{
    const std::string entity = velmor::journalText(areaNamed(L"A1")->GetObjectId());
    EXPECT_EQ(run([&](CReviewUnderTest &dialog) {
                  dialog.type(218, "3.5");
                  EXPECT_THAT(recorded([&] { key(dialog, &dialog, Qt::Key_Escape); }),
                              ElementsAre("AcDbEntity::unhighlight(" + entity + ")", "CCatchmentArea::UnMark({A1})",
                                          "AcTransactionManager::flushGraphics()", "acedUpdateDisplay()",
                                          "CAdUiBaseDialog::EndDialog(2)"));
              }),
              CAdUiBaseDialog::kCancel);
    EXPECT_THAT(kept("m_edZoom"), IsEmpty());
}

TEST_F(Closing, TheWindowsCloseBoxDoesTheSame)
{
    EXPECT_EQ(run([&](CReviewUnderTest &dialog) {
                  const JournalLines lines = recorded([&] { dialog.close(); });
                  EXPECT_THAT(lines, testing::Contains("CCatchmentArea::UnMark({A1})"));
                  EXPECT_EQ(lines.back(), "CAdUiBaseDialog::EndDialog(2)");
              }),
              CAdUiBaseDialog::kCancel);
    EXPECT_THAT(kept("m_comboMode"), IsEmpty());
}

TEST_F(Closing, ATickRightBeforeTheEndMarksNothingBehindIt)
{
    for (const bool byOk : {true, false}) {
        run([&](CReviewUnderTest &dialog) {
            dialog.clickCheckBox(dialog.item(L"A2"));
            if (byOk)
                dialog.click(1);
            else
                dialog.close();
            EXPECT_THAT(recorded([] { CReviewUnderTest::runPosted(); }), IsEmpty());
        });
        EXPECT_THAT(drawing().component<velmor::TransientGraphics>().marks(), IsEmpty());
    }
}

TEST_F(Closing, ChangesOfAreasStayWhenTheDialogIsCancelled)
{
    run([](CReviewUnderTest &dialog) { dialog.click(131); }); // area A1 is a household too
    EXPECT_EQ(areaNamed(L"A1")->GetType(), 3);
}

TEST_F(Closing, EnterEndsTheDialogInNoFieldAndNoList)
{
    EXPECT_EQ(run([](CReviewUnderTest &dialog) {
                  for (QWidget *widget : dialog.findChildren<QWidget *>()) {
                      const int control = widget->property(kControlIdProperty).toInt();
                      if (!widget->isVisible() || control == 0 || qobject_cast<QPushButton *>(widget))
                          continue;
                      widget->setFocus();
                      for (const int code : {Qt::Key_Return, Qt::Key_Enter})
                          key(dialog, widget, code);
                      EXPECT_TRUE(dialog.isVisible()) << control;
                  }
              }),
              CAdUiBaseDialog::kCancel);
    EXPECT_THAT(kept("m_edZoom"), IsEmpty());
}

TEST_F(Closing, EscapeInAnOpenEditorOfTheTreeEndsTheEditorAlone)
{
    run([](CReviewUnderTest &dialog) {
        dialog.abandonName(L"A1", "other");
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.treeEditor(), nullptr);
        EXPECT_THAT(dialog.treeNames(), ElementsAre(L"A1", L"A2"));
    });
    EXPECT_TRUE(areaNamed(L"A1"));
}

TEST_F(Closing, EscapeInAnOpenEditorOfTheListEndsTheEditorAlone)
{
    addSection(L"D1", {0, 5}, {10, 5});
    addArea(L"A3", 1, 40, 0.5, 100, {{L"D1", 1.0}});
    run([](CReviewUnderTest &dialog) {
        dialog.select(L"A3");
        dialog.list()->EditCell(0, 1);
        ASSERT_TRUE(dialog.list()->IsEditing());
        key(dialog, dialog.list()->GetEditBox(), Qt::Key_Escape);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FALSE(dialog.list()->IsEditing());
    });
}

} // namespace
