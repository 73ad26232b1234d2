// Chooses the layers whose entities may bound a catchment area.
#pragma once

#include "dialogs/DefaultButtonDialog.h"
#include "dialogs/EntitySet.h"

#include <memory>

class CMyToolTipCtrl;
namespace Ui {
class CatchLayerForm;
}

/// While the user chooses, the dialog keeps the entities of the chosen layers: as ids, and as a selection set of the
/// host. Layer names compare exactly, case included. A name that the list does not have selects all its entries.
///
/// Nothing is told here; what can't be opened is passed over.
class CCatchLayerDlg : public CDefaultButtonDialog {
    Q_OBJECT
public:
    explicit CCatchLayerDlg(QWidget *parent = nullptr);
    ~CCatchLayerDlg() override;

    /// Set before the dialog runs; after OK the choice.
    CStringArray m_chosenLayers;
    /// All entities on the chosen layers, of every space and block.
    AcDbObjectIdArray m_entityIds;
    /// The same entities, for the caller to take over after OK; otherwise freed.
    CEntitySet m_selectionSet;

protected:
    bool OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;

private:
    void SetTexts();
    void FillLayerList();
    void ApplySelection();
    /// Selects exactly the entries of these names.
    void SelectEntries(const CStringArray &names);
    void ShowEntries(const CStringArray &names);
    void OnBtnPick();
    void OnCheckSelectedOnly();

    std::unique_ptr<Ui::CatchLayerForm> m_ui;
    std::unique_ptr<CMyToolTipCtrl> m_toolTip;
    int m_bShowSelectedOnly = 0;
    CStringArray m_selectedLayers; ///< of the current selection, or of the last pick
};
