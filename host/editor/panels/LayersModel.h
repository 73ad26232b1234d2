// The layers of a drawing as rows, changed through a callback, so that each change is a step of its own.
#pragma once

#include "host/drawing/Drawing.h"
#include "host/editor/panels/PanelModel.h"

#include <functional>

namespace velmor {

class ChangeLog;

/// How many entities of a drawing lie on each layer, in model space, paper spaces and block definitions. Made by
/// Drawing::component; kept up with the drawing: what is added or erased is counted as it comes, changes of shape and
/// data count for nothing, and only a change that may have been one of layer lets the next question count anew.
class LayerCounts final : private DrawingObserver {
public:
    explicit LayerCounts(Drawing &drawing);
    ~LayerCounts() override;
    LayerCounts(const LayerCounts &) = delete;
    LayerCounts &operator=(const LayerCounts &) = delete;

    std::size_t of(std::size_t layer);

private:
    void entityAppended(AcDbEntity &entity) override;
    void entityModified(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool erased) override;
    void shapeChanging(AcDbEntity &entity) override { note(entity); }
    void dataChanging(AcDbObject &object, const std::string &key) override;
    void note(const AcDbEntity &entity);
    void count();
    std::size_t &at(std::size_t layer);

    Drawing &m_drawing;
    const ChangeLog &m_log;
    std::vector<std::size_t> m_counts;
    bool m_stale = true;
    const AcDbEntity *m_before = nullptr; ///< whose change was told beforehand
    std::size_t m_layerBefore = 0;
};

class LayersModel final : public PanelModel {
    Q_OBJECT
public:
    enum Column { Current, Name, On, Frozen, Locked, Color, Entities, ColumnCount };
    /// Does a change of the drawing as a step; false when it could not be done. name: of the step's text.
    using Change = std::function<bool(const char *name, const std::function<void(Drawing &)> &)>;

    explicit LayersModel(Change change, QObject *parent = nullptr);
    void setDrawing(Drawing *drawing);
    /// Takes up what changed since the last call: rows that differ are told, new ones come at the end.
    void bringUpToDate();

    /// Whether a column holds nothing but a check box.
    static bool isBox(int column) { return column == Current || column == On || column == Frozen || column == Locked; }

    /// Index of the layer of a row.
    std::size_t layerOf(int row) const { return m_rows[static_cast<std::size_t>(row)].index; }
    int rowOf(std::size_t layer) const; ///< -1 for none
    const Layer &layer(int row) const { return m_rows[static_cast<std::size_t>(row)].layer; }
    bool isCurrent(int row) const { return m_rows[static_cast<std::size_t>(row)].current; }

    /// The layer that entities go to from now on.
    bool makeCurrent(int row);
    bool setColor(int row, int color);
    /// Why a name can't be that of a new layer: name of a text with %1 for the name; null when it can.
    const char *refusalOf(const QString &name) const;
    /// Makes a layer; its row, or -1.
    int add(const QString &name);
    /// Gives the layer another name; a name that can't be is told by refused.
    bool rename(int row, const QString &name);

    bool isLess(int column, int a, int b) const override;
    bool matches(int row, const QString &text) const override;
    const char *caption(int column) const override;
    const char *explanation(int column) const override;
    const char *symbol(int column) const override;
    bool isNumber(int column) const override { return column == Entities; }
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    /// A typed name can't be; one line for the status.
    void refused(const QString &why);

protected:
    int rows() const override { return static_cast<int>(m_rows.size()); }
    int columns() const override { return ColumnCount; }
    QString text(int row, int column) const override;

private:
    struct Row {
        std::size_t index = 0;
        Layer layer;
        bool current = false;
        std::size_t entities = 0;
        bool operator==(const Row &other) const
        {
            return index == other.index && layer.name == other.layer.name && layer.color == other.layer.color &&
                   layer.on == other.layer.on && layer.frozen == other.layer.frozen &&
                   layer.locked == other.layer.locked && current == other.current && entities == other.entities;
        }
    };
    std::vector<Row> read() const;
    bool changeLayer(int row, const char *name, const std::function<void(Layer &)> &change);

    Change m_change;
    Drawing *m_drawing = nullptr;
    std::uint64_t m_revision = 0;
    std::vector<Row> m_rows;
};

} // namespace velmor
