#include "host/editor/EntityPick.h"

#include "host/drawing/Visibility.h"
#include "host/editor/Command.h"
#include "host/editor/CurvePieces.h"
#include "host/editor/Picking.h"
#include "host/editor/SelectionSets.h"

namespace velmor {

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
    const double radius = variable ? std::get<double>(*variable) : 0.0;
    for (AcDbEntity *entity : entitiesAt(*drawing, *point, radius))
        if (PieceMaker::isLinework(*entity))
            return Answer::Pick{idOf(*entity), *point};
    return std::nullopt;
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
            if (isShown(*drawing, *entity))
                all.push_back(idOf(*entity));
        return all;
    }
    const auto pick = pickedEntity(session, answer);
    return pick ? std::optional(AcDbObjectIdArray{pick->id}) : std::nullopt;
}

} // namespace velmor
