// What a person does in the window while a dialog waits: prompts, tips, hidden dialogs, messages, locks, the screen.
#include "tests/contracts/WindowFixture.h"

#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"
#include "host/drawing/Transient.h"
#include "host/network/Network.h"
#include "host/services/Text.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPlainTextEdit>

namespace velmor::test {
namespace {

using testing::HasSubstr;

class WindowContract : public WindowFixture {
protected:
    void setOsmode(short value)
    {
        resbuf mode;
        mode.restype = RTSHORT;
        mode.resval.rint = value;
        EXPECT_EQ(acedSetVar(L"OSMODE", &mode), RTNORM);
    }
};

// --- Prompts ------------------------------------------------------------------------------------------------------

TEST_F(WindowContract, AClickInAZoomedAndPannedViewGivesItsWorldPoint)
{
    showWindow();
    setOsmode(0);
    for (const Extents &shown : {Extents{5e6, 4e6, 5e6 + 3, 4e6 + 3}, Extents{-1e5, -1e5, 1e5, 1e5}}) {
        viewport->showExtents(shown);
        viewport->panBy({37, -21});
        const QPoint pixel(321, 123);
        const AcGePoint3d expected = viewport->view().toWorld(pixel);
        atPrompt([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixel); });
        ads_point point{};
        ASSERT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
        const double size = shown.maxX - shown.minX;
        EXPECT_NEAR(point[0], expected.x, size * 1e-9);
        EXPECT_NEAR(point[1], expected.y, size * 1e-9);
    }
    ads_point point{};
    atPrompt([this] { key(Qt::Key_Return); });
    const int entered = acedGetPoint(nullptr, L"Point:", point);
    atPrompt([this] { key(Qt::Key_Escape); });
    const int escaped = acedGetPoint(nullptr, L"Point:", point);
    EXPECT_NE(entered, RTNORM);
    EXPECT_NE(escaped, RTNORM);
    EXPECT_NE(entered, escaped);
}

TEST_F(WindowContract, TheRubberBandRunsFromTheBasePointToThePointer)
{
    showWindow();
    QImage with, without;
    const ads_point base = {10, 10, 0};
    ads_point point{};
    const auto look = [&](QImage &image) {
        atPrompt([&] {
            QTest::mouseMove(viewport, pixelOf(80, 60));
            image = shot();
            key(Qt::Key_Escape);
        });
    };
    look(without);
    acedGetPoint(nullptr, L"Point:", point);
    look(with);
    acedGetPoint(base, L"Point:", point);
    const QPoint middle = pixelOf(45, 35);
    const QRect around(middle - QPoint(6, 6), middle + QPoint(6, 6));
    EXPECT_GT(differences(with.copy(around), without.copy(around)), 5);
}

TEST_F(WindowContract, APickTakesTheNearerOfTwoLinesTwoPixelsApartAtAnyZoom)
{
    showWindow();
    ads_name name{};
    ads_point point{};
    for (const double half : {50.0, 1.25}) {
        viewport->showExtents({50 - half, 50 - half, 50 + half, 50 + half});
        const double apart = 2.0 / viewport->view().pixelsPerUnit;
        const AcDbObjectId low = line(0, 50, 100, 50), high = line(0, 50 + apart, 100, 50 + apart);
        for (const bool onUpper : {false, true}) {
            const QPoint pixel = pixelOf(50, 50) + QPoint(3, onUpper ? -3 : 1);
            atPrompt([&] { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixel); });
            ASSERT_EQ(acedEntSel(L"Entity:", name, point), RTNORM);
            AcDbObjectId id;
            ASSERT_EQ(acdbGetObjectId(id, name), Acad::eOk);
            EXPECT_EQ(id, onUpper ? high : low);
        }
        drawing().erase(entityOf(low));
        drawing().erase(entityOf(high));
    }
    line(0, 50, 100, 50);
    atPrompt([this] { QTest::mouseClick(viewport, Qt::LeftButton, {}, pixelOf(50, 50) + QPoint(0, 60)); });
    EXPECT_NE(acedEntSel(L"Entity:", name, point), RTNORM) << "a miss";
    atPrompt([this] { key(Qt::Key_Escape); });
    EXPECT_NE(acedEntSel(L"Entity:", name, point), RTNORM);
}

