// The table of all commands: what menu, tool bar, completion and help say of a command that the stack runs.
//
// Whoever adds a command to the stack adds a row here and its texts to the message files:
//   ui.cmd.NAME.name     the name in that language, upper case, without blanks
//   ui.cmd.NAME.help     what it does, in one line
//   ui.cmd.NAME.options  its options and forms, line by line; may be empty
// and for each of its places in a menu the text named there.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

enum class MenuPlace { File, Edit, View, Draw, Modify, Layers, Inquiry, Network, Catchments, Tools, Help };
inline constexpr int kMenuPlaces = 11;
/// Name of a menu's title among the messages.
const char *menuTitle(MenuPlace place);

/// Which file a menu asks for before its command starts; the answer goes in front of the command's own prompts.
enum class FileChoice { None, OpenDrawing, OpenNetwork, SaveDrawing, SavePdf };

/// One place of a command in a menu.
struct MenuItem {
    MenuPlace place;
    const char *text;           ///< name among the messages, "&" marks the mnemonic
    const char *line = nullptr; ///< what is run, with answers; null: the command's name
    const char *key = nullptr;  ///< "Ctrl+S"
    const char *icon = nullptr; ///< of the shipped icons, without ending
    bool toolBar = false;       ///< shown there too
    bool separatorBefore = false;
    FileChoice file = FileChoice::None;
};

struct CommandRow {
    const char *name;         ///< global name, as the stack has it
    const char *aliases = ""; ///< with blanks between; the same in all languages
    std::vector<MenuItem> items = {};
    bool ofModule = false; ///< it comes and goes with a module

    std::wstring wideName() const;
    std::wstring localName() const;
    std::vector<std::wstring> aliasList() const;
    std::wstring help() const;
    std::wstring options() const;
};

std::span<const CommandRow> commandTable();
/// The row of a command's global name, upper and lower case alike; null when there is none.
const CommandRow *commandRow(std::wstring_view globalName);
/// The row that a typed word means: an alias, the name in the user's language, or the global name (also behind "_").
const CommandRow *commandRowOfWord(std::wstring_view word);

} // namespace velmor
