#include "dialogs/DialogTexts.h"

#include "controls/Mnemonics.h"
#include "controls/WideText.h"

#include <QLabel>

#include <vector>

QString CaptionOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    return button ? button->text() : QString();
}

void SetCaption(QWidget *widget, const std::wstring &text)
{
    if (auto *label = qobject_cast<QLabel *>(widget))
        label->setText(ToQString(text));
    else if (auto *button = qobject_cast<QAbstractButton *>(widget))
        button->setText(ToQString(text));
}

void SetCaptions(const CAdUiBaseDialog &dialog, std::span<const CMessageRow> captions, std::span<const int> marked)
{
    for (const CMessageRow &row : captions)
        SetCaption(dialog.GetDlgItem(row.m_nControl), Msg(row.m_nMessage));
    MarkCaptions(dialog, marked);
}

void MarkCaptions(const CAdUiBaseDialog &dialog, std::span<const int> marked)
{
    std::vector<std::wstring> captions;
    for (const int control : marked)
        captions.push_back(ToWide(CaptionOf(dialog.GetDlgItem(control))));
    captions = WithMnemonics(captions);
    for (std::size_t i = 0; i < captions.size(); ++i)
        SetCaption(dialog.GetDlgItem(marked[i]), captions[i]);
}

void SetAccessibleNames(const CAdUiBaseDialog &dialog, std::span<const CMessageRow> names)
{
    for (const CMessageRow &row : names)
        dialog.GetDlgItem(row.m_nControl)->setAccessibleName(ToQString(WithoutMnemonic(Msg(row.m_nMessage))));
}