TEST_F(WindowContract, OsmodeDecidesWhetherAClickSnapsToALinesEnd)
{
    line(0, 0, 40, 40);
    showWindow();
    resbuf kept;
    ASSERT_EQ(acedGetVar(L"OSMODE", &kept), RTNORM);
    ads_point point{};
    const QPoint beside = pixelOf(40, 40) + QPoint(3, 0);
    for (const short mode : {short{1}, short{0}}) {
        setOsmode(mode);
        atPrompt([&] {
            QTest::mouseMove(viewport, beside);
            QTest::mouseClick(viewport, Qt::LeftButton, {}, beside);
        });
        ASSERT_EQ(acedGetPoint(nullptr, L"Point:", point), RTNORM);
        if (mode == 1) {
            EXPECT_EQ(point[0], 40.0);
            EXPECT_EQ(point[1], 40.0);
        } else {
            EXPECT_GT(point[0], 40.0);
        }
    }
    EXPECT_EQ(acedSetVar(L"OSMODE", &kept), RTNORM);
}

// --- Dialogs out of the way ---------------------------------------------------------------------------------------

class Sheet : public CAdUiBaseDialog {
public:
    explicit Sheet(QWidget *parent = nullptr) : CAdUiBaseDialog(parent), m_edit(new QLineEdit(this))
    {
        m_other = new QLineEdit(this);
        m_other->move(0, 40);
        resize(240, 120);
    }
    QLineEdit *m_edit, *m_other;
};

TEST_F(WindowContract, BothDialogsGoAndComeBackWithTextFocusAndPlaceWhileThePersonPansAndZooms)
{
    line(0, 0, 100, 100);
    showWindow();
    Sheet outer, inner(&outer);
    bool bothGone = false, dialogsBack = false, outerBack = false;
    QString text;
    QRect place;
    bool focusKept = false;
    double zoomedBy = 0.0;
    std::wstring waited;
    int status = 0;
    then([&] { return outer.isVisible(); },
         [&] {
             outer.move(30, 40);
             inner.DoModal();
         });
    then([&] { return inner.isVisible(); },
         [&] {
             inner.move(111, 77);
             inner.m_edit->setText(QStringLiteral("half typed"));
             inner.m_other->setFocus();
             place = inner.geometry();
             inner.BeginEditorCommand();
             status = acedGetString(0, L"Enter goes on", waited);
             inner.CompleteEditorCommand(1);
             dialogsBack = inner.isVisible();
             outerBack = outer.isVisible();
             text = inner.m_edit->text();
             focusKept = inner.focusWidget() == inner.m_other;
         });
    atPrompt([&] {
        bothGone = !inner.isVisible() && !outer.isVisible();
        const double before = viewport->view().pixelsPerUnit;
        viewport->panBy({25, 10});
        QWheelEvent wheel(QPointF(100, 100), viewport->mapToGlobal(QPointF(100, 100)), {}, {0, 120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewport, &wheel);
        zoomedBy = viewport->view().pixelsPerUnit / before;
        key(Qt::Key_Return);
    });
    then([&] { return inner.isVisible() && dialogsBack; },
         [&] {
             EXPECT_EQ(inner.geometry(), place);
             inner.EndDialog(CAdUiBaseDialog::kOk);
         });
    then([&] { return outer.isVisible() && !inner.isVisible(); }, [&] { outer.EndDialog(CAdUiBaseDialog::kOk); });
    outer.DoModal();
    EXPECT_TRUE(bothGone);
    EXPECT_TRUE(outerBack);
    EXPECT_EQ(status, RTNORM);
    EXPECT_GT(zoomedBy, 1.0);
    EXPECT_EQ(text, QStringLiteral("half typed"));
    EXPECT_TRUE(focusKept);
}

TEST_F(WindowContract, AMessageIsModalAndTheHandlerWaitsForItsAnswer)
{
    showWindow();
    bool answered = false;
    QString told;
    then([] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr; },
         [&] {
             auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
             told = box->text();
             answered = true;
             box->accept();
         });
    acedAlert(L"Nothing was found around the point");
    EXPECT_TRUE(answered);
    EXPECT_EQ(told, QStringLiteral("Nothing was found around the point"));
}

