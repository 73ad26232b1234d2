#include "host/drawing/Transient.h"

#include "host/drawing/CurvePath.h"

#include <algorithm>

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
    if (isHighlighted(entity) == on)
        return;
    if (on)
        m_highlighted.push_back(&entity);
    else
        std::erase(m_highlighted, &entity);
    ++m_revision;
}

bool TransientGraphics::isHighlighted(const AcDbEntity &entity) const
{
    return std::find(m_highlighted.begin(), m_highlighted.end(), &entity) != m_highlighted.end();
}

} // namespace velmor
