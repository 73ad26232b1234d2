// Texts that the toolkit's own dialogs, boxes and context menus show, in the program's language.
#pragma once

namespace velmor {

/// Takes up messages/toolkit.LANGUAGE.txt, lines "SOURCE TEXT = translation" in which a mnemonic's mark may be left
/// out of the source; there is none for English, which is the toolkit's own language. REQUIRES an application.
void useToolkitTexts();

} // namespace velmor