TEST_F(WindowContract, AMessageOfADialogsHandlerStandsOverThatDialog)
{
    showWindow();
    Sheet dialog;
    const QWidget *owner = nullptr;
    bool isOnTop = false;
    then([&] { return dialog.isVisible(); },
         [&] {
             dialog.RunHandler([] { acedAlert(L"The name is taken"); });
             dialog.EndDialog(CAdUiBaseDialog::kOk);
         });
    then([] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr; },
         [&] {
             auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
             owner = box->parentWidget();
             isOnTop = dialog.isVisible();
             box->accept();
         });
    dialog.DoModal();
    EXPECT_EQ(owner, &dialog);
    EXPECT_TRUE(isOnTop);
}

TEST_F(WindowContract, AskedForABlockFileTheFileDialogOffersWhatStandsForIt)
{
    showWindow();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    std::ofstream(folder / "CatchLabel.dxf") << "x";
    const auto dialog = [] { return qobject_cast<QFileDialog *>(QApplication::activeModalWidget()); };
    QString named;
    then([&] { return dialog() != nullptr; },
         [&] {
             EXPECT_EQ(dialog()->nameFilters(), QStringList{QStringLiteral("*.dwg *.dxf")});
             named = dialog()->findChild<QLineEdit *>()->text();
             dialog()->reject();
         });
    resbuf file;
    EXPECT_EQ(acedGetFileD(L"Blok", (folder / "CatchLabel.dwg").wstring().c_str(), L"dwg", 64, &file), RTCAN);
    EXPECT_EQ(named, QStringLiteral("CatchLabel.dxf"));
}

TEST_F(WindowContract, TheFileDialogHasTitleFolderAndKindAndTellsTheChosenFile)
{
    showWindow();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    std::ofstream(folder / "label.dxf") << "x";
    const auto dialog = [] { return qobject_cast<QFileDialog *>(QApplication::activeModalWidget()); };
    resbuf file;
    then([&] { return dialog() != nullptr; },
         [&] {
             EXPECT_EQ(dialog()->windowTitle(), QStringLiteral("Block file"));
             EXPECT_EQ(dialog()->directory().absolutePath().toStdString(), folder.string());
             EXPECT_EQ(dialog()->nameFilters(), QStringList{QStringLiteral("*.dwg *.dxf")});
             dialog()->findChild<QLineEdit *>()->setText(QStringLiteral("label.dxf"));
             QMetaObject::invokeMethod(dialog(), "accept");
         });
    ASSERT_EQ(acedGetFileD(L"Block file", folder.wstring().c_str(), L"dwg;dxf", 0, &file), RTNORM);
    EXPECT_EQ(file.restype, RTSTR);
    EXPECT_EQ(std::wstring(file.resval.rstring), (folder / "label.dxf").wstring());
    acutDelBuffer(file.resval.rstring);
    file.restype = RTNONE;
    then([&] { return dialog() != nullptr; }, [&] { dialog()->reject(); });
    EXPECT_NE(acedGetFileD(L"Block file", folder.wstring().c_str(), L"dwg", 0, &file), RTNORM);
    EXPECT_EQ(file.restype, RTNONE);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
}

// --- Locks and the guard ------------------------------------------------------------------------------------------

TEST_F(WindowContract, ASecondWriterIsRefusedWhileADialogHoldsTheDocument)
{
    line(0, 0, 10, 10);
    showWindow();
    Sheet dialog;
    const std::string before = drawing().write();
    std::wstring reason;
    bool ran = true, ranLater = false;
    then([&] { return dialog.isVisible(); },
         [&] {
             const ZEMGis::Utility::CDocLock lock;
             {
                 const CZEMCDocLock nested;
                 const AcAxDocLock deeper;
             }
             ran = session.commands().run(L"LAYER NEWONE", &reason);
             dialog.EndDialog(CAdUiBaseDialog::kOk);
         });
    dialog.DoModal();
    EXPECT_FALSE(ran) << "the inner locks have ended, the outer one still holds";
    EXPECT_THAT(reason, HasSubstr(L"locked"));
    EXPECT_EQ(drawing().write(), before);
    EXPECT_EQ(session.documentLocks(), 0);
    {
        try {
            const ZEMGis::Utility::CDocLock lock;
            throw std::runtime_error("leaves");
        } catch (const std::exception &) {
        }
    }
    EXPECT_EQ(session.documentLocks(), 0);
    ranLater = session.commands().run(L"-BOUNDARY 500,500 \"\"", &reason);
    EXPECT_TRUE(ranLater) << utf8(reason);
}

