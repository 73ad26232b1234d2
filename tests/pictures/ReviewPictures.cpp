#include "tests/pictures/ReviewPictures.h"

#include "contracts/HostDialog.h"
#include "host/editor/ControlEvents.h"
#include "host/editor/Viewport.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/network/Network.h"
#include "host/services/Text.h"
#include "review/DlgEditCatchmentArea.h"
#include "review/ReviewControls.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/ShownDrawing.h"

#include <cstdio>
#include <functional>

namespace velmor {

namespace {

using namespace ReviewControl;

constexpr QSize kDialog(960, 700);
constexpr int kDrawingWidth = 560;

/// Tells what can't be done; false then.
bool done(const ControlEvents::Problem &problem)
{
    if (problem)
        std::fprintf(stderr, "%s\n", utf8(*problem).c_str());
    return !problem;
}

} // namespace

bool reviewPicture(Session &session, const QDir &folder, const QString &look)
{
    bool isDone = true;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        dialog.resize(kDialog);
        ControlEvents events(dialog);
        isDone = done(events.clickItem(kTreeAreas, {L"D7_1", L"D8"})) && done(events.clickItem(kTreeAreas, {L"D7_1"}));
        isDone = savePicture(pictureOf(dialog), folder.filePath(QStringLiteral("review") + look)) && isDone;
    });
    CDlgEditCatchmentArea review;
    review.DoModal();
    session.setDialogDriver(nullptr);
    return isDone;
}

bool reviewRoadPictures(const std::filesystem::path &drawing, const QDir &folder)
{
    ShownDrawing shown(drawing);
    if (!shown.isOpen)
        return false;
    Session &session = shown.session;
    MainWindow &window = shown.window;
    bool isDone = true;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        ControlEvents events(dialog);
        if (dialog.GetDlgItem(kControlPatterns)) {
            isDone = done(events.clickItem(kControlPatterns, {L"NET3"})) && isDone;
            isDone = savePicture(pictureOf(dialog), folder.filePath(QStringLiteral("hatch-patterns.png"))) && isDone;
            isDone = done(events.click(kControlOk)) && isDone;
            return;
        }
        isDone = done(events.click(kBtnPattern));
        isDone = done(events.type(kEditScale, L"2")) && isDone;
        for (const wchar_t *area : {L"D13_1", L"D14_1", L"D12_1"}) {
            isDone = done(events.tickItem(kTreeAreas, {area}, true)) && isDone;
            QCoreApplication::sendPostedEvents();
        }
        dialog.resize(kDialog);
        window.viewport().setFixedSize(kDrawingWidth, kDialog.height());
        std::vector<AcDbObjectId> ids;
        for (const wchar_t *section : {L"D12", L"D13", L"D14"})
            if (const auto found = session.drawing()->component<Network>().sectionByName(section))
                ids.push_back(found->GetObjectId());
        CZEMCEdit::zoom(ids, 1.6);
        const QImage form = pictureOf(dialog);
        isDone = savePicture(sideBySide(pictureOf(window.viewport()), form),
                             folder.filePath(QStringLiteral("review-checked.png"))) &&
                 isDone;
    });
    CDlgEditCatchmentArea review;
    review.DoModal();
    session.setDialogDriver(nullptr);
    return isDone;
}

} // namespace velmor
