// Texts of dialogs: the numbered messages, and the captions of controls.
#pragma once

#include "contracts/HostDialog.h"

#include <span>
#include <string>

/// Text of a numbered message in the user's language.
inline std::wstring Msg(unsigned number)
{
    return ZEMGis::CModuleConfiguration::Instance()->GetMsg(number);
}

/// A message that belongs to a control: as its caption, its tip or its accessible name.
struct CMessageRow {
    int m_nControl;
    unsigned m_nMessage;
};

/// What a label or a button says, keyboard mark included; empty for any other control.
QString CaptionOf(const QWidget *widget);
/// Any other control keeps what it says.
void SetCaption(QWidget *widget, const std::wstring &text);
/// Messages as captions of the dialog's controls, then keyboard marks on those of marked. Who stands first in marked
/// chooses its letter first; one for whom no letter is left stays without.
void SetCaptions(const CAdUiBaseDialog &dialog, std::span<const CMessageRow> captions, std::span<const int> marked);
/// The marks alone.
void MarkCaptions(const CAdUiBaseDialog &dialog, std::span<const int> marked);
/// For those who hear the dialog, where no caption stands beside a control.
void SetAccessibleNames(const CAdUiBaseDialog &dialog, std::span<const CMessageRow> names);
