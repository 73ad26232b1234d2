// Key sequences as text: "5>5| <BS>>| x>|!" is a key, what the box then shows, and "!" where it beeps.
//
// A picture shows the text with "|" for a caret or "[" and "]" around a selection; "_" stands for a blank. Keys are
// single characters, or <BS> <Del> <Left> <Right> <Home> <End> <Up> <Down> <Cut> <Paste> <Clear> <Undo> <Redo>.
// "~" behind a picture: the text is not in its valid form then, as the rules tell.
#pragma once

#include "tests/controls/SequenceBox.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace sequence {

inline std::string Narrow(const std::wstring &text)
{
    std::string narrow;
    for (const wchar_t character : text)
        narrow += character < 0x80 ? static_cast<char>(character) : '?';
    return narrow;
}

inline std::wstring Shown(std::wstring picture)
{
    for (wchar_t &character : picture)
        character = character == L' ' ? L'_' : character;
    return picture;
}

/// Sets text and selection from a picture.
template <class Edit>
void Place(Edit &edit, const std::wstring &picture)
{
    std::wstring text;
    int start = -1, end = -1;
    for (const wchar_t character : picture) {
        const int at = static_cast<int>(text.size());
        if (character == L'|')
            start = end = at;
        else if (character == L'[')
            start = at;
        else if (character == L']')
            end = at;
        else
            text += character == L'_' ? L' ' : character;
    }
    edit.SetWindowText(text);
    edit.SetSel(start, end, true);
    ASSERT_EQ(Shown(edit.Picture()), picture) << "the start is not in its valid form";
}

template <class Edit>
void Press(Edit &edit, const std::wstring &key)
{
    using namespace AMSEdit;
    static const std::map<std::wstring, unsigned> keys = {
        {L"<Del>", kKeyDelete}, {L"<Left>", kKeyLeft}, {L"<Right>", kKeyRight}, {L"<Home>", kKeyHome},
        {L"<End>", kKeyEnd},    {L"<Up>", kKeyUp},     {L"<Down>", kKeyDown},
    };
    if (key.size() == 1)
        edit.Type(key == L"_" ? L' ' : key[0]);
    else if (key == L"<BS>")
        edit.Type(kKeyBackspace);
    else if (key == L"<Cut>")
        edit.PressCut();
    else if (key == L"<Paste>")
        edit.PressPaste();
    else if (key == L"<Clear>")
        edit.PressClear();
    else if (key == L"<Undo>")
        edit.PressUndo();
    else if (key == L"<Redo>")
        edit.PressRedo();
    else if (keys.contains(key))
        edit.PressKey(keys.at(key));
    else
        FAIL() << "no such key: " << Narrow(key);
}

/// Whether it is compared after every key that the text is in its valid form, or is not where "~" stands.
enum class Form { Compared, Left };

/// Runs the steps from the start; what the box shows is compared after every key. Returns the number of keys.
template <class Edit>
int Run(Edit &edit, const std::wstring &start, const std::wstring &steps, Form form = Form::Compared)
{
    SCOPED_TRACE(Narrow(start) + " then " + Narrow(steps));
    Place(edit, start);
    std::wistringstream stream(steps);
    int count = 0;
    for (std::wstring step; stream >> step; ++count) {
        const std::size_t arrow = step.find(L'>', step[0] == L'<' && step.size() > 2 ? step.find(L'>') + 1 : 1);
        const std::wstring key = step.substr(0, arrow);
        std::wstring picture = step.substr(arrow + 1);
        const bool beeps = picture.ends_with(L'!');
        if (beeps)
            picture.pop_back();
        const bool unsettled = picture.ends_with(L'~');
        if (unsettled)
            picture.pop_back();
        const int beepsBefore = edit.beeps;
        Press(edit, key);
        EXPECT_EQ(Narrow(Shown(edit.Picture())), Narrow(picture)) << "key " << count + 1 << ", " << Narrow(key);
        EXPECT_EQ(edit.beeps - beepsBefore, beeps ? 1 : 0) << "key " << count + 1 << ", " << Narrow(key);
        if (form == Form::Compared) {
            EXPECT_EQ(edit.GetWindowText() == edit.GetValidText(), !unsettled) << "key " << count + 1;
        }
    }
    return count;
}

struct Row {
    const wchar_t *start;
    const wchar_t *steps;
};

/// Every row on a box of its own.
template <class Make>
int RunAll(Make make, const std::vector<Row> &rows, Form form = Form::Compared)
{
    int keys = 0;
    for (const Row &row : rows) {
        auto edit = make();
        keys += Run(*edit, row.start, row.steps, form);
    }
    return keys;
}

} // namespace sequence
