#include "host/editor/CommandTable.h"

#include "host/editor/Words.h"
#include "host/services/Messages.h"

#include <algorithm>
#include <sstream>

namespace velmor {

namespace {

using enum MenuPlace;

const std::vector<CommandRow> &table()
{
    static const std::vector<CommandRow> rows{
        // Files
        {"NEW", "NW", {{File, "ui.item.new", nullptr, "Ctrl+N", "CMD_NEW", true}}},
        {"OPEN", "OP", {{File, "ui.item.open", nullptr, "Ctrl+O", "CMD_OPEN", true, false, FileChoice::OpenDrawing}}},
        {"IMPORT",
         "IM",
         {{File, "ui.item.import", nullptr, "Ctrl+I", "CMD_IMPORT", false, false, FileChoice::OpenNetwork}}},
        {"SAVE", "SA", {{File, "ui.item.save", nullptr, "Ctrl+S", "CMD_SAVE", true, true}}},
        {"SAVEAS",
         "SS",
         {{File, "ui.item.saveas", nullptr, "Ctrl+Shift+S", nullptr, false, false, FileChoice::SaveDrawing}}},
        {"EXPORTPDF",
         "PD PDF",
         {{File, "ui.item.pdf", nullptr, "Ctrl+Shift+E", nullptr, false, true, FileChoice::SavePdf}}},
        {"PLOT", "PR PRINT", {{File, "ui.item.plot", nullptr, "Ctrl+P", "CMD_PLOT", true}}},
        {"QUIT", "QU EXIT", {{File, "ui.item.quit", nullptr, "Ctrl+Q", nullptr, false, true}}},
        // Edit
        {"UNDO", "UD", {{Edit, "ui.item.undo", "U", "Ctrl+Z", "CMD_UNDO", true}}},
        {"U", "UU"},
        {"REDO", "RE", {{Edit, "ui.item.redo", "REDO 1", "Ctrl+Y|Ctrl+Shift+Z", "CMD_REDO", true}}},
        {"SELECT", "SE", {{Edit, "ui.item.select", nullptr, "Ctrl+E", nullptr, false, true}}},
        {"PURGE", "PU", {{Edit, "ui.item.purge", nullptr, "Ctrl+Shift+U", nullptr, false, true}}},
        // View
        {"ZOOM",
         "Z ZO",
         {{View, "ui.item.zoom.extents", "ZOOM _Extents", "Ctrl+0", "CMD_ZOOM_EXTENTS", true},
          {View, "ui.item.zoom.window", "ZOOM _Window", "Ctrl+W", "CMD_ZOOM_WINDOW", true},
          {View, "ui.item.zoom.previous", "ZOOM _Previous", "Ctrl+Shift+0", "CMD_ZOOM_PREVIOUS", true},
          {View, "ui.item.zoom.in", "ZOOM _In", "Ctrl++", "CMD_ZOOM_IN"},
          {View, "ui.item.zoom.out", "ZOOM _Out", "Ctrl+-", "CMD_ZOOM_OUT"},
          {View, "ui.item.zoom.object", "ZOOM _Object", "Ctrl+Shift+W"}}},
        {"PAN", "P PA", {{View, "ui.item.pan", nullptr, "Ctrl+Shift+P"}}},
        // Draw
        {"LINE", "L LN", {{Draw, "ui.item.line", nullptr, "Alt+1", "CMD_LINE", true}}},
        {"PLINE", "PL", {{Draw, "ui.item.pline", nullptr, "Alt+2", "CMD_PLINE", true}}},
        {"CIRCLE", "C CI", {{Draw, "ui.item.circle", nullptr, "Alt+3", "CMD_CIRCLE", true}}},
        {"ARC", "A AR", {{Draw, "ui.item.arc", nullptr, "Alt+4", "CMD_ARC", true}}},
        {"POINT", "PO", {{Draw, "ui.item.point", nullptr, "Alt+5", "CMD_POINT"}}},
        {"TEXT", "DT TX", {{Draw, "ui.item.text", nullptr, "Alt+6", "CMD_TEXT", true}}},
        {"HATCH", "H HA", {{Draw, "ui.item.hatch", nullptr, "Alt+7", "CMD_HATCH", true}}},
        {"INSERT", "I IN", {{Draw, "ui.item.insert", nullptr, "Alt+8", "CMD_INSERT"}}},
        // Modify
        {"ERASE", "E ER", {{Modify, "ui.item.erase", nullptr, "Ctrl+D", "CMD_ERASE", true}}},
        {"MOVE", "M MO", {{Modify, "ui.item.move", nullptr, "Ctrl+M", "CMD_MOVE", true}}},
        {"COPY", "CO CP", {{Modify, "ui.item.copy", nullptr, "Ctrl+Shift+C", "CMD_COPY", true}}},
        // Inquiry
        {"LIST", "LI LS", {{Inquiry, "ui.item.list", nullptr, "Ctrl+Shift+I", "CMD_LIST"}}},
        {"DIST", "DI", {{Inquiry, "ui.item.dist", nullptr, "Ctrl+Shift+D", "CMD_DIST", true}}},
        {"AREA", "AA", {{Inquiry, "ui.item.area", nullptr, "Ctrl+Shift+A", "CMD_AREA", true}}},
        {"AUDIT", "AU", {{Inquiry, "ui.item.audit", nullptr, "Ctrl+Shift+T", nullptr, false, true}}},
        // Boundaries, network
        {"BOUNDARY", "BO", {{Draw, "ui.item.boundary", nullptr, "Ctrl+B", "CMD_BOUNDARY"}}},
        {"-BOUNDARY", "-BO", {{Draw, "ui.item.boundary.options", nullptr, "Ctrl+Shift+B"}}},
        {"LAYER", "LA", {{Layers, "ui.item.layer", nullptr, "Ctrl+L", "CMD_LAYER"}}},
        {"BOUNDARY-LAYERS", "BL", {{Layers, "ui.item.boundaryLayers", nullptr, "Ctrl+Shift+L"}}},
        {"SECTIONS", "SC", {{Network, "ui.item.sections", nullptr, "Ctrl+Shift+N"}}},
        {"UNITS", "UN", {{Tools, "ui.item.units", nullptr, "Ctrl+U"}}},
        {"LANGUAGE", "LG"},
        {"THEME", "TH"},
        {"SETVAR", "SV SET", {{Tools, "ui.item.setvar", nullptr, "Ctrl+Shift+V"}}},
        {"SETTINGS",
         "ST",
         {{Tools, "ui.item.settings.definition", "SETTINGS _Definition", "Ctrl+G", nullptr, false, true},
          {Tools, "ui.item.settings.review", "SETTINGS _Review", "Ctrl+Shift+G"}}},
        // The modules'
        {"zemsewage_create", "ZC", {{Catchments, "ui.item.define", nullptr, "F5", "CMD_DEFINE", true, true}}, true},
        {"zemsewage_edit", "ZE", {{Catchments, "ui.item.review", nullptr, "F6", "CMD_REVIEW", true}}, true},
        {"zemsewage_overview", "ZV", {{Catchments, "ui.item.overview", nullptr, "F7", "CMD_OVERVIEW", true}}, true},
        // Help
        {"HELP", "HE ?", {{Help, "ui.item.help", nullptr, "F1", "CMD_HELP"}}},
        {"ABOUT", "AB", {{Help, "ui.item.about", nullptr, "Shift+F1"}}},
    };
    return rows;
}

std::wstring textOf(const CommandRow &row, const char *what)
{
    return uiText(std::string("ui.cmd.") + row.name + what);
}

} // namespace

const char *menuTitle(MenuPlace place)
{
    constexpr const char *kTitles[kMenuPlaces] = {
        "ui.menu.file",    "ui.menu.edit",    "ui.menu.view",       "ui.menu.draw",  "ui.menu.modify", "ui.menu.layers",
        "ui.menu.inquiry", "ui.menu.network", "ui.menu.catchments", "ui.menu.tools", "ui.menu.help"};
    return kTitles[static_cast<int>(place)];
}

std::wstring CommandRow::wideName() const
{
    return {name, name + std::string_view(name).size()};
}
std::wstring CommandRow::localName() const
{
    return textOf(*this, ".name");
}
std::wstring CommandRow::help() const
{
    return textOf(*this, ".help");
}
std::wstring CommandRow::options() const
{
    return textOf(*this, ".options");
}

std::vector<std::wstring> CommandRow::aliasList() const
{
    std::vector<std::wstring> list;
    std::istringstream words(aliases);
    for (std::string word; words >> word;)
        list.emplace_back(word.begin(), word.end());
    return list;
}

std::span<const CommandRow> commandTable()
{
    return table();
}

const CommandRow *commandRow(std::wstring_view globalName)
{
    const auto found =
        std::ranges::find_if(table(), [&](const CommandRow &row) { return sameText(row.wideName(), globalName); });
    return found == table().end() ? nullptr : &*found;
}

const CommandRow *commandRowOfWord(std::wstring_view word)
{
    if (word.starts_with(L'_'))
        return commandRow(word.substr(1));
    for (const CommandRow &row : table())
        for (const std::wstring &alias : row.aliasList())
            if (sameText(alias, word))
                return &row;
    for (const CommandRow &row : table())
        if (sameText(row.localName(), word))
            return &row;
    return commandRow(word);
}

} // namespace velmor
