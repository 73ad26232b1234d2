// The question with Yes and No: a box where a person sits, else a prompt that is answered as any other.
#include "contracts/QuestionBox.h"

#include "host/drawing/Journal.h"
#include "host/editor/Command.h"
#include "host/editor/Person.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <QMessageBox>

namespace {

using namespace velmor;

const std::wstring kYes = L"Yes", kNo = L"No";

bool askByBox(const std::wstring &question)
{
    QMessageBox box(QMessageBox::Question, QStringLiteral("Velmor"), QString::fromStdWString(question),
                    QMessageBox::Yes | QMessageBox::No, dialogOwner());
    box.setDefaultButton(QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

bool askByPrompt(Session &session, const std::wstring &question)
{
    Prompt prompt{.kind = PromptKind::Keyword, .text = question, .keywords = {kYes, kNo}};
    for (const std::wstring &word : prompt.keywords)
        prompt.localKeywords.push_back(uiText("ui.word." + utf8(word)));
    const Answer answer = session.ask(prompt);
    const std::wstring *word = answer.text() ? matchKeyword(prompt.keywords, *answer.text()) : nullptr;
    return word && *word == kYes;
}

} // namespace

bool acedAskYesNo(const wchar_t *question)
{
    journal("acedAskYesNo", question);
    Session *session = Session::currentOrNull();
    if (!session)
        return false;
    const std::wstring text = question ? question : L"";
    return Person::of(*session) ? askByBox(text) : askByPrompt(*session, text);
}
