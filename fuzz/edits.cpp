// Every validating edit with random keys, pastes, sets and changed rules. The caret always stands inside the text, and
// the text is always its own valid form. Left open are only: what a cut leaves, until the text changes again by the
// rules, and a prefix that is being typed.
#include "controls/rules/MultiMaskedEdit.h"

#include "fuzz/Require.h"
#include "tests/controls/EditOps.h"
#include "tests/controls/FakeEditBox.h"
#include "tests/controls/MaskSymbols.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace AMSEdit;
using edit_ops::Bytes;
using edit_ops::Op;

namespace {

void require(bool holds, const char *what, const CEditBox &edit)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s: \"%ls\", valid is \"%ls\"\n", what, edit.GetText().c_str(), edit.GetValidText().c_str());
    std::abort();
}

void requireCaretInside(const CEditBox &edit)
{
    const auto [start, end] = edit.GetSel();
    require(0 <= start && start <= end && end <= static_cast<int>(edit.GetText().size()), "caret outside", edit);
}

/// True where the rules promise the valid form whatever the text was before.
bool setsWholeText(Op::Kind kind)
{
    return kind == Op::Kind::Paste || kind == Op::Kind::Set || kind == Op::Kind::Setter;
}

/// A box without its journal, which would only grow.
class QuietBox : public FakeEditBox {
public:
    void Forget()
    {
        journal.clear();
        defaults.clear();
        messages.clear();
    }
};

/// Runs all bytes. setter changes a rule; mayBeOpen tells of a text that a key may leave in another form.
template <class Edit, class Setter, class MayBeOpen>
void run(Edit &edit, Bytes &bytes, Setter setter, MayBeOpen mayBeOpen)
{
    bool cut = false;
    while (!bytes.AtEnd()) {
        const Op op = edit_ops::NextOp(bytes);
        const std::wstring before = edit.GetText();
        edit_ops::Apply(edit, op);
        if (op.kind == Op::Kind::Setter) {
            setter();
            edit.Redraw();
        }
        edit.Forget();
        requireCaretInside(edit);
        const std::wstring text = edit.GetText();
        const bool whole = setsWholeText(op.kind);
        cut = op.kind == Op::Kind::Cut ? cut || text != before : cut && !whole;
        const bool settled = edit.GetValidText() == text;
        if (settled)
            cut = false;
        require(settled || cut || (!whole && mayBeOpen(text)), "not in its valid form", edit);
    }
}

/// The form of a number told another way than the rule does: by a walk over the text.
bool isNumber(std::wstring text, const NumericBehavior &rule)
{
    if (text.empty())
        return true;
    if (!text.starts_with(rule.GetPrefix()))
        return false;
    text.erase(0, rule.GetPrefix().size());
    wchar_t point = 0, separator = 0;
    rule.GetSeparators(&point, &separator);
    const bool negative = text.starts_with(rule.GetNegativeSign());
    if (negative)
        text.erase(0, 1);
    if (negative && !rule.IsNegativeAllowed())
        return false;
    const std::size_t at = std::min(text.find(point), text.size());
    const std::wstring whole = text.substr(0, at), decimals = text.substr(std::min(at + 1, text.size()));
    if (!std::ranges::all_of(decimals, [](wchar_t c) { return c >= L'0' && c <= L'9'; }) ||
        static_cast<int>(decimals.size()) > rule.GetMaxDecimalPlaces())
        return false;
    int digits = 0;
    for (auto character = whole.rbegin(); character != whole.rend(); ++character) {
        const bool isDigit = *character >= L'0' && *character <= L'9';
        const bool separatorDue = rule.GetDigitsInGroup() > 0 && digits > 0 && digits % rule.GetDigitsInGroup() == 0 &&
                                  (character == whole.rbegin() || character[-1] != separator);
        if (separatorDue != !isDigit || (!isDigit && *character != separator))
            return false;
        digits += isDigit ? 1 : 0;
    }
    return digits <= rule.GetMaxWholeDigits() && (whole.empty() || whole.front() != separator);
}

class NumericEdit : public TNumericEdit<QuietBox> {
public:
    explicit NumericEdit(const IRegionalSettings &settings) : TValidatingEdit(9, 4, settings) {}
};

