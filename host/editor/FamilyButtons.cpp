// The selection button and the icon button.
#include "contracts/HostDialog.h"
#include "contracts/NetworkTopology.h"
#include "host/drawing/Journal.h"
#include "host/editor/SectionChoice.h"
#include "host/editor/SelectionTool.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/network/Network.h"
#include "host/services/Icons.h"

#include <QIcon>

#include <unordered_set>

namespace ZEMGis::Selection {

CSelectionButton::CSelectionButton(QWidget *parent) : QPushButton(parent)
{
    connect(this, &QPushButton::clicked, this, [this] {
        if (m_dialog)
            m_dialog->RunHandler([this] { runSelection(); });
        else
            runSelection();
    });
}

void CSelectionButton::setParentDialog(CAdUiBaseDialog *dialog, bool notify)
{
    velmor::journal("CSelectionButton::setParentDialog", notify);
    m_dialog = dialog;
    m_notify = notify;
}

void CSelectionButton::SetButtonTopologyType(int type)
{
    velmor::journal("CSelectionButton::SetButtonTopologyType", type);
    m_topologyType = type;
}

void CSelectionButton::SetHideDisabledMenuOptions(int hide)
{
    velmor::journal("CSelectionButton::SetHideDisabledMenuOptions", hide);
    m_hideDisabled = hide;
}

void CSelectionButton::SetSelectionType(int mask)
{
    velmor::journal("CSelectionButton::SetSelectionType", mask);
    m_selectionType = mask;
}

CSelectionSet *CSelectionButton::GetSelection() const
{
    auto *selection = new CSelectionSet;
    selection->m_sections = m_selected;
    return selection;
}

void CSelectionButton::runSelection()
{
    velmor::Session *session = velmor::Session::currentOrNull();
    if (!session)
        return;
    auto ids = session->takeNextSelection();
    if (!ids) {
        // A person at the window chooses how; anybody else answers a prompt.
        std::optional<velmor::SectionMode> mode;
        if (session->view() && session->drawing() && !session->dialogDriver() && session->answers().size() == 0) {
            mode =
                velmor::chooseSectionMode(*this, session->drawing()->component<velmor::Network>(), m_hideDisabled != 0);
            if (!mode)
                return;
        }
        const bool isAsked = mode != velmor::SectionMode::All;
        if (m_dialog && isAsked)
            m_dialog->BeginEditorCommand();
        ids = mode ? velmor::selectSections(*session, *mode) : velmor::askForSections(*session);
        if (m_dialog && isAsked)
            m_dialog->CompleteEditorCommand(1);
    }
    if (ids)
        take(*ids);
    // After Escape the last selection stands, and is told again.
    if (m_dialog && m_notify)
        m_dialog->OnWindowMessage(kSelectionDoneMessage, 0, 0);
}

void CSelectionButton::take(const std::vector<AcDbObjectId> &ids)
{
    m_selected.clear();
    std::unordered_set<std::wstring> known;
    const auto topology = Topology::CTopologyMultiStorage::Instance()->GetTopology();
    for (const AcDbObjectId &id : ids) {
        const auto section = topology->GetSectionById(id);
        if (section && known.insert(section->GetGuid()).second)
            m_selected.push_back(section);
    }
    setAccessibleDescription(
        QString::fromStdWString(velmor::uiMessage("ui.select.count", {std::to_wstring(m_selected.size())})));
}

} // namespace ZEMGis::Selection

namespace ZEMGis::Utility {

CZEMBitmapButton::CZEMBitmapButton(QWidget *parent) : QPushButton(parent) {}

void CZEMBitmapButton::SetButtonIcon(const wchar_t *name, unsigned type, int width, int height, unsigned flags)
{
    const auto *file = static_cast<const velmor::IconFile *>(
        CModuleConfiguration::Instance()->LoadImageW(name, type, width, height, flags));
    const QIcon icon = file ? QIcon(QString::fromStdString(file->path.string())) : QIcon();
    if (icon.isNull())
        return;
    setIcon(icon);
    setIconSize({width, height});
}

void CZEMBitmapButton::SetToolTip(const wchar_t *text)
{
    setToolTip(text ? QString::fromWCharArray(text) : QString());
}

} // namespace ZEMGis::Utility
