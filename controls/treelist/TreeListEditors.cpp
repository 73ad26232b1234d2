// The in-place editors over the cells of the tree list, and the focus that they and the list share.
#include "controls/treelist/TreeListEditors.h"
#include "controls/WideText.h"
#include "controls/treelist/TreeListAccessible.h"
#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListHeaderCtrl.h"

#include <QApplication>
#include <QFocusEvent>
#include <QInputMethod>
#include <QStylePainter>
#include <QWheelEvent>

#include <initializer_list>
#include <limits>
#include <utility>

namespace {

Qt::Alignment AlignmentOf(std::uint32_t format)
{
    return Qt::AlignVCenter | (format & kColumnLeft      ? Qt::AlignLeft
                               : format & kColumnRight   ? Qt::AlignRight
                               : format & kColumnCentred ? Qt::AlignHCenter
                                                         : Qt::AlignLeft);
}

} // namespace

// --- The three editors -----------------------------------------------------------------------------------------------

CTreeListStaticCtrl::CTreeListStaticCtrl(CTreeListCtrl &list) : QWidget(list.viewport())
{
    hide();
}

CTreeListEditCtrl::CTreeListEditCtrl(CTreeListCtrl &list) : QLineEdit(list.viewport())
{
    hide();
    setEnabled(false);
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max()); // a long text is not cut by being looked at
}

std::wstring CTreeListEditCtrl::GetWindowText() const
{
    return ToWide(text());
}

void CTreeListEditCtrl::SetWindowText(const std::wstring &text)
{
    setText(ToQString(text));
}

void CTreeListEditCtrl::SetFormat(std::uint32_t format)
{
    setAlignment(AlignmentOf(format));
}

void CTreeListEditCtrl::RestoreSelection()
{
    if (m_nSelectCount == 0)
        setCursorPosition(m_nSelectFrom);
    else
        setSelection(m_nSelectFrom, m_nSelectCount);
}

void CTreeListEditCtrl::focusOutEvent(QFocusEvent *event)
{
    // The base takes the selection away.
    const int from = selectionStart(), count = static_cast<int>(selectionLength());
    const bool front = count > 0 && cursorPosition() == from;
    m_nSelectFrom = count == 0 ? cursorPosition() : front ? from + count : from;
    m_nSelectCount = front ? -count : count;
    QLineEdit::focusOutEvent(event);
}

/// A combo box that draws its text as the column does and leaves the wheel to the rows.
class [[gnu::visibility("hidden")]] CTreeListComboCtrl::List : public QComboBox
{
public:
    using QComboBox::QComboBox;

    Qt::Alignment alignment = Qt::AlignLeft;
    QString foreign; ///< the text while it is not one of the list

protected:
    void paintEvent(QPaintEvent *) override
    {
        QStylePainter painter(this);
        QStyleOptionComboBox option;
        initStyleOption(&option);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        const QRect place = style()
                                ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
                                .adjusted(1, 0, -1, 0);
        const QString text = currentIndex() < 0 ? foreign : currentText();
        painter.drawItemText(place, int(alignment), palette(), isEnabled(),
                             fontMetrics().elidedText(text, Qt::ElideRight, place.width()), QPalette::ButtonText);
    }
    void wheelEvent(QWheelEvent * event) override
    {
        event->ignore();
    }
};

CTreeListComboCtrl::CTreeListComboCtrl(CTreeListCtrl &list) : QWidget(list.viewport()), m_list(new List(this))
{
    hide();
    setEnabled(false);
    setFocusProxy(m_list);
    m_list->setFrame(false);
    m_list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // its cell says how wide it is
}

int CTreeListComboCtrl::AddString(const std::wstring &text)
{
    const std::wstring shown = GetWindowText();
    m_list->addItem(ToQString(text));
    m_list->setItemData(m_list->count() - 1, int(m_list->alignment), Qt::TextAlignmentRole);
    SetWindowText(shown); // the toolkit chooses the first entry by itself
    return m_list->count() - 1;
}

void CTreeListComboCtrl::ResetContent()
{
    m_list->clear();
    m_list->foreign.clear();
}

