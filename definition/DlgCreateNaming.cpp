// Where the definition dialog's coefficient comes from, and how an area's name is proposed.
#include "definition/DlgCreateCatchmentArea.h"

#include "ui_definition.h"

void CDlgCreateCatchmentArea::OnCoeffSourceChanged()
{
    RefreshMembers();
    const EnablingTable::SourceRow &row = EnablingTable::kSourceTable[static_cast<std::size_t>(m_nCoeffSource)];
    EnableControls(row.m_on, true);
    EnableControls(row.m_off, false);
    if (m_nCoeffSource == kCoeffFromTerrain)
        OnTerrainChanged();
}

void CDlgCreateCatchmentArea::OnTerrainChanged()
{
    if (const auto *item = static_cast<const CItemData *>(m_ui->comboTerrain->currentData().value<void *>()))
        SetNumber(m_ui->editCoefficient, item->m_coefficient);
}

std::wstring CDlgCreateCatchmentArea::MakeAreaName(const std::wstring &base) const
{
    return NextFreeAreaName(m_nameParts, base, m_usedNames);
}

bool CDlgCreateCatchmentArea::IsNameUsed(const std::wstring &name) const
{
    return m_usedNames.contains(name);
}