/// What a module's command does: a dialog that hides for a point.
struct PickingCommand {
    static void run()
    {
        ++s_opened;
        Sheet dialog;
        s_dialog = &dialog;
        dialog.DoModal();
        s_dialog = nullptr;
    }
    static inline int s_opened = 0;
    static inline Sheet *s_dialog = nullptr;
};

TEST_F(WindowContract, ACommandIsNotStartedOverItsOwnDialogThatHidesForAPick)
{
    showWindow();
    ASSERT_EQ(session.commands().addCommand(L"TEST", L"pickingsheet", L"pickingsheet", CommandEntry::kTransparent,
                                            PickingCommand::run, nullptr, -1, nullptr, nullptr),
              Acad::eOk);
    int status = 0;
    ads_point point = {};
    std::wstring told, reason;
    bool ranAgain = true;
    then([] { return PickingCommand::s_dialog && PickingCommand::s_dialog->isVisible(); },
         [&] {
             Sheet &dialog = *PickingCommand::s_dialog;
             dialog.BeginEditorCommand();
             status = acedGetPoint(nullptr, L"Point", point);
             dialog.CompleteEditorCommand(1);
             dialog.EndDialog(CAdUiBaseDialog::kOk);
         });
    atPrompt([&] {
        EXPECT_FALSE(PickingCommand::s_dialog->isVisible());
        auto *field = window->commandLine().findChild<QLineEdit *>();
        field->insert(QStringLiteral("'pickingsheet"));
        QTest::keyClick(field, Qt::Key_Return);
        told = session.lastStatus();
        ranAgain = session.commands().run(L"pickingsheet", &reason);
        EXPECT_TRUE(isPrompting()) << "the first one still asks";
        click(50, 50);
    });
    EXPECT_TRUE(session.commands().run(L"pickingsheet"));
    EXPECT_EQ(PickingCommand::s_opened, 1);
    EXPECT_FALSE(ranAgain);
    EXPECT_THAT(told, HasSubstr(L"pickingsheet is open already"));
    EXPECT_EQ(reason, told);
    EXPECT_EQ(status, RTNORM);
    EXPECT_NEAR(point[0], 50.0, 1.0);
    session.commands().removeCmd(L"TEST", L"pickingsheet");
}

/// Another command of the same module.
struct OtherCommand {
    static void run()
    {
        ++s_opened;
        Sheet().DoModal();
    }
    static inline int s_opened = 0;
};

