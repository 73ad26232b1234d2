// Which names may be given to areas, sections and nodes. Plain values.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

enum class ENameTrouble { None, Empty, ControlCharacter, TooLong, Doubled };

/// Longest name, in characters.
inline constexpr std::size_t kLongestName = 255;

/// Without blanks and tabs at both ends, as it is stored.
std::wstring TrimmedName(const std::wstring &typed);

/// The names of all entities of one kind. Names that stand there twice already are left in peace; empty ones don't
/// count.
class CNameList {
public:
    void Add(const std::wstring &name);
    void Rename(const std::wstring &from, const std::wstring &to);
    /// Whether an entity of that name may take another one, which is trimmed already. Its own name it may keep.
    ENameTrouble Check(const std::wstring &present, const std::wstring &wanted) const;

private:
    std::unordered_map<std::wstring, int> m_uses;
};
