// What a person meets in a window, looked at by machine: names, texts, room for them, contrast, mnemonics.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace velmor::test {

/// Texts of a window by the place at which they stand; the same places in each language.
using TextsByPlace = QMap<QString, QString>;

/// All texts of a window that come from the program: captions, tips, heads, place holders, accessible names. Content
/// (cells, typed text, file names) is left out.
TextsByPlace textsOf(const QWidget &window);

/// Focusable widgets without an accessible name.
QStringList unnamedWidgets(const QWidget &window);
/// Visible texts that have less room than they need.
QStringList cutTexts(const QWidget &window);
/// Visible texts with a contrast below 4.5 to 1, after the palette and after the picture.
QStringList weakTexts(QWidget &window);
/// Mnemonics that several things of one menu or of one dialog share.
QStringList sharedMnemonics(const QWidget &window);
/// Actions of menus that neither a key nor a chain of mnemonics reaches.
QStringList unreachableActions(const QWidget &window);

/// Places whose texts are the same in both languages and are no words that both share.
QStringList untranslated(const TextsByPlace &english, const TextsByPlace &croatian);

} // namespace velmor::test