TEST_F(WindowContract, NoModulesCommandIsStartedOverADialogThatHidesForAPick)
{
    showWindow();
    const auto add = [&](const wchar_t *name, AcRxFunctionPtr function) {
        ASSERT_EQ(session.commands().addCommand(L"TEST", name, name, CommandEntry::kTransparent, function, nullptr, -1,
                                                nullptr, nullptr),
                  Acad::eOk);
    };
    add(L"pickingsheet", PickingCommand::run);
    add(L"othersheet", OtherCommand::run);
    const int picked = PickingCommand::s_opened;
    std::wstring told, reason;
    bool ranOther = true, ranZoom = false;
    then([] { return PickingCommand::s_dialog && PickingCommand::s_dialog->isVisible(); },
         [&] {
             ads_point point = {};
             Sheet &dialog = *PickingCommand::s_dialog;
             dialog.BeginEditorCommand();
             acedGetPoint(nullptr, L"Point", point);
             dialog.CompleteEditorCommand(1);
             dialog.EndDialog(CAdUiBaseDialog::kOk);
         });
    atPrompt([&] {
        auto *field = window->commandLine().findChild<QLineEdit *>();
        field->insert(QStringLiteral("'othersheet"));
        QTest::keyClick(field, Qt::Key_Return);
        told = session.lastStatus();
        ranOther = session.commands().run(L"othersheet", &reason);
        ranZoom = session.commands().run(L"'ZOOM E");
        EXPECT_TRUE(isPrompting()) << "the first one still asks";
        click(50, 50);
    });
    EXPECT_TRUE(session.commands().run(L"pickingsheet"));
    EXPECT_EQ(PickingCommand::s_opened, picked + 1);
    EXPECT_EQ(OtherCommand::s_opened, 0);
    EXPECT_FALSE(ranOther);
    EXPECT_THAT(told, HasSubstr(L"pickingsheet is open already"));
    EXPECT_EQ(reason, told);
    EXPECT_TRUE(ranZoom) << "what the host does transparently goes on";
    then([] { return dynamic_cast<Sheet *>(QApplication::activeModalWidget()) != nullptr; },
         [] { dynamic_cast<Sheet *>(QApplication::activeModalWidget())->EndDialog(CAdUiBaseDialog::kOk); });
    EXPECT_TRUE(session.commands().run(L"othersheet")) << "afterwards it starts";
    EXPECT_EQ(OtherCommand::s_opened, 1);
    for (const wchar_t *name : {L"pickingsheet", L"othersheet"})
        session.commands().removeCmd(L"TEST", name);
}

TEST_F(WindowContract, NoModulesCommandIsStartedOverAPickOfADialogThatNoCommandOpened)
{
    showWindow();
    ASSERT_EQ(session.commands().addCommand(L"TEST", L"othersheet", L"othersheet", CommandEntry::kTransparent,
                                            OtherCommand::run, nullptr, -1, nullptr, nullptr),
              Acad::eOk);
    const int opened = OtherCommand::s_opened;
    Sheet dialog;
    std::wstring reason;
    then([&] { return dialog.isVisible(); },
         [&] {
             dialog.BeginEditorCommand();
             EXPECT_FALSE(session.commands().run(L"othersheet", &reason));
             dialog.CompleteEditorCommand(1);
             dialog.EndDialog(CAdUiBaseDialog::kOk);
         });
    dialog.DoModal();
    EXPECT_EQ(OtherCommand::s_opened, opened);
    EXPECT_THAT(reason, HasSubstr(L"locked by an open dialog"));
    session.commands().removeCmd(L"TEST", L"othersheet");
}

// --- The screen ---------------------------------------------------------------------------------------------------

TEST_F(WindowContract, TheScreenShowsTheNewHatchRightAfterTheHandler)
{
    const AcDbObjectId ring = box(20, 20, 80, 80);
    showWindow();
    const QImage before = shot();
    const auto painted = viewport->paintCounts();
    auto *hatch = new AcDbHatch;
    hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI31");
    hatch->appendLoop(AcDbHatch::kExternal, {ring});
    hatch->evaluateHatch(false);
    AcDbObjectId id;
    ASSERT_EQ(CZEMCDraw::appendToModelSpace(hatch, id), Acad::eOk);
    hatch->close();
    RefreshDrawingDisplay(); // no event is handled behind this line
    const auto now = viewport->paintCounts();
    EXPECT_GT(now.full + now.strips + now.patches + now.overlays,
              painted.full + painted.strips + painted.patches + painted.overlays)
        << "it was painted within the call";
    EXPECT_GT(differences(before, shot()), 500);
}

TEST_F(WindowContract, RedrawWithFourWipesTemporaryDrawingAndLeavesEntities)
{
    box(20, 20, 80, 80);
    ASSERT_TRUE(importInpText(drawing(),
                              "[OPTIONS]\nFLOW_UNITS CMS\n[JUNCTIONS]\nA 1\n[OUTFALLS]\nB 0 FREE\n[CONDUITS]\n"
                              "S A B 50 0.01\n[COORDINATES]\nA 10 50\nB 90 50\n",
                              "net.inp"));
    showWindow();
    const std::string file = drawing().write();
    const QImage plain = shot();
    const auto section = drawing().component<Network>().sectionByName(L"S");
    section->DrawTemporary(1, 0);
    RefreshDrawingDisplay();
    EXPECT_GT(differences(plain, shot()), 50);
    EXPECT_EQ(drawing().write(), file);
    EXPECT_EQ(acedRedraw(nullptr, 4), RTNORM);
    EXPECT_EQ(differences(plain, shot()), 0);
}

