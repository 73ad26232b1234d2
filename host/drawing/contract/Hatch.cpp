// Hatches: set up, loops copied from curves, pattern lines evaluated.
#include "host/drawing/CurvePath.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/HatchPattern.h"
#include "host/drawing/Journal.h"

#include <algorithm>

using velmor::journal;
using velmor::ObjectAccess;

namespace {

/// Ellipses and splines become chords that leave them by no more; drawing units.
constexpr double kLoopFlatness = 0.001;

std::vector<std::vector<AcDbPolyline::Vertex>> ringsOf(const std::vector<AcDbHatch::Loop> &loops)
{
    std::vector<std::vector<AcDbPolyline::Vertex>> rings;
    rings.reserve(loops.size());
    for (const AcDbHatch::Loop &loop : loops)
        rings.push_back(loop.vertices);
    return rings;
}

} // namespace

Acad::ErrorStatus AcDbHatch::change()
{
    velmor::Drawing *drawing = ObjectAccess::drawing(*this);
    if (drawing && !isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (drawing)
        drawing->entityChanging(*this);
    m_evaluated = false;
    m_lines.clear();
    if (drawing) {
        drawing->priv().touch(*this, velmor::kPatchGeometry);
        drawing->entityChanged(*this);
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::setNormal(const AcGeVector3d &normal)
{
    journal("AcDbHatch::setNormal", normal.x, normal.y, normal.z);
    const double length = normal.length();
    if (!(length > 0.0) || !std::isfinite(length))
        return Acad::eInvalidInput;
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk)
        m_normal = {normal.x / length, normal.y / length, normal.z / length};
    return status;
}

Acad::ErrorStatus AcDbHatch::setElevation(double elevation)
{
    journal("AcDbHatch::setElevation", elevation);
    if (!std::isfinite(elevation))
        return Acad::eInvalidInput;
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk)
        m_elevation = elevation;
    return status;
}

Acad::ErrorStatus AcDbHatch::setPatternAngle(double radians)
{
    journal("AcDbHatch::setPatternAngle", radians);
    if (!std::isfinite(radians))
        return Acad::eInvalidInput;
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk) {
        m_patternAngle = radians;
        m_families.clear();
    }
    return status;
}

Acad::ErrorStatus AcDbHatch::setPatternScale(double scale)
{
    journal("AcDbHatch::setPatternScale", scale);
    if (!(scale > 0.0) || !std::isfinite(scale))
        return Acad::eInvalidInput;
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk) {
        m_patternScale = scale;
        m_families.clear();
    }
    return status;
}

Acad::ErrorStatus AcDbHatch::setPattern(HatchPatternType type, const wchar_t *name)
{
    journal("AcDbHatch::setPattern", static_cast<int>(type), name);
    if (!name || !*name || !velmor::isHatchPattern(name))
        return Acad::eInvalidInput;
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk) {
        m_patternType = type;
        m_patternName = name;
        m_families.clear();
    }
    return status;
}

Acad::ErrorStatus AcDbHatch::setAssociative(bool associative)
{
    journal("AcDbHatch::setAssociative", associative);
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk)
        m_associative = associative;
    return status;
}

Acad::ErrorStatus AcDbHatch::setHatchStyle(HatchStyle style)
{
    journal("AcDbHatch::setHatchStyle", static_cast<int>(style));
    const Acad::ErrorStatus status = change();
    if (status == Acad::eOk)
        m_style = style;
    return status;
}

Acad::ErrorStatus AcDbHatch::appendLoop(int loopType, const AcDbObjectIdArray &curves)
{
    if (velmor::Journal::instance().isRecording()) {
        velmor::JournalEntry entry{"AcDbHatch::appendLoop", {velmor::journalText(loopType)}};
        for (const AcDbObjectId &id : curves)
            entry.arguments.push_back(velmor::journalText(id));
        velmor::Journal::instance().add(std::move(entry));
    }
    std::vector<Loop> loops;
    for (const AcDbObjectId &id : curves) {
        AcDbEntity *entity = nullptr;
        if (const auto status = acdbOpenAcDbEntity(entity, id, AcDb::kForRead); status != Acad::eOk)
            return status == Acad::eNotAnEntity ? Acad::eInvalidInput : status;
        auto path = velmor::curvePathOf(*entity, kLoopFlatness);
        entity->close();
        if (!path || !path->closed)
            return Acad::eInvalidInput;
        loops.push_back({loopType, std::move(path->vertices)});
    }
    if (loops.empty())
        return Acad::eInvalidInput;
    if (const auto status = change(); status != Acad::eOk)
        return status;
    std::move(loops.begin(), loops.end(), std::back_inserter(m_loops));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::evaluateHatch(bool underestimateLines)
{
    journal("AcDbHatch::evaluateHatch", underestimateLines);
    const bool hasArea = std::any_of(m_loops.begin(), m_loops.end(), [](const Loop &loop) {
        return std::abs(velmor::ringAreaOf(loop.vertices)) > 0.0;
    });
    if (!hasArea)
        return Acad::eDegenerateGeometry;
    if (m_families.empty()) // from now on the hatch keeps its lines, whatever becomes of the pattern of that name
        m_families = velmor::hatchFamilies(m_patternName, m_patternAngle, m_patternScale);
    lines();
    return Acad::eOk;
}

const std::vector<AcDbHatch::Line> &AcDbHatch::lines() const
{
    if (!m_evaluated) {
        m_lines = velmor::patternLines(ringsOf(m_loops), families());
        m_evaluated = true;
    }
    return m_lines;
}

std::vector<AcDbHatch::Family> AcDbHatch::families() const
{
    return m_families.empty() ? velmor::hatchFamilies(m_patternName, m_patternAngle, m_patternScale) : m_families;
}
