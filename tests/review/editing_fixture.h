// What the tests of the review dialog's editing share.
#pragma once

#include "tests/definition/journal_lines.h"
#include "tests/review/review_fixture.h"

#include "contracts/QuestionBox.h"
#include "controls/AMSEdits.h"
#include "controls/WideText.h"
#include "controls/XListCtrl.h"
#include "host/drawing/ChangeLog.h"
#include "host/drawing/ObjectAccess.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"

class EditingTest : public ReviewDialogTest {
protected:
    static constexpr unsigned kWhite = 0xffffff, kRed = 255;

    static unsigned background(CReviewUnderTest &dialog, int control)
    {
        return dialog.Control<AMSEdit::CAMSNumericEdit>(control)->GetBackgroundColor();
    }
    static std::string guid(const AreaPtr &area) { return velmor::journalText(area->GetGuid()); }
    static std::string handle(const AreaPtr &area) { return velmor::journalText(area->GetObjectId()); }
    /// Labels of areas that stand in the drawing.
    std::vector<AcDbObjectId> labels()
    {
        std::vector<AcDbObjectId> ids;
        for (AcDbEntity *entity : drawing().modelSpace().entities()) {
            if (!entity->isErased() && entity->layer() == L"VELMOR_LABELS")
                ids.push_back(entity->objectId());
        }
        return ids;
    }
    void answer(const wchar_t *text) { m_session.answers().push({std::wstring(text)}); }

    // Sections and shares

    /// Rows of the section list: "name share".
    using Rows = std::vector<std::string>;
    static Rows rows(const CReviewUnderTest &dialog)
    {
        Rows found;
        for (int row = 0; row < dialog.list()->GetItemCount(); ++row)
            found.push_back(velmor::journalText(dialog.list()->GetItemText(row, 0)) + ' ' +
                            velmor::journalText(dialog.list()->GetItemText(row, 1)));
        return found;
    }
    /// The area's stored shares: "name fraction".
    static Rows shares(const AreaPtr &area)
    {
        Rows found;
        ZEMGis::Sewage::SectionShares stored;
        area->GetConnectedSections(stored);
        for (const auto &[section, share] : stored)
            found.push_back(velmor::journalText(section->GetName()) + ' ' + velmor::journalText(share));
        return found;
    }
    static Rows names()
    {
        Rows found;
        for (const AreaPtr &area : areas())
            found.push_back(velmor::journalText(area->GetName()));
        return found;
    }
    static Rows counts(const CReviewUnderTest &dialog)
    {
        Rows found;
        for (const int control : {120, 121, 122, 123})
            found.push_back(dialog.text(control).toStdString());
        return found;
    }

    // Undo

    velmor::ChangeLog &log() { return drawing().component<velmor::ChangeLog>(); }
    /// What was drawn so far is no step.
    void settle()
    {
        log().begin();
        log().keep();
        log().forget();
    }
    /// The dialog as a person has it: a command opens it.
    void runCommand(const Drive &drive)
    {
        m_session.commands().addWork(L"REVIEW", 0, [&](velmor::Asker &) {
            run(drive);
            return velmor::Command::Next::Commit;
        });
        EXPECT_EQ(m_session.commands().start(L"REVIEW"), velmor::RunStatus::Done);
    }
};
