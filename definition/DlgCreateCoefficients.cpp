// Where the definition dialog's coefficient comes from.
#include "definition/DlgCreateCatchmentArea.h"

#include "controls/WideText.h"
#include "ui_definition.h"

void CDlgCreateCatchmentArea::OnCoeffSourceChanged()
{
    RefreshMembers();
    const EnablingTable::SourceRow &row = EnablingTable::kSourceTable[static_cast<std::size_t>(m_nCoeffSource)];
    EnableControls(row.m_on, true);
    EnableControls(row.m_off, false);
    if (m_nCoeffSource == kCoeffFromTerrain)
        OnTerrainChanged();
    else
        ComputeAtvCoefficient();
}

void CDlgCreateCatchmentArea::OnTerrainChanged()
{
    if (const auto *item = static_cast<const CItemData *>(m_ui->comboTerrain->currentData().value<void *>()))
        SetNumber(m_ui->editCoefficient, item->m_coefficient);
}

double CDlgCreateCatchmentArea::ComputeAtvCoefficient()
{
    constexpr double kPercentStep = 10.0;
    RefreshMembers();
    if (m_bInitializing)
        return 0.0;
    // What the table does not know comes as the missing-value marker; the edit makes of it what it makes of any number.
    SetNumber(m_ui->editCoefficient,
              m_flowTable.GetCoefficient(m_nSlopeClass, GetNumber(m_ui->editIntensity), m_nRunoffIndex * kPercentStep));
    return 1.0;
}

void CDlgCreateCatchmentArea::LoadTerrainTypes()
{
    if (!m_terrainCatalog.Load())
        return;
    AddTerrainTypes(m_terrainCatalog);
    SelectFirstTerrain();
}

void CDlgCreateCatchmentArea::AddTerrainTypes(CZEMTerrainTypeCatalog &catalog)
{
    CStringArray names;
    AcArray<double> flows;
    catalog.GetTerrains(names, flows);
    for (std::size_t i = 0; i < names.size(); ++i) {
        boost::shared_ptr<CItemData> item(new CItemData{flows[i]});
        m_ui->comboTerrain->addItem(ToQString(names[i]), QVariant::fromValue(static_cast<void *>(item.get())));
        m_terrainItems.push_back(std::move(item));
    }
}

void CDlgCreateCatchmentArea::SelectFirstTerrain()
{
    m_ui->comboTerrain->setCurrentIndex(0);
    OnTerrainChanged();
}
