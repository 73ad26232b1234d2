// Keeps a box's selection over a change of its text.
#pragma once

#include "controls/rules/EditSurface.h"

namespace AMSEdit {

/// Restores at its end what it read at its start, or what was set in between.
class SelectionSaver {
public:
    /// edit may be null: then there is nothing to restore.
    explicit SelectionSaver(IEditSurface *edit) : m_pEdit(edit) { Update(); }
    SelectionSaver(IEditSurface *edit, int start, int end) : m_pEdit(edit), m_nStart(start), m_nEnd(end) {}
    SelectionSaver(const SelectionSaver &) = delete;
    SelectionSaver &operator=(const SelectionSaver &) = delete;
    ~SelectionSaver() { Restore(); }

    void Restore()
    {
        if (m_pEdit)
            m_pEdit->SetSel(m_nStart, m_nEnd, true);
    }
    void Update()
    {
        if (!m_pEdit)
            return;
        const Selection selection = m_pEdit->GetSel();
        SetPositions(selection.start, selection.end);
    }
    /// Nothing is restored any more.
    void Disable() { m_pEdit = nullptr; }
    void SetPositions(int start, int end)
    {
        m_nStart = start;
        m_nEnd = end;
    }
    void MoveBy(int start, int end)
    {
        m_nStart += start;
        m_nEnd += end;
    }
    void MoveBy(int both) { MoveBy(both, both); }
    int GetStart() const { return m_nStart; }
    int GetEnd() const { return m_nEnd; }

private:
    IEditSurface *m_pEdit;
    int m_nStart = 0;
    int m_nEnd = 0;
};

} // namespace AMSEdit
