// Chooses the block that labels a catchment area, and which of its attributes carry which of the area's values.
#pragma once

#include "dialogs/DefaultButtonDialog.h"

#include <memory>
#include <string>

class CMyToolTipCtrl;
namespace Ui {
class CatchLabelForm;
}

/// The block comes from a drawing file. The drawing's dictionary remembers which; on OK, and not before, the file that
/// was taken is written there. A definition that was inserted stays in the drawing, whatever ends the dialog.
///
/// Four rows stand for the values: name, area, coefficient, density. A ticked row's value goes to the attribute that is
/// chosen in it; row i starts on the block's tag i.
///
/// Nothing is told here: a file that can't be opened gives an empty name, a failed insertion a null id.
class CCatchLabelDlg : public CDefaultButtonDialog {
    Q_OBJECT
public:
    explicit CCatchLabelDlg(QWidget *parent = nullptr);
    ~CCatchLabelDlg() override;

    /// Title of the block's file. May be set before the dialog runs, like the path.
    std::wstring m_strBlockName;
    /// Full path of the block's file. What the dictionary has goes before what was set.
    std::wstring m_strBlockPath;
    /// The definition in the drawing.
    AcDbObjectId m_blockId;
    bool m_bBlockInserted = false; ///< once an insertion was asked for
    /// While the dialog runs the block's tags. After OK four entries, one for each row: the tag that is chosen in it,
    /// empty for a row that is not ticked.
    CStringArray m_attributes;

protected:
    bool OnInitDialog() override;
    void OnOK() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void SetUpList();
    void SetTexts();
    /// Takes the file of m_strBlockPath: its name, its definition, its attributes in all rows.
    void TakeBlockFile();
    void OnBtnBrowse();
    /// False when there is no picture.
    bool PaintPreview();

    std::unique_ptr<Ui::CatchLabelForm> m_ui;
    std::unique_ptr<CMyToolTipCtrl> m_toolTip;
};
