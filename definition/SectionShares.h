// What part of an area each section takes: its plan length over the length of all. No widgets, no drawing.
#pragma once

#include <map>
#include <string>

/// Shares of a list of sections, looked up by section name.
///
/// A length of -1e6 means unknown and is left out of the total. When a name comes twice its first length counts for
/// the share while the total holds both. The total is not guarded against 0: then a share is infinite or not a number.
class CSectionShares {
public:
    void Add(const std::wstring &name, double length);
    /// Length of the named section over the total; -1e6 for a name that was never added.
    double Of(const std::wstring &name) const;

private:
    std::map<std::wstring, double> m_lengths;
    double m_total = 0.0;
};