int CTreeListComboCtrl::GetCount() const
{
    return m_list->count();
}

std::wstring CTreeListComboCtrl::GetLBText(int index) const
{
    return ToWide(m_list->itemText(index));
}

int CTreeListComboCtrl::FindStringExact(const std::wstring &text) const
{
    return m_list->findText(ToQString(text), Qt::MatchExactly | Qt::MatchCaseSensitive);
}

int CTreeListComboCtrl::GetCurSel() const
{
    return m_list->currentIndex();
}

int CTreeListComboCtrl::SetCurSel(int index)
{
    m_list->setCurrentIndex(index >= 0 && index < m_list->count() ? index : -1);
    return m_list->currentIndex();
}

std::wstring CTreeListComboCtrl::GetWindowText() const
{
    return ToWide(m_list->currentIndex() < 0 ? m_list->foreign : m_list->currentText());
}

void CTreeListComboCtrl::SetWindowText(const std::wstring &text)
{
    m_list->foreign = ToQString(text);
    m_list->setCurrentIndex(FindStringExact(text));
    m_list->update();
}

void CTreeListComboCtrl::SetFormat(std::uint32_t format)
{
    m_list->alignment = AlignmentOf(format);
    for (int each = 0; each < m_list->count(); ++each)
        m_list->setItemData(each, int(m_list->alignment), Qt::TextAlignmentRole);
}

void CTreeListComboCtrl::ShowDropDown(bool show)
{
    show ? m_list->showPopup() : m_list->hidePopup();
}

QComboBox *CTreeListComboCtrl::GetList() const
{
    return m_list;
}

void CTreeListComboCtrl::resizeEvent(QResizeEvent *)
{
    m_list->setGeometry(rect());
}

// --- The list and its editors ----------------------------------------------------------------------------------------

bool CTreeListCtrl::CreateEditors()
{
    m_pStatic = new CTreeListStaticCtrl(*this);
    m_pEdit = new CTreeListEditCtrl(*this);
    m_pCombo = new CTreeListComboCtrl(*this);
    for (QObject *watched : std::initializer_list<QObject *>{this, m_pEdit, m_pCombo->GetList()})
        watched->installEventFilter(this);
    return true;
}

QWidget *CTreeListCtrl::ShownEditor() const
{
    if (m_pEdit && !m_pEdit->isHidden())
        return m_pEdit;
    return m_pCombo && !m_pCombo->isHidden() ? m_pCombo : nullptr;
}

int CTreeListCtrl::BeginControl(CTreeListItem *item, int column)
{
    if (!m_pEdit || !m_pCombo || !item || GetModifyItem() != item || GetModifyColumn() != column)
        return 0;
    m_pEdit->clear();
    m_pCombo->ResetContent();
    m_bControlBegun = true;
    const CTreeListItemGuard guard(*this, item);
    Notify(NotifyBeginControl, item, column);
    // The owner may have ended the edit, and so may the focus, when it went to a window of his.
    if (!guard.Get() || GetModifyItem() != item || GetModifyColumn() != column || !m_bControlBegun)
        return 0;
    EnsureVisible(item, column);
    const QRect place = TextAreaOf(item, column);
    switch (GetControl(item, column)) {
    case kEditorEdit:
        return BeginEdit(item, column, place);
    case kEditorCombo:
        return BeginCombo(item, column, place.translated(0, -1));
    default:
        return BeginStatic(item, column, place);
    }
}

int CTreeListCtrl::CancelControl(CTreeListItem *item, int column)
{
    if (!m_bControlBegun)
        return 0;
    m_bControlBegun = false;
    if (std::exchange(m_bRestoreDue, false) && GetColumns(column)) // what was refused is asked for again
        SetItemText(item, column,
                    GetControl(item, column) == kEditorCombo ? m_pCombo->GetWindowText() : m_pEdit->GetWindowText());
    if (ShownEditor() == m_pEdit)
        CancelEdit(item, column);
    else if (ShownEditor())
        CancelCombo(item, column);
    else
        CancelStatic(item, column);
    Notify(NotifyEndControl, item, column);
    return 1;
}