void changeNumber(NumericBehavior &rule, Bytes &bytes)
{
    static const wchar_t *const prefixes[] = {L"", L"$ ", L"kn", L"B/.", L"1#", L"-x", L"\u20ac"};
    static const wchar_t *const masks[] = {L"###", L"$ ###,###.##", L"#,##", L"##.#", L"", L"abc"};
    static constexpr wchar_t separators[] = {L'.', L',', L';', L' ', L'x'};
    const auto flags = [&] { return static_cast<unsigned>(bytes.Next() | (bytes.Next() << 8)); };
    switch (bytes.Below(9)) {
    case 0:
        rule.SetMaxWholeDigits(static_cast<int>(bytes.Below(14)) - 2);
        break;
    case 1:
        rule.SetMaxDecimalPlaces(static_cast<int>(bytes.Below(6)));
        break;
    case 2:
        rule.SetDigitsInGroup(static_cast<int>(bytes.Below(5)));
        break;
    case 3:
        rule.SetPrefix(prefixes[bytes.Below(std::size(prefixes))]);
        break;
    case 4: {
        const wchar_t point = separators[bytes.Below(std::size(separators))];
        rule.SetSeparators(point, separators[bytes.Below(std::size(separators))]);
        break;
    }
    case 5:
        rule.SetMask(masks[bytes.Below(std::size(masks))]);
        break;
    case 6: {
        const unsigned add = flags();
        rule.ModifyFlags(add, flags());
        break;
    }
    case 7: {
        const double min = static_cast<double>(bytes.Below(100)) - 50.0;
        rule.SetRange(min, static_cast<double>(bytes.Below(100)) - 50.0);
        break;
    }
    default:
        rule.SetDouble((static_cast<double>(bytes.Next()) - 128.0) * static_cast<double>(bytes.Next()) / 16.0,
                       bytes.Below(2) == 0);
        break;
    }
    wchar_t point = 0, separator = 0;
    rule.GetSeparators(&point, &separator);
    ::require(point != separator, "the separators are equal");
}

void numeric(Bytes &bytes)
{
    NumericEdit edit{CNoRegionalSettings()};
    if (bytes.Below(4) == 0)
        SetUpCurrency(edit, CNoRegionalSettings());
    run(
        edit, bytes, [&] { changeNumber(edit, bytes); },
        [&](const std::wstring &text) { return edit.GetPrefix().starts_with(text); });
    edit.Redraw();
    wchar_t point = 0, separator = 0;
    edit.GetSeparators(&point, &separator);
    const bool plain = std::ranges::none_of(edit.GetPrefix(), [&](wchar_t c) {
        return (c >= L'0' && c <= L'9') || c == point || c == separator || c == L'-';
    });
    if (plain)
        require(isNumber(edit.GetText(), edit), "no number", edit);
}

void alphanumeric(Bytes &bytes)
{
    class Edit : public TAlphanumericEdit<QuietBox> {
    public:
        Edit() : TValidatingEdit(4, std::wstring(L"%x")) {}
    } edit;
    run(
        edit, bytes,
        [&] {
            if (bytes.Below(2) == 0)
                edit.SetMaxCharacters(static_cast<int>(bytes.Below(8)));
            else
                edit.SetInvalidCharacters(edit_ops::TextOf(bytes, 3));
        },
        [](const std::wstring &) { return false; });
}

void masked(Bytes &bytes)
{
    static const wchar_t *const masks[] = {L"", L"##/##", L"(##) L-#", L"//", L"#%", L"LLL###", L"--#"};
    class Edit : public TMaskedEdit<QuietBox> {
    public:
        Edit() : TValidatingEdit(L"##/##") { GetSymbolArray() = mask_symbols::kDigitsAndLetters; }
    } edit;
    // A mask of random characters may have literals that a symbol takes too: then only the caret and the end of the
    // filter's turns are promised.
    const bool anyMask = bytes.Below(4) == 0;
    run(
        edit, bytes, [&] { edit.SetMask(anyMask ? edit_ops::TextOf(bytes, 8) : masks[bytes.Below(std::size(masks))]); },
        [=](const std::wstring &) { return anyMask; });
}

void multiMasked(Bytes &bytes)
{
    static const wchar_t *const masks[] = {L"", L"xxxx", L"#", L"###,###.##", L"$ ##.#", L"##/##", L"#-L", L"(#)"};
    class Edit : public TMultiMaskedEdit<QuietBox> {
    public:
        Edit() : TMultiMaskedEdit(CNoRegionalSettings()) { GetSymbolArray() = mask_symbols::kDigitsAndLetters; }
    } edit;
    run(
        edit, bytes,
        [&] {
            if (bytes.Below(2) == 0)
                edit.SetMask(masks[bytes.Below(std::size(masks))]);
            else
                changeNumber(edit, bytes);
        },
        [&](const std::wstring &text) {
            return edit.CurrentKind() == MaskChoice::Kind::Numeric && edit.GetPrefix().starts_with(text);
        });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size > 400)
        return 0; // long inputs tell nothing that shorter ones do not
    Bytes bytes(data, size);
    switch (bytes.Below(6)) {
    case 0:
        alphanumeric(bytes);
        break;
    case 1:
        masked(bytes);
        break;
    case 2:
        multiMasked(bytes);
        break;
    default:
        numeric(bytes);
        break;
    }
    return 0;
}
