#include "controls/treelist/TextAdvances.h"

#include "controls/treelist/TreeListTexts.h"

#include <QChar>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

/// Latin letters, digits and signs: each stands by itself, so pairs tell the width. The end of a text counts as 0.
constexpr unsigned kFirstSimple = 0x20, kSimpleEnd = 0x250;

bool isSimple(unsigned letter)
{
    constexpr unsigned kDelete = 0x7F, kFirstPrintableAbove = 0xA0, kSoftHyphen = 0xAD;
    return letter >= kFirstSimple && letter < kSimpleEnd && (letter < kDelete || letter >= kFirstPrintableAbove) &&
           letter != kSoftHyphen;
}

} // namespace

TextAdvances::TextAdvances(const QFontMetrics &metrics)
    : m_metrics(metrics), m_fractions(metrics),
      m_steps(std::size_t{kSimpleEnd} * kSimpleEnd, std::numeric_limits<float>::quiet_NaN())
{
}

float TextAdvances::StepOf(unsigned letter, unsigned next)
{
    float &step = m_steps[std::size_t{letter} * kSimpleEnd + next];
    if (std::isnan(step)) {
        const QString one = QChar(letter);
        step = static_cast<float>(next == 0 ? m_fractions.horizontalAdvance(one)
                                            : m_fractions.horizontalAdvance(one + QChar(next)) -
                                                  m_fractions.horizontalAdvance(QString(QChar(next))));
    }
    return step;
}

template <class Character>
bool TextAdvances::IsSurelyWithin(const Character *characters, std::size_t length, int room)
{
    float width = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const auto letter = static_cast<unsigned>(characters[i]);
        const unsigned next = i + 1 < length ? static_cast<unsigned>(characters[i + 1]) : 0;
        if (!isSimple(letter) || (i + 1 < length && !isSimple(next)))
            return false;
        width += StepOf(letter, next);
    }
    return std::lround(width) <= room;
}

void TextAdvances::Take(int before, const TreeListText &text)
{
    const int room = m_nWidest - before;
    bool within = false;
    switch (text.bytesEach) {
    case 1:
        within = IsSurelyWithin(static_cast<const std::uint8_t *>(text.characters), text.length, room);
        break;
    case 2:
        within = IsSurelyWithin(static_cast<const char16_t *>(text.characters), text.length, room);
        break;
    default:
        within = IsSurelyWithin(static_cast<const char32_t *>(text.characters), text.length, room);
        break;
    }
    if (within)
        return;
    ++m_nMeasured;
    m_nWidest = std::max(m_nWidest, before + m_metrics.horizontalAdvance(OneLine(text)));
}