int CTreeListCtrl::RestoreControl(CTreeListItem *item, int column)
{
    if (!m_pEdit || !m_pCombo || !item || GetModifyItem() != item || GetModifyColumn() != column)
        return 0;
    m_bControlBegun = true;
    const QRect place = TextAreaOf(item, column);
    const int kind = GetControl(item, column);
    const int restored = kind == kEditorEdit    ? RestoreEdit(item, column, place)
                         : kind == kEditorCombo ? RestoreCombo(item, column, place.translated(0, -1))
                                                : RestoreStatic(item, column, place);
    m_bRestoreDue = !restored;
    return restored;
}

QRect CTreeListCtrl::TextAreaOf(CTreeListItem *item, int column) const
{
    QRect rect;
    return GetItemRect(item, column, rect, true) ? rect : QRect();
}

QRect CTreeListCtrl::EditorRect(int column, const QRect &rect, const QWidget &editor, const QString &text) const
{
    const CTreeListColumnInfo *info = GetColumns(column);
    QRect place = rect;
    if (info && (rect.width() < info->minWidth || rect.width() < editor.fontMetrics().horizontalAdvance(text)))
        place.setWidth(info->width);
    const int sides = HasStyle(StyleVertGrid) ? 1 : 0, ends = HasStyle(StyleHorzGrid) ? 1 : 0;
    return place.adjusted(sides, ends, -sides, -ends);
}

void CTreeListCtrl::PrepareEditor(QWidget &editor, int column)
{
    editor.setAccessibleName(m_pHeader ? m_pHeader->NameOf(column) : ToQString(GetColumnText(column)));
}

void CTreeListCtrl::ShowEditor(QWidget &editor, const QRect &rect)
{
    HideTip();
    editor.setGeometry(rect);
    editor.setEnabled(true);
    editor.show();
    editor.raise();
    editor.setFocus(Qt::OtherFocusReason);
}

void CTreeListCtrl::HideEditor(QWidget &editor)
{
    // Hiding what has the focus would give it to the next widget of the window, which would end the edit.
    const QWidget *focus = window()->focusWidget();
    if (focus && (focus == &editor || editor.isAncestorOf(focus)))
        setFocus(Qt::OtherFocusReason);
    editor.hide();
    editor.setEnabled(false);
}

int CTreeListCtrl::BeginEdit(CTreeListItem *item, int column, const QRect &rect)
{
    if (!m_pEdit || !item || !GetColumns(column) || rect.isEmpty())
        return 0;
    PrepareEditor(*m_pEdit, column);
    m_pEdit->SetFormat(GetColumnFormat(column));
    m_pEdit->SetWindowText(GetItemText(item, column));
    ShowEditor(*m_pEdit, EditorRect(column, rect, *m_pEdit, m_pEdit->text()));
    m_pEdit->selectAll();
    return 1;
}

int CTreeListCtrl::CancelEdit(CTreeListItem *item, int column)
{
    if (!m_pEdit || m_pEdit->isHidden())
        return 0;
    if (m_pEdit->hasFocus())
        QGuiApplication::inputMethod()->commit(); // what is being composed belongs to the text
    // A text that the box shows unchanged stays as it is, whatever characters it is made of.
    if (m_pEdit->text() != ToQString(GetItemText(item, column)))
        SetItemText(item, column, m_pEdit->GetWindowText());
    HideEditor(*m_pEdit);
    return 1;
}

int CTreeListCtrl::RestoreEdit(CTreeListItem *item, int column, const QRect &rect)
{
    if (!m_pEdit || !item || rect.isEmpty())
        return 0;
    ShowEditor(*m_pEdit, EditorRect(column, rect, *m_pEdit, m_pEdit->text()));
    m_pEdit->RestoreSelection();
    return 1;
}

int CTreeListCtrl::BeginCombo(CTreeListItem *item, int column, const QRect &rect)
{
    if (!m_pCombo || !item || !GetColumns(column) || rect.isEmpty())
        return 0;
    PrepareEditor(*m_pCombo, column);
    PrepareEditor(*m_pCombo->GetList(), column);
    m_pCombo->SetFormat(GetColumnFormat(column));
    m_pCombo->SetWindowText(GetItemText(item, column));
    ShowEditor(*m_pCombo, EditorRect(column, rect, *m_pCombo, ToQString(m_pCombo->GetWindowText())));
    return 1;
}

