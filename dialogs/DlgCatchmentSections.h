// Shows the sections that are connected to one catchment area, with their shares, which are edited in place.
#pragma once

#include "contracts/CatchmentArea.h"
#include "contracts/HostDialog.h"

#include <memory>

class QKeyEvent;
namespace Ui {
class CatchSectionsForm;
}

/// A change goes straight to the area, so there is nothing to cancel. Shares stand in percent; each of its own lies
/// from 0 to 100, what they add up to is not looked at. An entry beyond that, or one that isn't a number, is dropped
/// without a word: the list shows the stored value again.
class CDlgCatchmentSections : public CAdUiBaseDialog {
    Q_OBJECT
public:
    /// The host asks so whether the dialog keeps the focus; answered with true.
    static constexpr unsigned kKeepFocusMessage = 0x7101;

    explicit CDlgCatchmentSections(QWidget *parent = nullptr);
    ~CDlgCatchmentSections() override;

    /// Set before the dialog runs; null gives an empty dialog.
    boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> m_area;

    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t wParam, std::intptr_t lParam) override;

protected:
    bool OnInitDialog() override;
    void OnHandlerFailed() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void SetTexts();
    void SetUpList();
    void FillSectionList();
    /// A cell of the row was changed.
    std::intptr_t OnShareChanged(int row);
    /// What a key does before it reaches its target. True: it goes no further.
    bool TakeKey(QWidget &target, QKeyEvent &event);

    std::unique_ptr<Ui::CatchSectionsForm> m_ui;
    ZEMGis::Sewage::SectionShares m_sections; ///< keeps alive what the rows point to
};
