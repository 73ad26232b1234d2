// Drawing files: whatever the bytes, what is read can be written, read again and written to the same text; edits reach
// the file; and nothing that was kept unread is lost on the way.
#include "fuzz/Require.h"
#include "host/drawing/Blocks.h"
#include "host/drawing/CurvePath.h"
#include "host/drawing/DrawingData.h"
#include "host/editor/CurvePieces.h"

namespace {

using namespace velmor;

constexpr char kKey[] = "FUZZ_KEY";
const DataItems kItems{{1, L"a text"}, {40, 0.1}, {90, std::int64_t{-7}}};

/// Text of an entity in the file it was read from.
std::string_view sourceOf(Drawing &drawing, const AcDbEntity &entity)
{
    const auto &host = ObjectAccess::host(entity);
    return drawing.priv().file.at(host.sourceOffset, host.sourceLength);
}

std::size_t presentIn(const Drawing &drawing)
{
    std::size_t count = 0;
    for (const auto &block : drawing.blocks())
        count += static_cast<std::size_t>(
            std::ranges::count_if(block->entities(), [](const AcDbEntity *entity) { return !entity->isErased(); }));
    return count;
}

/// Everything that a drawing is asked about its shapes.
void measure(const Drawing &drawing)
{
    const PieceMaker maker(
        drawing, [](std::size_t) { return true; }, 10'000);
    std::vector<boundary::Piece> pieces;
    for (const auto &block : drawing.blocks())
        for (const AcDbEntity *entity : block->entities()) {
            const Extents extents = extentsOf(*entity);
            if (const auto *curve = dynamic_cast<const AcDbCurve *>(entity)) {
                double area = 0.0;
                curve->getArea(area);
                curve->isClosed();
                const double size = extents.isEmpty() ? 1.0 : std::hypot(extents.maxX - extents.minX, 1.0);
                curvePathOf(*entity, std::max(1e-3 * size, 1e-6));
            }
            if (const auto *hatch = dynamic_cast<const AcDbHatch *>(entity))
                hatch->lines();
            if (PieceMaker::isLinework(*entity)) {
                pieces.clear();
                maker.append(*entity, 0, pieces);
                for (const boundary::Piece &piece : pieces)
                    require(std::isfinite(piece.a.x) && std::isfinite(piece.b.y) && std::isfinite(piece.bulge),
                            "pieces are finite");
            }
        }
}

/// An edit of every sort; what was there before stays but for one entity of a known kind.
void edit(Drawing &drawing)
{
    BlockRecord &space = drawing.modelSpace();
    if (!space.entities().empty()) {
        AcDbEntity &first = *space.entities().front();
        drawing.setData(first, kKey, kItems);
        drawing.setLayerOf(*space.entities().back(), drawing.ensureLayer(L"Fuzz \x10D", 3));
        drawing.setColorOf(*space.entities().back(), 5);
        for (AcDbEntity *entity : space.entities())
            if (entity != &first && kindOf(*entity) == EntityKind::Line) {
                drawing.erase(*entity);
                break;
            }
    }
    for (const auto &block : drawing.blocks())
        for (AcDbEntity *entity : block->entities())
            if (kindOf(*entity) == EntityKind::BlockReference)
                for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*entity)))
                    drawing.setAttributeText(*attribute, L"^new \x17E");
    drawing.setDictionaryEntry("FUZZ_DICTIONARY", kKey, kItems);
    drawing.setHeaderVariable("$INSUNITS", 70, "6");

    drawing.append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 2, 3)));
    using Vertices = std::vector<AcDbPolyline::Vertex>;
    drawing.append(std::make_unique<AcDbPolyline>(Vertices{{0, 0, 0.5}, {5, 0, 0}, {5, 5, -1}}, true, 2.5));
    drawing.append(std::make_unique<AcDb2dPolyline>(Vertices{}, false, 0.0));
    TextShape text;
    text.text = L"50%% \x10D";
    drawing.append(std::make_unique<TextEntity>(text));
    text.text = L"two\nlines {} \\";
    drawing.append(std::make_unique<MTextEntity>(text));
    BlockRecord &block = drawing.addBlock(L"FUZZ_BLOCK", {1, 1});
    if (!block.isLayout()) {
        drawing.append(std::make_unique<AcDbArc>(AcGePoint3d(0, 0), 2.0, 1.0, 4.0), block);
        AcDbBlockReference::Placement placement;
        placement.scaleX = -2.0;
        const AcDbObjectId id = drawing.append(std::make_unique<AcDbBlockReference>(idOf(block), placement));
        auto &reference = static_cast<AcDbBlockReference &>(*ObjectAccess::object(id));
        drawing.appendAttribute(reference, std::make_unique<AttributeEntity>(L"TAG", text));
    }
}

