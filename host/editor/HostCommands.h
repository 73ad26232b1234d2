// The host's own commands.
//
//   NEW                              an empty drawing
//   OPEN FILE                        reads a drawing
//   SAVE [FILE [OVERWRITE-DAMAGED] [OVERWRITE-CHANGED]]
//                                    writes the drawing, to its own file when none is named; the words allow what is
//                                    asked or refused else: to write over a file that was damaged when it was read,
//                                    one that another program has changed since then, or one it has open
//   SAVEAS FILE ...                  the same to a file that is named
//   IMPORT FILE [WITH-POLYGONS]      reads a network file into the drawing
//   SECTIONS LAYER[,LAYER...] [NAMES LAYER[,LAYER...]]
//                                    makes sections of the lines, arcs and open polylines of layers, and nodes at
//                                    their ends, which texts name: those of the layers behind NAMES, else all
//   LAYER NAME                       makes a layer current, and the layer itself when there is none
//   SETVAR NAME VALUE                sets a host variable
//   BOUNDARY-LAYERS NAME[,NAME] ...  the layers whose entities bound areas, kept in the drawing for those that define
//                                    areas; a name with a comma stands alone
//   UNDO [NUMBER | Mark | Back | All], U, REDO [NUMBER | All]
//                                    takes steps back and does them again
//   BOUNDARY POINT                   draws the region around a point, with its islands
//   -BOUNDARY                        the same prompt by prompt, with all its options
//   LANGUAGE EN|HR                   language of all texts, at once and from then on
//   THEME SYSTEM|LIGHT|DARK          colours of all windows
//   SETTINGS [Definition | Review]   the settings of the catchment dialogs, in a dialog
//
// NEW and OPEN ask first when the drawing has changes that were not saved (answer Yes to drop them; a window asks
// whether to save them).
#pragma once

namespace velmor {

class CommandStack;

void addHostCommands(CommandStack &stack);
void addFileCommands(CommandStack &stack);
void addNetworkCommands(CommandStack &stack);
void addLayerCommands(CommandStack &stack);
void addBoundaryCommands(CommandStack &stack);
void addAppearanceCommands(CommandStack &stack);
void addViewCommands(CommandStack &stack);
void addProgramCommands(CommandStack &stack);
void addDrawCommands(CommandStack &stack);
void addModifyCommands(CommandStack &stack);
void addInquiryCommands(CommandStack &stack);
void addHatchCommands(CommandStack &stack);
void addInsertCommands(CommandStack &stack);
void addVariableCommands(CommandStack &stack);
void addPlotCommands(CommandStack &stack);

} // namespace velmor
