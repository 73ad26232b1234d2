// Attached data and named dictionaries as tags.
//
// From R13 on an object's data stands in its extension dictionary and a named dictionary under the root dictionary;
// each key is an XRECORD whose tags are the items. A text longer than 250 bytes goes into several tags: all but the
// last have the code 309, so that code is not for items.
//
// R12 has no dictionaries. There, data of an entity stands in its extended data under the application VELMOR, between
// braces: the key (1000), then for each item its code (1070) and its value (1000 once or more, 1040, or 1071). Extended
// data is limited to 16 kilobytes an entity, so what does not fit, and all named dictionaries, stand in the same form
// in the extended data of points in a block definition that is never placed, "VELMOR_DATA". Each point says first whose
// slice it holds: a handle or "#" and a dictionary's name, the key, and the slice's number.
#pragma once

#include "host/drawing/dxf/DxfFile.h"
#include "host/drawing/dxf/Tags.h"

#include <span>

namespace velmor::dxf {

inline constexpr int kContinuationCode = 309;
inline constexpr std::size_t kLongestText = 250;
inline constexpr const char *kApplication = "VELMOR";
inline constexpr const char *kDataBlock = "VELMOR_DATA";

/// Text of names and keys as the rest of the program has them.
std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view text);

/// Bytes of a text in pieces of at most kLongestText, none of which splits a character; one piece at least.
std::vector<std::string> piecesOf(const TextCodec &codec, std::wstring_view text);

/// The tags of an object of the file.
std::vector<Tag> tagsOf(const FileText &file, std::size_t offset, std::size_t length);

/// The items of an XRECORD.
DataItems readRecord(const FileText &file, const RawObject &record);

struct DictionaryEntry {
    std::string key; ///< UTF-8
    std::uint64_t handle = 0;
};
std::vector<DictionaryEntry> readDictionary(const FileText &file, const RawObject &dictionary);

/// A record of extended data: where it belongs (empty: to the object that holds it), its key and a slice of its tags.
struct ExtendedSlice {
    std::string target, key;
    int part = 0;
    std::vector<Tag> tags;
};
/// The records behind the tag 1001 of our application.
std::vector<ExtendedSlice> readExtendedData(std::span<const Tag> tags, const TextCodec &codec);
/// Items from the tags of all slices of one record in order.
DataItems readItems(std::span<const Tag> tags, const TextCodec &codec);

} // namespace velmor::dxf
