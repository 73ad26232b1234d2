// What is selected, in words: kind, layer, colour, handle, geometry, and the data that it carries.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/panels/PanelModel.h"

#include <functional>
#include <optional>

namespace velmor {

/// One line: a caption and a value. A caption is the name of a text, or stands for itself (the tag of an attribute).
struct PropertyRow {
    std::string caption;
    QString value;
    bool isText = false; ///< the caption stands for itself
    bool operator==(const PropertyRow &) const = default;
};
using PropertyRows = std::vector<PropertyRow>;

/// Adds lines about the data of an entity that other parts of the host attach, a catchment area say.
using PropertySource = std::function<void(Drawing &drawing, AcDbEntity &entity, PropertyRows &rows)>;
struct PropertySourceRegistration {
    explicit PropertySourceRegistration(PropertySource source);
};

/// Lines of one entity behind kind, layer, colour and handle.
PropertyRows geometryOf(const AcDbEntity &entity);
/// Name of the text for a kind of entity.
const char *kindName(EntityKind kind);

class PropertiesModel final : public PanelModel {
    Q_OBJECT
public:
    enum Column { Property, Value, ColumnCount };
    /// Does a change of the drawing as a step; false when it could not be done. name: of the step's text.
    using Change = std::function<bool(const char *name, const std::function<void(Drawing &)> &)>;

    explicit PropertiesModel(Change change, QObject *parent = nullptr);
    /// What is shown from now on; ids that name no living entity are passed over.
    void show(Drawing *drawing, const AcDbObjectIdArray &ids);
    std::size_t count() const { return m_entities.size(); }

    /// Rows of the layer and of the colour; -1 when nothing is selected.
    int layerRow() const { return m_layerRow; }
    int colorRow() const { return m_colorRow; }
    /// The layer (colour index) that all have; nothing when they differ or nothing is selected.
    std::optional<std::size_t> commonLayer() const { return m_layer; }
    std::optional<int> commonColor() const { return m_color; }
    /// Entities on locked layers stay as they are, and are told as left out.
    bool setLayer(std::size_t layer);
    /// 1 to 255, or 256 for the layer's.
    bool setColor(int color);

    bool isLess(int column, int a, int b) const override;
    bool matches(int row, const QString &text) const override;
    const char *caption(int column) const override;

Q_SIGNALS:
    /// So many entities were not changed, since their layers are locked.
    void leftOut(std::size_t count);

protected:
    int rows() const override { return static_cast<int>(m_rows.size()); }
    int columns() const override { return ColumnCount; }
    QString text(int row, int column) const override;

private:
    PropertyRows read();
    void addSums(PropertyRows &rows) const;
    bool changeUnlocked(const char *name, const std::function<void(Drawing &, AcDbEntity &)> &change);

    Change m_change;
    Drawing *m_drawing = nullptr;
    std::vector<AcDbEntity *> m_entities;
    PropertyRows m_rows;
    int m_layerRow = -1, m_colorRow = -1;
    std::optional<std::size_t> m_layer;
    std::optional<int> m_color;
};

} // namespace velmor
