#include "host/editor/Completions.h"

#include "host/drawing/PatternLibrary.h"
#include "host/editor/Command.h"
#include "host/editor/CommandStack.h"
#include "host/editor/CommandTable.h"
#include "host/editor/HostVariables.h"
#include "host/editor/Words.h"
#include "host/services/Text.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace velmor {

namespace {

constexpr std::size_t kMostFiles = 500; ///< looked at in one folder

bool begins(std::wstring_view text, std::wstring_view typed)
{
    return text.size() >= typed.size() && sameText(text.substr(0, typed.size()), typed);
}

void addCommands(Session &session, std::wstring_view typed, std::set<std::wstring> &found)
{
    const bool transparent = typed.starts_with(L'\'');
    const std::wstring mark = transparent ? L"'" : L"";
    const bool global = typed.substr(mark.size()).starts_with(L'_');
    const std::wstring_view name = typed.substr(mark.size() + (global ? 1 : 0));
    const auto add = [&](const std::wstring &word, const wchar_t *before = L"") {
        if (begins(word, name))
            found.insert(mark + before + word);
    };
    for (const CommandEntry &entry : session.commands().entries()) {
        if (transparent && !entry.mayStartInside())
            continue;
        if (global) {
            add(entry.globalName, L"_");
            continue;
        }
        add(entry.localName);
        if (const CommandRow *row = commandRow(entry.globalName)) {
            add(row->localName());
            for (const std::wstring &alias : row->aliasList())
                add(alias);
        }
    }
}

void addFiles(std::wstring_view typed, std::string_view ending, std::set<std::wstring> &found)
{
    namespace fs = std::filesystem;
    const bool quoted = typed.starts_with(L'"');
    const std::string start = utf8(std::wstring(typed.substr(quoted ? 1 : 0)));
    const std::size_t slash = start.rfind('/');
    const std::string folder = slash == std::string::npos ? std::string() : start.substr(0, slash + 1);
    const std::wstring name = wide(start.substr(folder.size()));
    std::error_code error;
    std::size_t looked = 0;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end && looked < kMostFiles; entry.increment(error), ++looked) {
        const std::string file = entry->path().filename().string();
        const bool isFolder = entry->is_directory(error);
        error.clear();
        if ((!isFolder && !sameText(wide(entry->path().extension().string()), wide(ending))) ||
            !begins(wide(file), name) || (file.starts_with('.') && name.empty()))
            continue;
        found.insert((quoted ? L"\"" : L"") + wide(folder + file + (isFolder ? "/" : "")));
    }
}

void addNames(Session &session, Completion kind, std::wstring_view typed, std::set<std::wstring> &found)
{
    const Drawing *drawing = session.drawing();
    const auto add = [&](const std::wstring &word) {
        if (begins(word, typed))
            found.insert(word);
    };
    switch (kind) {
    case Completion::None:
        break;
    case Completion::Commands:
        addCommands(session, typed, found);
        break;
    case Completion::Layers:
        if (drawing)
            for (const Layer &layer : drawing->layers())
                if (!layer.erased)
                    add(layer.name);
        break;
    case Completion::Blocks:
        if (drawing)
            for (const auto &block : drawing->blocks())
                if (!block->isErased() && !block->isLayout() && !block->name().starts_with(L"*"))
                    add(block->name());
        break;
    case Completion::Variables:
        for (const std::wstring &name : HostVariables::names())
            add(name);
        break;
    case Completion::Patterns:
        add(L"SOLID");
        for (const Pattern *pattern : PatternLibrary::instance().all())
            add(pattern->name);
        break;
    case Completion::Drawings:
        addFiles(typed, ".dxf", found);
        break;
    case Completion::Networks:
        addFiles(typed, ".inp", found);
        break;
    case Completion::Pdfs:
        addFiles(typed, ".pdf", found);
        break;
    }
}

} // namespace

std::vector<std::wstring> completionsOf(Session &session, const Prompt *prompt, std::wstring_view typed)
{
    std::set<std::wstring> found;
    if (typed.empty())
        return {};
    if (!prompt || typed.starts_with(L'\'')) {
        addCommands(session, typed, found);
    } else {
        const auto &words = prompt->localKeywords.empty() ? prompt->keywords : prompt->localKeywords;
        for (std::size_t i = 0; i + prompt->silent < words.size(); ++i)
            if (begins(words[i], typed))
                found.insert(words[i]);
        addNames(session, prompt->completion, typed, found);
    }
    return {found.begin(), found.end()};
}

std::wstring globalAnswer(const Prompt &prompt, const std::wstring &typed)
{
    if (prompt.localKeywords.size() != prompt.keywords.size())
        return typed;
    const std::wstring *local = matchKeyword(prompt.localKeywords, typed);
    if (!local || typed.starts_with(L'_'))
        return typed;
    return L"_" + prompt.keywords[static_cast<std::size_t>(local - prompt.localKeywords.data())];
}

} // namespace velmor
