// velmor-pictures DRAWING NETWORK FOLDER: pictures for the documents: the windows over a drawing with areas, in both
// languages, light and dark, and the ways of defining areas over one that has a network only.
#include "contracts/HostDialog.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "host/editor/Selection.h"
#include "host/editor/Viewport.h"
#include "host/network/Network.h"
#include "tests/pictures/MethodPictures.h"
#include "tests/pictures/OverviewPictures.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/ReviewPictures.h"
#include "tests/pictures/ShownDrawing.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QTableView>

#include <clocale>
#include <cstdio>

namespace velmor {
namespace {

void showDock(const MainWindow &window, const char *name)
{
    auto *dock = window.findChild<QDockWidget *>(QLatin1String(name));
    dock->show();
    dock->raise();
    QApplication::processEvents();
}

bool save(QWidget &window, const QString &file)
{
    return savePicture(pictureOf(window), file);
}

bool picturesOf(const std::filesystem::path &drawing, const QDir &folder, const char *language, Theme theme)
{
    const QString look =
        QStringLiteral("-%1-%2.png").arg(QLatin1String(language), QString::fromWCharArray(nameOf(theme)));
    ShownDrawing shown(drawing, language, theme);
    if (!shown.isOpen)
        return false;
    Session &session = shown.session;
    MainWindow &window = shown.window;
    showDock(window, "dock.layers");
    showDock(window, "dock.areas");
    window.resizeDocks({window.findChild<QDockWidget *>(QStringLiteral("dock.areas"))}, {230}, Qt::Vertical);
    window.viewport().showEverything();
    bool done = save(window, folder.filePath(QStringLiteral("areas") + look));

    const auto &sections = session.drawing()->component<Network>().sections();
    if (!sections.empty())
        session.drawing()->component<Selection>().set(std::vector{sections[sections.size() / 2]->GetObjectId()});
    showDock(window, "dock.properties");
    showDock(window, "dock.network");
    done = save(window, folder.filePath(QStringLiteral("network") + look)) && done;

    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        dialog.resize(960, 480);
        done = save(dialog, folder.filePath(QStringLiteral("definition") + look)) && done;
    });
    CDlgCreateCatchmentArea definition;
    definition.DoModal();
    session.setDialogDriver(nullptr);
    done = overviewPicture(session, folder, look) && done;
    return reviewPicture(session, folder, look) && done;
}

} // namespace
} // namespace velmor

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    if (argc != 4) {
        std::fputs("usage: velmor-pictures DRAWING NETWORK FOLDER\n", stderr);
        return 1;
    }
    const QDir folder(QString::fromLocal8Bit(argv[3]));
    bool done = true;
    for (const char *language : {"en", "hr"})
        for (const velmor::Theme theme : {velmor::Theme::Light, velmor::Theme::Dark})
            done = velmor::picturesOf(argv[1], folder, language, theme) && done;
    done = velmor::methodPictures(argv[2], folder) && done;
    done = velmor::reviewRoadPictures(argv[1], folder) && done;
    done = velmor::overviewRoadPicture(argv[1], folder) && done;
    return done ? 0 : 1;
}
