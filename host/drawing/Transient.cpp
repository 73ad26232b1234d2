#include "host/drawing/Transient.h"

#include "host/drawing/CurvePath.h"

namespace velmor {

void TransientGraphics::drawTemporary(const AcDbEntity &entity, int color)
{
    // Fine enough for any zoom at which a whole curve is looked at.
    constexpr double kFlatness = 0.01;
    if (auto path = curvePathOf(entity, kFlatness))
        drawTemporary({std::move(path->vertices), path->closed, color});
}

void TransientGraphics::drawTemporary(TransientPath path)
{
    m_temporary.push_back(std::move(path));
    ++m_revision;
}

void TransientGraphics::clearTemporary()
{
    if (m_temporary.empty())
        return;
    m_temporary.clear();
    ++m_revision;
}

void TransientGraphics::clearUntilNextPick()
{
    if (std::erase_if(m_temporary,
                      [](const TransientPath &path) { return path.life == TransientPath::Life::UntilNextPick; }) > 0)
        ++m_revision;
}

void TransientGraphics::setMark(const std::wstring &key, TransientMark mark)
{
    m_marks.insert_or_assign(key, std::move(mark));
    ++m_revision;
}

void TransientGraphics::removeMark(const std::wstring &key)
{
    if (m_marks.erase(key) > 0)
        ++m_revision;
}

void TransientGraphics::clearMarks()
{
    if (m_marks.empty())
        return;
    m_marks.clear();
    ++m_revision;
}

void TransientGraphics::setHighlighted(const AcDbEntity &entity, bool on)
{
    const auto place = m_highlightPlaces.find(&entity);
    if (on == (place != m_highlightPlaces.end()))
        return;
    ++m_revision;
    if (on) {
        m_highlightPlaces.emplace(&entity, m_highlighted.size());
        m_highlighted.push_back(&entity);
        return;
    }
    // The last one takes the free place.
    m_highlighted[place->second] = m_highlighted.back();
    m_highlightPlaces[m_highlighted.back()] = place->second;
    m_highlighted.pop_back();
    m_highlightPlaces.erase(&entity);
}

} // namespace velmor