int CTreeListCtrl::CancelCombo(CTreeListItem *item, int column)
{
    if (!m_pCombo || m_pCombo->isHidden())
        return 0;
    m_pCombo->ShowDropDown(false);
    const std::wstring text = m_pCombo->GetWindowText();
    if (text != ToWide(ToQString(GetItemText(item, column)))) // as in CancelEdit
        SetItemText(item, column, text);
    HideEditor(*m_pCombo);
    return 1;
}

int CTreeListCtrl::RestoreCombo(CTreeListItem *item, int column, const QRect &rect)
{
    if (!m_pCombo || !item || rect.isEmpty())
        return 0;
    ShowEditor(*m_pCombo, EditorRect(column, rect, *m_pCombo, ToQString(m_pCombo->GetWindowText())));
    return 1;
}

int CTreeListCtrl::BeginStatic(CTreeListItem *, int, const QRect &)
{
    setFocus(Qt::OtherFocusReason);
    return 1;
}

int CTreeListCtrl::CancelStatic(CTreeListItem *, int)
{
    return 1;
}

int CTreeListCtrl::RestoreStatic(CTreeListItem *, int, const QRect &)
{
    setFocus(Qt::OtherFocusReason);
    return 1;
}

void CTreeListCtrl::SetCtrlFocus()
{
    QWidget *editor = ShownEditor();
    const bool comesBack = editor && editor == m_pEdit && !m_pEdit->hasFocus();
    (editor ? editor : this)->setFocus(Qt::OtherFocusReason);
    if (comesBack)
        m_pEdit->RestoreSelection();
}

// --- An editor follows its cell --------------------------------------------------------------------------------------

void CTreeListCtrl::PlaceEditor()
{
    if (!GetState(kControlEditing) || GetState(kControlEndingEdit) || GetModifyColumn() < 0)
        return;
    QWidget *editor = ShownEditor();
    if (!editor && !m_bRestoreDue)
        return;
    const QRect place = TextAreaOf(GetModifyItem(), GetModifyColumn());
    if (place.isEmpty() && editor) {
        // Not at once: who lays out the rows is in the midst of something that a notice could change.
        QMetaObject::invokeMethod(
            this, [this] { FinishHiddenEdit(); }, Qt::QueuedConnection);
        return;
    }
    if (!editor) {
        if (!place.isEmpty())
            RestoreControl(GetModifyItem(), GetModifyColumn());
        return;
    }
    const bool edit = editor == m_pEdit;
    const QString text = edit ? m_pEdit->text() : ToQString(m_pCombo->GetWindowText());
    editor->setGeometry(EditorRect(GetModifyColumn(), edit ? place : place.translated(0, -1), *editor, text));
}

void CTreeListCtrl::FinishHiddenEdit()
{
    if (ShownEditor() && GetModifyItem() && TextAreaOf(GetModifyItem(), GetModifyColumn()).isEmpty())
        FinishModify();
}

// --- Focus -----------------------------------------------------------------------------------------------------------

bool CTreeListCtrl::HoldsFocus() const
{
    // A popup is a window of its own, and still a child.
    for (const QWidget *each = QApplication::focusWidget(); each; each = each->parentWidget()) {
        if (each == this)
            return true;
    }
    return false;
}

void CTreeListCtrl::OnFocusLeft(Qt::FocusReason reason)
{
    if (reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason || HoldsFocus())
        return;
    const QPointer<CTreeListCtrl> alive(this);
    FinishModify();
    if (!alive || HoldsFocus()) // refused: the editor took it back
        return;
    HideTip();
    SetState(0, kControlFocused);
    Invalidate();
}

void CTreeListCtrl::focusInEvent(QFocusEvent *event)
{
    SetState(kControlFocused, 0);
    QAbstractScrollArea::focusInEvent(event);
    Invalidate();
    if (m_accessible)
        m_accessible->FocusIn();
}

void CTreeListCtrl::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    OnFocusLeft(event->reason());
}
