// The in-place editor of the extended list.
#include "controls/AMSEdits.h"
#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "controls/XListModel.h"

#include "contracts/HostDialog.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <utility>

namespace {

/// The rule of numeric cells passes over a comma: 1,5 would become 15. Who types or pastes one means the decimal point.
QString WithPoints(QString text)
{
    return text.replace(QLatin1Char(','), QLatin1Char('.'));
}

void TakeCommaAsPoint(QLineEdit &edit)
{
    if (!edit.text().contains(QLatin1Char(',')))
        return;
    const int caret = edit.cursorPosition();
    edit.setText(WithPoints(edit.text()));
    edit.setCursorPosition(caret);
}

} // namespace

QLineEdit *CXListCtrl::GetEditBox() const
{
    return m_edit;
}

bool CXListCtrl::IsEditing() const
{
    return m_edit && !m_edit->isHidden();
}

bool CXListCtrl::EditCell(int row, int column)
{
    if (!m_cells.CanEdit(row, column) || m_cells.TargetOf(row, column) == CListCells::Target::Refused)
        return false;
    CommitEditing();
    if (!m_cells.CanEdit(row, column)) // who was told of that has emptied the list
        return false;
    scrollTo(m_model->index(row, column));
    selectionModel()->setCurrentIndex(m_model->index(row, column),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_cells.m_nCurrentRow = row;
    m_cells.m_nCurrentColumn = column;
    OpenEditBox(row, column);
    ShowBrowseButtons();
    return true;
}

void CXListCtrl::OpenEditBox(int row, int column)
{
    DestroyEditBox();
    m_edit = new QLineEdit(viewport());
    m_edit->setProperty(kControlIdProperty, kEditBox);
    m_edit->setAccessibleName(ToQString(m_cells.GetHeaderText(column) + L" " + m_cells.GetItemText(row, 0)));
    const int format = m_cells.GetColumnFormat(column);
    m_edit->setAlignment(format & kFormatCenter  ? Qt::AlignHCenter
                         : format & kFormatRight ? Qt::AlignRight
                                                 : Qt::AlignLeft);
    m_edit->setFont(font());
    PlaceEditBox();
    m_edit->setText(ToQString(m_cells.GetItemText(row, column)));
    m_strOpened = m_edit->text();
    m_bTyped = false;
    connect(m_edit, &QLineEdit::textEdited, this, [this] { m_bTyped = true; });
    if (IsNumeric(row, column))
        connect(m_edit, &QLineEdit::textEdited, m_edit, [edit = m_edit.data()] { TakeCommaAsPoint(*edit); });
    m_edit->installEventFilter(this);
    m_edit->show();
    m_edit->selectAll();
    m_edit->setFocus(Qt::OtherFocusReason);
}

bool CXListCtrl::IsNumeric(int row, int column) const
{
    const CellRecord *record = m_cells.GetRecord(row, column);
    return record && record->numeric;
}

void CXListCtrl::PlaceEditBox()
{
    QRect cell;
    if (m_edit && GetSubItemRect(m_cells.m_nCurrentRow, m_cells.m_nCurrentColumn, kBounds, cell))
        m_edit->setGeometry(cell.adjusted(1, 0, 0, -1));
}

void CXListCtrl::DestroyEditBox()
{
    QLineEdit *edit = std::exchange(m_edit, nullptr);
    if (!edit)
        return;
    edit->removeEventFilter(this);
    if (window()->focusWidget() == edit)
        setFocus(Qt::OtherFocusReason);
    edit->hide();
    edit->deleteLater(); // it may be in the midst of an event
}

bool CXListCtrl::Normalise(std::wstring &text)
{
    AMSEdit::CAMSNumericEdit box(9, 4, AMSEdit::UserRegionalSettings(), this);
    box.setProperty(kControlIdProperty, kNumericBox);
    const ListNumericLimits &limits = m_cells.m_numericLimits;
    box.SetRange(limits.min, limits.max);
    box.SetMaxDecimalPlaces(limits.decimals);
    box.SetMaxWholeDigits(limits.whole);
    box.SetSeparators(L'.', L'\'');
    box.SetWindowText(text);
    box.SetDouble(box.GetDouble(), false);
    text = box.GetText();
    return box.IsValid();
}

void CXListCtrl::EndEditing()
{
    if (!IsEditing() || m_bEndingEdit)
        return;
    const QScopedValueRollback<bool> ending(m_bEndingEdit, true);
    const QPointer<QLineEdit> edit = m_edit;
    // A text that nobody changed is no entry: the rule would write 33.3333 anew as 33.333.
    const bool untouched = !m_bTyped && edit->text() == m_strOpened && m_cells.HasRecords(m_cells.m_nCurrentRow);
    const auto rule = [this](std::wstring &text) { return Normalise(text); };
    const auto end = untouched ? CListCells::EditEnd::Refused : m_cells.EndEditing(ToWide(edit->text()), rule);
    if (end != CListCells::EditEnd::NoRecord && edit) {
        // Who was told may have opened another editor.
        if (edit == m_edit && window()->focusWidget() == edit)
            setFocus(Qt::OtherFocusReason);
        edit->hide();
        viewport()->update();
    }
}

bool CXListCtrl::TakeText(int row, int column, const std::wstring &text)
{
    if (!m_cells.CanEdit(row, column) || m_cells.TargetOf(row, column) == CListCells::Target::Refused)
        return false;
    CommitEditing();
    const Cell clicked{std::exchange(m_cells.m_nCurrentRow, row), std::exchange(m_cells.m_nCurrentColumn, column)};
    const std::wstring entered = IsNumeric(row, column) ? ToWide(WithPoints(ToQString(text))) : text;
    const auto end = m_cells.EndEditing(entered, [this](std::wstring &typed) { return Normalise(typed); });
    m_cells.m_nCurrentRow = clicked.row;
    m_cells.m_nCurrentColumn = clicked.column;
    return end == CListCells::EditEnd::Written;
}

bool CXListCtrl::CommitEditing()
{
    if (!IsEditing())
        return false;
    EndEditing();
    return true;
}

bool CXListCtrl::AbandonEditing()
{
    if (!IsEditing())
        return false;
    DestroyEditBox();
    viewport()->update();
    return true;
}

bool CXListCtrl::FilterEditBox(QEvent *event)
{
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason)
            EndEditing();
        return false;
    }
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    const bool escape = key->key() == Qt::Key_Escape;
    if (!enter && !escape)
        return false;
    key->accept();
    if (event->type() == QEvent::KeyPress)
        enter ? CommitEditing() : AbandonEditing();
    return true;
}
