// The widest of many texts in one font, without asking the font for each of them.
#pragma once

#include "controls/rules/TreeListItem.h"

#include <QFontMetrics>
#include <QFontMetricsF>

#include <cstddef>
#include <vector>

/// Takes texts one by one, each with the pixels that stand before it, and keeps the greatest of both together. A text
/// is as wide as QFontMetrics::horizontalAdvance tells, in whole pixels. Only a text that might be wider than all
/// before is measured by the font: what each letter adds before its neighbour, kerning included, is asked once and
/// remembered. Scripts whose letters change with their neighbours are measured always.
class TextAdvances {
public:
    explicit TextAdvances(const QFontMetrics &metrics);
    void Take(int before, const TreeListText &text);
    /// Of what was taken so far; 0 before that.
    int Widest() const { return m_nWidest; }
    /// Texts that the font was asked for.
    int Measured() const { return m_nMeasured; }

private:
    template <class Character>
    bool IsSurelyWithin(const Character *characters, std::size_t length, int room);
    float StepOf(unsigned letter, unsigned next);

    QFontMetrics m_metrics;
    QFontMetricsF m_fractions;
    std::vector<float> m_steps; ///< letter by next letter; not a number: not asked yet
    int m_nWidest = 0;
    int m_nMeasured = 0;
};