/// Write, read, write: the same text twice, and the same things in it.
void roundTrip(Drawing &drawing, const std::string &written, const char *what)
{
    const LoadResult again = Drawing::read(written);
    require(again.drawing != nullptr, what);
    require(again.drawing->write() == written, "the second write equals the first");
    require(presentIn(*again.drawing) == presentIn(drawing), "all entities are back");
    require(again.drawing->layers().size() <= drawing.layers().size(), "no layer comes from nowhere");
    std::size_t from = 0;
    for (const auto &[kind, count] : drawing.loadReport().unread) {
        const auto found = again.report.unread.find(kind);
        require(found != again.report.unread.end() && found->second >= count, "what was kept unread is kept again");
        from += count;
    }
    require(from == 0 || !again.report.unread.empty(), "unread entities are counted");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    LoadResult loaded = Drawing::read(std::string(reinterpret_cast<const char *>(data), size));
    if (!loaded.drawing) {
        require(loaded.status != FileStatus::Ok && !loaded.message.empty(), "a refusal has a reason");
        return 0;
    }
    require(loaded.status == FileStatus::Ok, "a drawing that was read is fine");
    for (const Finding &finding : loaded.report.findings)
        require(!finding.text.empty() && finding.text.find('\n') == std::string::npos, "a finding is one line");
    Drawing &drawing = *loaded.drawing;
    measure(drawing);
    roundTrip(drawing, drawing.write(), "what was written is a drawing");

    // The same text through an edit; the parts that nobody understood stand in it as they were.
    std::vector<std::string> unread;
    for (const auto &block : drawing.blocks())
        for (const AcDbEntity *entity : block->entities())
            if (kindOf(*entity) == EntityKind::Unknown)
                unread.emplace_back(sourceOf(drawing, *entity).substr(0, 4096));
    const AcDbEntity *first =
        drawing.modelSpace().entities().empty() ? nullptr : drawing.modelSpace().entities().front();
    const AcDbEntity *last = first ? drawing.modelSpace().entities().back() : nullptr;
    if (first && kindOf(*first) == EntityKind::Unknown)
        std::erase(unread, sourceOf(drawing, *first).substr(0, 4096));
    if (last && kindOf(*last) == EntityKind::Unknown)
        std::erase(unread, sourceOf(drawing, *last).substr(0, 4096));
    edit(drawing);
    require(!first || drawing.data(*first, kKey) == kItems, "data is there at once");
    const std::string edited = drawing.write();
    for (const std::string &text : unread)
        require(edited.find(text) != std::string::npos, "unread tags are written as they were");
    const LoadResult again = Drawing::read(edited);
    require(again.drawing != nullptr, "an edited drawing is a drawing");
    require(again.drawing->write() == edited, "an edited drawing settles");
    require(presentIn(*again.drawing) >= presentIn(drawing), "all entities are back after an edit");
    require(again.drawing->dictionaryEntry("FUZZ_DICTIONARY", kKey) == kItems, "dictionary entries are back");
    if (first) {
        const auto carriers = again.drawing->entitiesWithData(kKey);
        require(std::ranges::any_of(
                    carriers, [&](const AcDbEntity *entity) { return again.drawing->data(*entity, kKey) == kItems; }),
                "attached data is back");
    }

    // And taken into another drawing as a block.
    const auto target = Drawing::createNew();
    const BlockImport imported = importBlockInto(*target, L"IMPORTED", drawing, {});
    const LoadResult target2 = Drawing::read(target->write());
    require(imported.block && target2.drawing && target2.drawing->findBlock(L"IMPORTED"), "an import is a drawing");
    return 0;
}
