// The tags of entities that were made, in the version of their drawing.
//
// R12 has no light-weight polylines, ellipses, splines, paragraphs and hatches: there they become old polylines, lines
// of text, and a reference to an anonymous block with the pattern's lines.
#pragma once

#include "host/drawing/dxf/LayersOfFile.h"
#include "host/drawing/dxf/TagWriter.h"
#include "host/drawing/dxf/Tags.h"

#include <span>

namespace velmor::dxf {

class EntityWriter {
public:
    /// Handles of parts that are nobody's objects (vertices, ends of sequences) are taken from nextHandle on; they may
    /// be others at the next save.
    EntityWriter(Drawing::Private &drawing, std::uint64_t &nextHandle)
        : d(drawing), f(drawing.file), m_layersOfFile(drawing), m_isR12(drawing.version <= "AC1009"),
          m_nextHandle(nextHandle)
    {
    }

    /// Tags of the entity, its vertices and attributes. Tags of anonymous blocks that R12 needs for it come into
    /// blocks.
    void write(std::string &out, AcDbEntity &entity, std::string &blocks);
    /// Tags of an attribute of a reference.
    void writeAttribute(std::string &out, AttributeEntity &attribute);
    void writeSequenceEnd(std::string &out, const AcDbEntity &owner);
    /// The line that names the extension dictionary of an object.
    static void writeExtension(TagWriter &w, std::uint64_t dictionary);
    /// What an object with data of ours has behind its own tags in R12; set by the owner of the data.
    std::function<std::string(const AcDbObject &)> extendedData;

private:
    std::optional<std::string> carriedTags(const AcDbEntity &entity, std::span<const Tag> tags) const;
    void writeFromShape(std::string &out, AcDbEntity &entity, std::string &blocks);
    void begin(TagWriter &w, const char *type, AcDbEntity &entity, bool isMain = true);
    void subclass(TagWriter &w, const char *name)
    {
        if (!m_isR12)
            w.tag(100, name);
    }
    void finish(TagWriter &w, const AcDbEntity &entity)
    {
        if (m_isR12 && extendedData)
            w.out() += extendedData(entity);
    }
    void writeLwPolyline(TagWriter &w, AcDbPolyline &entity);
    void writePolyline(TagWriter &w, AcDbEntity &entity, std::span<const AcDbPolyline::Vertex> vertices,
                       std::span<const AcGePoint3d> points, bool closed, double elevation, double width = 0.0);
    void writeFlattened(TagWriter &w, AcDbEntity &entity, const std::vector<AcGePoint3d> &points, bool closed);
    void writeEllipse(TagWriter &w, EllipseEntity &entity);
    void writeSpline(TagWriter &w, SplineEntity &entity);
    void writeText(TagWriter &w, TextEntity &entity);
    void writeParagraphs(TagWriter &w, MTextEntity &entity);
    void writeReference(TagWriter &w, AcDbBlockReference &entity);
    void writeHatch(TagWriter &w, AcDbHatch &entity);
    void writeHatchAsBlock(TagWriter &w, AcDbHatch &entity, std::string &blocks);
    void textBody(TagWriter &w, const TextShape &shape);

    Drawing::Private &d;
    const FileText &f;
    LayersOfFile m_layersOfFile;
    bool m_isR12;
    std::uint64_t &m_nextHandle;
    std::size_t m_anonymous = 0;
};

} // namespace velmor::dxf
