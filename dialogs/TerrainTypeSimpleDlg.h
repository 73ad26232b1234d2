// The list of terrain types: names with a run-off coefficient each, which the user adds, changes and removes.
#pragma once

#include "catalog/ZEMTerrainTypeCatalog.h"
#include "dialogs/DefaultButtonDialog.h"

#include <memory>
#include <string>

class CMyToolTipCtrl;
namespace Ui {
class TerrainTypeForm;
}

/// Works on a catalogue of its own, which goes into the drawing and into the file on OK alone. A save that fails is not
/// told; it leaves the file as it was.
class CTerrainTypeSimpleDlg : public CDefaultButtonDialog {
    Q_OBJECT
public:
    explicit CTerrainTypeSimpleDlg(QWidget *parent = nullptr);
    ~CTerrainTypeSimpleDlg() override;

    /// After OK the list as the user left it.
    CZEMTerrainTypeCatalog m_catalog;

protected:
    bool OnInitDialog() override;
    void OnOK() override;

private:
    void SetUpList();
    void SetTexts();
    void SetUpFlowEdit();
    /// Rows of the whole catalogue, with that many decimals behind a coefficient's point.
    void FillList(int decimals);
    /// Between m_strName and its edit: from the controls with true, to them with false.
    void UpdateData(bool fromControls);
    void OnBtnAddOrChange();
    void OnBtnRemove();
    void OnListChanged();

    std::unique_ptr<Ui::TerrainTypeForm> m_ui;
    std::unique_ptr<CMyToolTipCtrl> m_toolTip;
    std::wstring m_strName;
};
