#include "tests/pictures/OverviewPictures.h"

#include "controls/treelist/TreeListCtrl.h"
#include "host/editor/Viewport.h"
#include "host/sewage/CatchmentStore.h"
#include "overview/NetworkOverviewDlg.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/ShownDrawing.h"

#include <QAbstractButton>
#include <QApplication>

namespace velmor {

namespace {

constexpr QSize kDialog(960, 620);
constexpr int kDrawingWidth = 480;

/// The first branch of so many sections or more beneath an item; null when there is none.
CTreeListItem *branchOf(CTreeListCtrl &list, CTreeListItem *parent, int rows)
{
    for (CTreeListItem *at = list.GetChildItem(parent); at; at = list.GetNextSiblingItem(at)) {
        if (at->ChildCount() >= rows)
            return at;
    }
    return nullptr;
}

void settle()
{
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

} // namespace

bool overviewPicture(Session &session, const QDir &folder, const QString &look)
{
    bool isDone = true;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        dialog.resize(kDialog);
        auto *list = dialog.Control<CTreeListCtrl>(CNetworkOverviewDlg::kTreeNetwork);
        for (CTreeListItem *at = list->GetChildItem(list->GetChildItem(nullptr)); at; at = list->GetNextSiblingItem(at))
            list->Expand(at, kExpand);
        settle();
        isDone = savePicture(pictureOf(dialog), folder.filePath(QStringLiteral("overview") + look));
    });
    CNetworkOverviewDlg overview;
    overview.DoModal();
    session.setDialogDriver(nullptr);
    return isDone;
}

bool overviewRoadPicture(const std::filesystem::path &drawing, const QDir &folder)
{
    ShownDrawing shown(drawing);
    if (!shown.isOpen)
        return false;
    Session &session = shown.session;
    MainWindow &window = shown.window;
    // A share that is not whole, as a hand that slipped leaves it.
    const auto areas = session.drawing()->component<CatchmentStore>().areas();
    ZEMGis::Sewage::SectionShares shares;
    constexpr double kSlipped = 0.5;
    if (!areas.empty() && areas.front()->GetConnectedSections(shares) != 0)
        areas.front()->SetConnectedSectionShare(shares.front().first, kSlipped, 1);
    bool isDone = false;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        constexpr int kLeastRows = 20;
        dialog.resize(kDialog);
        window.viewport().setFixedSize(kDrawingWidth, kDialog.height());
        auto *list = dialog.Control<CTreeListCtrl>(CNetworkOverviewDlg::kTreeNetwork);
        CTreeListItem *branch = branchOf(*list, list->GetChildItem(nullptr), kLeastRows);
        if (!branch)
            return;
        list->Expand(branch, kExpand);
        list->SelectItem(branch, 0, true);
        dialog.Control<QAbstractButton>(CNetworkOverviewDlg::kBtnCheckRow)->click();
        settle();
        const QImage form = pictureOf(dialog);
        isDone = savePicture(sideBySide(pictureOf(window.viewport()), form),
                             folder.filePath(QStringLiteral("overview-checked.png")));
    });
    CNetworkOverviewDlg overview;
    overview.DoModal();
    session.setDialogDriver(nullptr);
    return isDone;
}

} // namespace velmor