TEST_F(WindowContract, SingleEntitiesAreBlankedDrawnHighlightedAndUnhighlighted)
{
    const AcDbObjectId id = box(20, 20, 80, 80);
    showWindow();
    const QImage plain = shot();
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, id), Acad::eOk);
    EXPECT_EQ(acedRedraw(name, 2), RTNORM);
    const QImage blank = shot();
    EXPECT_GT(differences(plain, blank), 100);
    EXPECT_EQ(acedRedraw(name, 1), RTNORM);
    EXPECT_EQ(differences(plain, shot()), 0);
    EXPECT_EQ(acedRedraw(name, 3), RTNORM);
    EXPECT_GT(differences(plain, shot()), 100);
    EXPECT_EQ(acedRedraw(name, 4), RTNORM);
    EXPECT_EQ(differences(plain, shot()), 0);
    const ads_name wrong = {1, 2};
    EXPECT_EQ(acedRedraw(wrong, 3), RTERROR);
    EXPECT_EQ(acedRedraw(name, 5), RTREJ);
}

TEST_F(WindowContract, ZoomShowsEntitiesInTheMiddleAndNoRedrawUndoesIt)
{
    const AcDbObjectId near = box(0, 0, 10, 10), far = box(1000, 2000, 1040, 2020), gone = box(-1e6, 0, -9e5, 10);
    showWindow();
    drawing().erase(entityOf(gone));
    ASSERT_TRUE(CZEMCEdit::zoom(far, 1.0));
    const ViewTransform once = viewport->view();
    EXPECT_NEAR(once.centerX, 1020, 1e-9);
    EXPECT_NEAR(once.centerY, 2010, 1e-9);
    EXPECT_LE(once.visible().minX, 1000);
    EXPECT_GE(once.visible().maxX, 1040);
    ASSERT_TRUE(CZEMCEdit::zoom(far, 2.0));
    EXPECT_NEAR(once.pixelsPerUnit / viewport->view().pixelsPerUnit, 2.0, 1e-9);
    ASSERT_TRUE(CZEMCEdit::zoom({near, gone, far}, 1.0));
    const Extents both = viewport->view().visible();
    EXPECT_TRUE(both.contains(0, 0) && both.contains(1040, 2020));
    EXPECT_FALSE(both.contains(-9e5, 5)) << "the erased one does not count";
    RefreshDrawingDisplay();
    acedRedraw(nullptr, 4);
    EXPECT_EQ(viewport->view().visible(), both);
    EXPECT_FALSE(CZEMCEdit::zoom(AcDbObjectIdArray{gone}, 1.0));
}

TEST_F(WindowContract, ManyEntitiesAndManySetsAreSelected)
{
    for (int i = 0; i < 5000; ++i)
        line(i % 100, i / 100, i % 100 + 0.5, i / 100);
    showWindow();
    atPrompt([this] { drag(-5, 105, 105, -5); });
    atPrompt([this] { key(Qt::Key_Return); });
    ads_name set{};
    ASSERT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTNORM);
    std::int32_t length = 0;
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    EXPECT_EQ(length, 5000);
    std::vector<std::int64_t> names;
    for (int i = 0; i < 1000; ++i) { // none of them is ever freed
        ads_name more{};
        ASSERT_EQ(acedSSAdd(nullptr, nullptr, more), RTNORM);
        ads_name entity{};
        ASSERT_EQ(acedSSName(set, i, entity), RTNORM);
        ASSERT_EQ(acedSSAdd(entity, more, more), RTNORM);
        names.push_back(more[0]);
    }
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    EXPECT_EQ(length, 5000);
    for (const std::int64_t name : names)
        EXPECT_EQ(session.selectionSets().find(name)->members().size(), 1u);
}

} // namespace
} // namespace velmor::test
