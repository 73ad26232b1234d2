#include "tests/pictures/MethodPictures.h"

#include "contracts/HostDialog.h"
#include "definition/ControlIds.h"
#include "definition/DlgCreateCatchmentArea.h"
#include "host/editor/Captions.h"
#include "host/editor/MainWindow.h"
#include "host/editor/Session.h"
#include "host/editor/Theme.h"
#include "host/editor/Viewport.h"
#include "host/network/Network.h"
#include "host/services/Services.h"
#include "tests/pictures/Pictures.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QPainter>

#include <cstdio>
#include <functional>

namespace velmor {

namespace {

using namespace ControlId;

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

/// The drawing and the dialog side by side, the drawing in the middle of the dialog's height.
QImage sideBySide(const QImage &left, const QImage &right)
{
    constexpr int kGap = 8;
    QImage both(left.width() + kGap + right.width(), std::max(left.height(), right.height()), QImage::Format_RGB32);
    both.fill(Qt::white);
    QPainter painter(&both);
    painter.drawImage(0, 0, left);
    painter.drawImage(left.width() + kGap, 0, right);
    return both;
}

class MethodRun {
public:
    MethodRun(Session &session, MainWindow &window, const QDir &folder)
        : m_session(session), m_window(window), m_folder(folder)
    {
    }
    bool done() const { return m_done; }

    /// Runs the dialog with these sections selected; what it leaves is undone by the next opening of the drawing.
    void run(const QString &name, enmDefinitionMethod method, std::initializer_list<const wchar_t *> sections,
             const std::function<void(CAdUiBaseDialog &)> &work)
    {
        m_session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
            std::vector<AcDbObjectId> ids;
            for (const wchar_t *section : sections)
                if (const auto found = network().sectionByName(section))
                    ids.push_back(found->GetObjectId());
            choose(dialog, kComboMethod, method);
            m_session.setNextSelection(ids);
            click(dialog, kBtnSelect);
            CZEMCEdit::zoom(ids, 2.2);
            work(dialog);
            dialog.adjustSize();
            const QImage form = pictureOf(dialog);
            m_window.viewport().setFixedSize(620, form.height());
            CZEMCEdit::zoom(ids, 2.2);
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
        AcGePoint3d from, to;
        const CZEMCCurvePtr curve(network().sectionByName(name)->GetObjectId(), AcDb::kForRead);
        curve.curve()->getStartPoint(from);
        curve.curve()->getEndPoint(to);
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
    Services::instance().start({.language = "en"});
    followLanguage();
    applyTheme(Theme::Light);
    Session session;
    session.setDrawing(Drawing::createNew());
    MainWindow window(session);
    window.resize(1280, 800);
    window.show();
    if (!window.openFile(drawing))
        return false;
    MethodRun method(session, window, folder);
    method.run(QStringLiteral("method-current-section.png"), kMethodCurrentSection, {L"D12", L"D13", L"D14"},
               [&](CAdUiBaseDialog &dialog) {
                   session.answers().push({method.middleOf(L"D12")});
                   click(dialog, kBtnPoint);
               });
    method.run(QStringLiteral("method-all-sections.png"), kMethodAllSections, {L"D20", L"D21"},
               [&](CAdUiBaseDialog &dialog) {
                   dialog.Control<QAbstractButton>(kCheckIslands)->click();
                   session.answers().push({method.middleOf(L"D20")});
                   click(dialog, kBtnPoint);
               });
    method.run(QStringLiteral("method-typed-area.png"), kMethodTypedArea, {L"D30"},
               [&](CAdUiBaseDialog &dialog) { dialog.Control<QLineEdit>(kEditArea)->setText(QStringLiteral("0.35")); });
    method.run(QStringLiteral("method-automatic.png"), kMethodAutomatic,
               {L"D2", L"D3", L"D4", L"D5", L"D6", L"D7", L"D8", L"D9", L"D10", L"D11", L"D12"},
               [&](CAdUiBaseDialog &dialog) {
                   dialog.Control<QAbstractButton>(kCheckIslands)->click();
                   click(dialog, kBtnAuto);
               });
    method.nested(QStringLiteral("boundary-layers.png"), kBtnLayers);
    method.nested(QStringLiteral("terrain-types.png"), kBtnTerrain);
    return method.done();
}

} // namespace velmor
