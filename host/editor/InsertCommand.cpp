// INSERT: a block of the drawing, or a drawing file as a block, placed with its attributes.
#include "host/drawing/BlockFile.h"
#include "host/drawing/BlockSource.h"
#include "host/drawing/Blocks.h"
#include "host/drawing/ObjectAccess.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/HostCommands.h"
#include "host/editor/UiMessage.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace velmor {

namespace {

using Next = Command::Next;

/// What is asked for one attribute of the block.
struct AttributeQuestion {
    std::wstring tag, prompt, standard;
};

std::vector<AttributeQuestion> questionsOf(const BlockRecord &block)
{
    std::vector<AttributeQuestion> questions;
    for (const AcDbEntity *entity : block.entities()) {
        if (entity->isErased() || kindOf(*entity) != EntityKind::AttributeDefinition)
            continue;
        const auto &definition = static_cast<const AttributeDefinitionEntity &>(*entity);
        if (!definition.isConstant())
            questions.push_back({definition.tag(), definition.prompt().empty() ? definition.tag() : definition.prompt(),
                                 definition.shape().text});
    }
    return questions;
}

bool isFileName(const std::wstring &text)
{
    const std::wstring ending = text.size() > 4 ? text.substr(text.size() - 4) : std::wstring();
    return text.find(L'/') != std::wstring::npos || ending == L".dxf" || ending == L".DXF" || ending == L".dwg" ||
           ending == L".DWG";
}

void listBlocks(Session &session)
{
    for (const auto &block : session.drawing()->blocks())
        if (!block->isErased() && !block->isLayout() && !block->name().starts_with(L"*"))
            session.status(block->name());
}

/// The block to insert: one of the drawing, or that of a file which is read but not yet taken in.
struct Source {
    BlockRecord *block = nullptr;  ///< of the drawing
    std::wstring path;             ///< of the file, else
    std::unique_ptr<Drawing> file; ///< what stands in it
};

/// Reads the block out of a file, unless the drawing has one of its own in its place. False when it can't be read; the
/// alert says why.
bool readFile(Asker &asker, const std::wstring &path, Source &source)
{
    const std::filesystem::path file(utf8(path));
    auto found = readBlockFile(file);
    LoadResult loaded = found ? Drawing::read(std::move(found->bytes)) : Drawing::load(file);
    if (!loaded.drawing) {
        const std::wstring where = found ? wide(found->path.string()) + L": " : std::wstring();
        asker.session().alert(where + wide(loaded.message));
        return false;
    }
    source.block = ownBlockInPlaceOf(asker.drawing(), {}, file);
    if (source.block) {
        asker.session().status(uiMessage("ui.insert.own", {source.block->name()}));
        return true;
    }
    source.file = std::move(loaded.drawing);
    source.path = path;
    return true;
}

/// Asks till there is one. False when the file can't be read; the alert says why.
bool askSource(Asker &asker, Source &source)
{
    for (;;) {
        const Reply reply = asker.text({.message = "ui.prompt.insert", .completion = Completion::Blocks});
        if (reply.text == L"?") {
            listBlocks(asker.session());
            continue;
        }
        source.block = asker.drawing().findBlock(reply.text);
        if (source.block && !source.block->isLayout())
            return true;
        source.block = nullptr;
        if (isFileName(reply.text))
            return readFile(asker, reply.text, source);
        asker.refuse(uiMessage("ui.insert.unknown", {reply.text}));
    }
}

double askScale(Asker &asker, const AcGePoint3d &at)
{
    for (;;) {
        const Reply reply =
            asker.number({.message = "ui.prompt.insert.scale", .standard = L"1", .base = at, .optional = true});
        if (reply.isEnter())
            return 1.0;
        if (reply.number != 0.0)
            return reply.number;
        asker.refuse(uiText("ui.insert.scale"));
    }
}

Next insertBlock(Asker &asker)
{
    Source source;
    if (!askSource(asker, source))
        return Next::BadInput;
    AcDbBlockReference::Placement placement;
    placement.position = asker.onlyPoint("ui.prompt.insert.at");
    placement.scaleX = placement.scaleY = placement.scaleZ = askScale(asker, placement.position);
    const Reply angle = asker.angle(
        {.message = "ui.prompt.insert.angle", .standard = L"0", .base = placement.position, .optional = true});
    placement.rotation = angle.isEnter() ? 0.0 : angle.number;
    std::vector<std::pair<std::wstring, std::wstring>> texts;
    for (const AttributeQuestion &question : questionsOf(source.file ? source.file->modelSpace() : *source.block)) {
        const Reply reply = asker.attribute(question.prompt, question.standard);
        texts.emplace_back(question.tag, reply.isEnter() ? question.standard : reply.text);
    }
    Drawing &drawing = asker.drawing();
    BlockRecord *definition = source.block;
    if (source.file) {
        const AcDbObjectId made = CZEMCDraw::insertBlockDefinition(nullptr, source.path.c_str());
        if (made.isNull())
            return Next::Revert; // the file went away meanwhile; the status line says so
        definition = static_cast<BlockRecord *>(ObjectAccess::object(made));
    }
    const AcDbObjectId id =
        appendReference(drawing, *definition, placement, drawing.currentLayer(), drawing.modelSpace());
    AcDbEntity *entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
        return Next::Revert;
    entity->close();
    // By tag: between question and answer the file may have become another.
    for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*entity))) {
        const auto text = std::ranges::find(texts, attribute->tag(), &std::pair<std::wstring, std::wstring>::first);
        if (text == texts.end())
            continue;
        drawing.setAttributeText(*attribute, text->second);
        texts.erase(text); // of several with one tag each gets its own
    }
    asker.session().status(uiMessage("ui.insert.done", {definition->name()}));
    return Next::Commit;
}

} // namespace

void addInsertCommands(CommandStack &stack)
{
    stack.addWork(L"INSERT", 0, insertBlock);
}

} // namespace velmor
