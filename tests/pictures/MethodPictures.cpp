#include "tests/pictures/MethodPictures.h"

#include "contracts/HostDialog.h"
#include "definition/ControlIds.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "host/editor/Viewport.h"
#include "host/network/Network.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/ShownDrawing.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>

#include <cstdio>
#include <functional>

namespace velmor {

namespace {

using namespace ControlId;

constexpr QSize kDialog(960, 480);
constexpr int kDrawingWidth = 560;

void choose(CAdUiBaseDialog &dialog, int control, int itemData)
{
    auto *combo = dialog.Control<QComboBox>(control);
    combo->setCurrentIndex(combo->findData(itemData));
    Q_EMIT combo->activated(combo->currentIndex());
}

void click(CAdUiBaseDialog &dialog, int control)
{
    dialog.Control<QAbstractButton>(control)->click();
}

class MethodRun {
public:
    MethodRun(Session &session, MainWindow &window, const QDir &folder)
        : m_session(session), m_window(window), m_folder(folder)
    {
    }
    bool done() const { return m_done; }

    /// Runs the dialog with these sections selected and shown at that factor.
    void run(const QString &name, enmDefinitionMethod method, std::initializer_list<const wchar_t *> sections,
             double zoom, const std::function<void(CAdUiBaseDialog &)> &work)
    {
        m_session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
            std::vector<AcDbObjectId> ids;
            for (const wchar_t *section : sections)
                if (const auto found = network().sectionByName(section))
                    ids.push_back(found->GetObjectId());
            choose(dialog, kComboMethod, method);
            m_session.setNextSelection(ids);
            click(dialog, kBtnSelect);
            work(dialog);
            dialog.resize(kDialog);
            m_window.viewport().setFixedSize(kDrawingWidth, kDialog.height());
            CZEMCEdit::zoom(ids, zoom);
            const QImage form = pictureOf(dialog);
            m_done = savePicture(sideBySide(pictureOf(m_window.viewport()), form), m_folder.filePath(name)) && m_done;
        });
        CDlgCreateCatchmentArea definition;
        definition.DoModal();
        m_session.setDialogDriver(nullptr);
    }
    void nested(const QString &name, int button)
    {
        m_session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
            if (!dialog.GetDlgItem(kComboMethod)) {
                dialog.adjustSize();
                m_done = savePicture(pictureOf(dialog), m_folder.filePath(name)) && m_done;
                return;
            }
            const auto section = network().sections().front();
            m_session.setNextSelection({section->GetObjectId()});
            click(dialog, kBtnSelect);
            click(dialog, button);
        });
        CDlgCreateCatchmentArea definition;
        definition.DoModal();
        m_session.setDialogDriver(nullptr);
    }
    /// The middle between a section's ends.
    AcGePoint3d middleOf(const wchar_t *name)
    {
        const auto section = network().sectionByName(name);
        const AcGePoint3d from = section->GetStartPoint(), to = section->GetEndPoint();
        return {(from.x + to.x) / 2, (from.y + to.y) / 2, 0};
    }

private:
    Network &network() { return m_session.drawing()->component<Network>(); }

    Session &m_session;
    MainWindow &m_window;
    const QDir &m_folder;
    bool m_done = true;
};

} // namespace

bool methodPictures(const std::filesystem::path &drawing, const QDir &folder)
{
    ShownDrawing shown(drawing);
    if (!shown.isOpen)
        return false;
    Session &session = shown.session;
    MainWindow &window = shown.window;
    MethodRun method(session, window, folder);
    method.run(QStringLiteral("method-current-section.png"), kMethodCurrentSection, {L"D12", L"D13", L"D14"}, 1.6,
               [&](CAdUiBaseDialog &dialog) {
                   session.answers().push({method.middleOf(L"D12")});
                   click(dialog, kBtnPoint);
               });
    method.run(QStringLiteral("method-all-sections.png"), kMethodAllSections, {L"D66", L"D67"}, 2.0,
               [&](CAdUiBaseDialog &dialog) {
                   click(dialog, kCheckIslands);
                   session.answers().push({method.middleOf(L"D66")});
                   click(dialog, kBtnPoint);
               });
    method.run(QStringLiteral("method-typed-area.png"), kMethodTypedArea, {L"D30"}, 4.0,
               [&](CAdUiBaseDialog &dialog) { dialog.Control<QLineEdit>(kEditArea)->setText(QStringLiteral("0.35")); });
    method.run(QStringLiteral("method-automatic.png"), kMethodAutomatic, {L"D12", L"D13", L"D48", L"D17", L"D27"}, 1.4,
               [&](CAdUiBaseDialog &dialog) {
                   click(dialog, kCheckIslands);
                   click(dialog, kBtnAuto);
               });
    method.nested(QStringLiteral("boundary-layers.png"), kBtnLayers);
    method.nested(QStringLiteral("terrain-types.png"), kBtnTerrain);
    return method.done();
}

} // namespace velmor
