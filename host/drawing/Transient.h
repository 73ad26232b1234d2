// What is shown over a drawing without being part of it: temporary drawing, marks, highlights.
//
// One store for each drawing (drawing.component<TransientGraphics>()). A view paints what it finds here.
#pragma once

#include "host/drawing/Drawing.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmor {

using TransientRing = std::vector<AcDbPolyline::Vertex>; ///< closed; first vertex not repeated

struct TransientPath {
    enum class Life { UntilWiped, UntilNextPick };
    std::vector<AcDbPolyline::Vertex> vertices;
    bool closed = false;
    int color = 7; ///< colour index
    Life life = Life::UntilWiped;
};

/// A hatched mark; angle in radians, scale in drawing units of the pattern.
struct TransientMark {
    std::vector<TransientRing> rings; ///< outer first, then holes
    int color = 7;
    double scale = 1.0, angle = 0.0;
    std::wstring pattern;
};

class TransientGraphics {
public:
    explicit TransientGraphics(Drawing &) {}

    /// Draws along an entity (a line, an arc, a polyline) in a colour until clearTemporary.
    void drawTemporary(const AcDbEntity &entity, int color);
    void drawTemporary(TransientPath path);
    void clearTemporary();
    /// Of the temporary drawing only what was meant to last until the next pick.
    void clearUntilNextPick();
    const std::vector<TransientPath> &temporary() const { return m_temporary; }

    /// A mark under a key (an area's GUID); a second one replaces the first.
    void setMark(const std::wstring &key, TransientMark mark);
    void removeMark(const std::wstring &key);
    void clearMarks();
    /// In no certain order.
    const std::unordered_map<std::wstring, TransientMark> &marks() const { return m_marks; }

    /// Costs the same for any number of them.
    void setHighlighted(const AcDbEntity &entity, bool on);
    bool isHighlighted(const AcDbEntity &entity) const { return m_highlightPlaces.contains(&entity); }
    /// In no certain order.
    const std::vector<const AcDbEntity *> &highlighted() const { return m_highlighted; }

    /// A blanked entity of the drawing is not painted until it is drawn again.
    void setBlanked(const AcDbEntity &entity, bool on)
    {
        if (on ? m_blanked.insert(&entity).second : m_blanked.erase(&entity) > 0)
            ++m_revision;
    }
    const std::unordered_set<const AcDbEntity *> &blanked() const { return m_blanked; }
    bool isBlanked(const AcDbEntity &entity) const { return !m_blanked.empty() && m_blanked.contains(&entity); }

    /// Grows with every change.
    std::uint64_t revision() const { return m_revision; }

private:
    std::vector<TransientPath> m_temporary;
    std::unordered_map<std::wstring, TransientMark> m_marks;
    std::vector<const AcDbEntity *> m_highlighted;
    std::unordered_map<const AcDbEntity *, std::size_t> m_highlightPlaces; ///< where each stands in the vector
    std::unordered_set<const AcDbEntity *> m_blanked;
    std::uint64_t m_revision = 0;
};

} // namespace velmor
