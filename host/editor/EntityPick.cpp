#include "host/editor/EntityPick.h"

#include "host/drawing/Entities.h"
#include "host/editor/Command.h"
#include "host/editor/CurvePieces.h"
#include "host/editor/SelectionSets.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

double distanceToPiece(Point p, const Piece &piece)
{
    const double ax = p.x - piece.a.x, ay = p.y - piece.a.y;
    const double bx = p.x - piece.b.x, by = p.y - piece.b.y;
    const double ends = std::min(std::hypot(ax, ay), std::hypot(bx, by));
    const double cx = piece.b.x - piece.a.x, cy = piece.b.y - piece.a.y;
    const double chord = cx * cx + cy * cy;
    if (chord == 0.0)
        return ends;
    if (piece.bulge == 0.0) {
        const double along = (ax * cx + ay * cy) / chord;
        return along <= 0.0 || along >= 1.0 ? ends : std::abs(cx * ay - cy * ax) / std::sqrt(chord);
    }
    const double offset = (1.0 - piece.bulge * piece.bulge) / (4.0 * piece.bulge);
    const Point center{piece.a.x + 0.5 * cx - offset * cy, piece.a.y + 0.5 * cy + offset * cx};
    const double radius = std::sqrt(chord) * (1.0 + piece.bulge * piece.bulge) / (4.0 * std::abs(piece.bulge));
    // The arc lies to the right of its chord when it runs counter-clockwise.
    const double dx = p.x - center.x, dy = p.y - center.y;
    const double reach = std::hypot(dx, dy);
    if (reach == 0.0)
        return radius;
    const Point foot{center.x + dx / reach * radius, center.y + dy / reach * radius};
    const double side = cx * (foot.y - piece.a.y) - cy * (foot.x - piece.a.x);
    return (side <= 0.0) == (piece.bulge > 0.0) ? std::abs(reach - radius) : ends;
}

} // namespace

double distanceTo(const Drawing &drawing, const AcDbEntity &entity, const AcGePoint3d &point)
{
    double best = std::numeric_limits<double>::infinity();
    if (!PieceMaker::isLinework(entity))
        return best;
    std::vector<Piece> pieces;
    PieceMaker(drawing, [&](std::size_t layer) { return drawing.layer(layer).visible(); }).append(entity, 0, pieces);
    for (const Piece &piece : pieces)
        best = std::min(best, distanceToPiece({point.x, point.y}, piece));
    return best;
}

std::optional<Answer::Pick> pickedEntity(Session &session, const Answer &answer)
{
    Drawing *drawing = session.drawing();
    if (!drawing)
        return std::nullopt;
    if (const auto *pick = std::get_if<Answer::Pick>(&answer.value))
        return pick->id.isValid() && !pick->id.isErased() ? std::optional(*pick) : std::nullopt;
    if (const auto *ids = std::get_if<AcDbObjectIdArray>(&answer.value))
        return ids->size() == 1 ? std::optional(Answer::Pick{ids->front(), {}}) : std::nullopt;
    if (const std::wstring *text = answer.text(); text && text->starts_with(L'#')) {
        AcDbObjectId id;
        if (drawing->getAcDbObjectId(id, false, AcDbHandle(text->c_str() + 1), 0) != Acad::eOk || id.isErased())
            return std::nullopt;
        return Answer::Pick{id, {}};
    }
    const auto point = answer.point();
    if (!point)
        return std::nullopt;
    const auto variable = session.variable(L"PICKRADIUS");
    double nearest = variable ? std::get<double>(*variable) : 0.0;
    std::optional<Answer::Pick> found;
    for (AcDbEntity *entity : drawing->modelSpace().entities()) {
        if (entity->isErased() || !drawing->layer(layerIndexOf(*entity)).visible())
            continue;
        Extents extents = extentsOf(*entity);
        extents.grow(nearest);
        if (!extents.contains(point->x, point->y))
            continue;
        const double distance = distanceTo(*drawing, *entity, *point);
        if (distance <= nearest) {
            nearest = distance;
            found = Answer::Pick{idOf(*entity), *point};
        }
    }
    return found;
}

std::optional<AcDbObjectIdArray> selectedEntities(Session &session, const Answer &answer)
{
    Drawing *drawing = session.drawing();
    if (!drawing)
        return std::nullopt;
    if (const auto *ids = std::get_if<AcDbObjectIdArray>(&answer.value))
        return *ids;
    if (const auto *set = std::get_if<Answer::Set>(&answer.value)) {
        const SelectionSet *source = session.selectionSets().find(set->id);
        return source ? std::optional(source->members()) : std::nullopt;
    }
    if (const std::wstring *text = answer.text(); text && matchKeyword({kAllWord}, *text)) {
        AcDbObjectIdArray all;
        for (AcDbEntity *entity : drawing->modelSpace().entities())
            if (!entity->isErased() && drawing->layer(layerIndexOf(*entity)).visible())
                all.push_back(idOf(*entity));
        return all;
    }
    const auto pick = pickedEntity(session, answer);
    return pick ? std::optional(AcDbObjectIdArray{pick->id}) : std::nullopt;
}

} // namespace velmor
