// The coding of names in the terrain catalogue: plain ASCII of the quoted-printable kind over an 8-bit code page.
//
//   "="                     =3D
//   a byte below 128        itself
//   a byte from 128 on      three groups: the byte widened with its sign to 16 bits, written in the pattern of
//                           three-byte UTF-8 (0x8A: 0xFF8A: "=EF=BE=8A")
// The sign makes the groups other than UTF-8 of any letter. Existing files hold this form, and decoding undoes it.
#pragma once

#include "catalog/AnsiCodePage.h"

#include <string>
#include <string_view>

/// The name as it stands in an attribute (before the document's own escaping). A character that the page lacks is coded
/// as "?".
std::wstring EncodeName(std::wstring_view name, const CAnsiCodePage &page);

/// The name that an attribute's text stands for. Any text has one: outside of "=" characters are taken through the
/// page; an unfinished group ends the name; see the table in the source for each leading byte.
std::wstring DecodeName(std::wstring_view text, const CAnsiCodePage &page);
