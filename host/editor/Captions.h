// Texts of widgets that follow the program's language while it runs.
#pragma once

#include <QString>

#include <functional>
#include <string_view>

class QMenuBar;
class QObject;

namespace velmor {

/// The program's own text of that name in the program's language.
QString uiString(std::string_view name);

/// Gives a widget, an action or a menu its texts: runs setTexts now, and again whenever the language changes, as long
/// as the owner lives.
void keepCaptioned(QObject *owner, std::function<void()> setTexts);

/// Gives each action of the menus of a bar a mnemonic of its own: one that an earlier action of the same menu has
/// already, or that is missing, becomes another letter of the text (A to Z, beginnings of words first).
void settleMnemonics(const QMenuBar &bar);

/// Lets the running application follow the language of the services: all texts that are kept captioned, and those of
/// the toolkit's own dialogs (their buttons, labels and menus), whose translations stand in
/// messages/toolkit.LANGUAGE.txt. Top-level widgets get QEvent::LanguageChange too. To be called once there is an
/// application; more calls do nothing.
void followLanguage();

} // namespace velmor
