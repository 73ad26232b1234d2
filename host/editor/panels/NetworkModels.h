// The network of a drawing as tables: sections, nodes, and what is wrong with them.
#pragma once

#include "host/editor/panels/PanelModel.h"
#include "host/network/NetworkChecks.h"

#include <array>
#include <optional>

namespace velmor {

/// Notes what changed in the network of a drawing: an entity that carries its data is added, changed or erased, or gets
/// or loses such data. What else changes in the drawing costs next to nothing.
class NetworkWatch final : private DrawingObserver {
public:
    NetworkWatch() = default;
    ~NetworkWatch() override { setDrawing(nullptr); }
    NetworkWatch(const NetworkWatch &) = delete;
    NetworkWatch &operator=(const NetworkWatch &) = delete;

    void setDrawing(Drawing *drawing);
    Drawing *drawing() const { return m_drawing; }
    /// Grows with every change.
    std::uint64_t revision() const { return m_revision; }
    /// The sections and nodes that changed since a revision, each of them in itself alone: its place, its shape, a
    /// section's name. Nothing when more than that changed (what comes or goes, how things hang together, the name of a
    /// node, that sections show), or too much to tell one by one.
    std::optional<std::vector<AcDbEntity *>> changedSince(std::uint64_t revision) const;

private:
    void entityAppended(AcDbEntity &entity) override;
    void entityModified(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool) override { entityAppended(entity); }
    void dataChanging(AcDbObject &object, const std::string &key) override;
    void shapeChanging(AcDbEntity &entity) override { m_shapeBefore = &entity; }
    bool carriesNetwork(const AcDbEntity &entity) const;
    void noteMore();

    struct DataBefore {
        const AcDbObject *object;
        std::optional<DataItems> section, node;
    };
    Drawing *m_drawing = nullptr;
    std::uint64_t m_revision = 1;
    std::uint64_t m_lastWhole = 1;             ///< the last revision in which more changed than single ones
    std::vector<AcDbEntity *> m_single;        ///< those of the revisions behind it
    const AcDbEntity *m_shapeBefore = nullptr; ///< whose change of shape was told beforehand
    std::optional<DataBefore> m_dataBefore;    ///< of the object whose data are about to change
};

/// A table over the network. Each row stands for an entity.
class NetworkModel : public PanelModel {
    Q_OBJECT
public:
    explicit NetworkModel(const NetworkWatch &watch, QObject *parent = nullptr);
    /// The watch has another drawing.
    void reset();
    /// Takes up what changed since the last call.
    void bringUpToDate();
    virtual AcDbObjectId entityOf(int row) const = 0;
    /// What to show of the rows.
    virtual Extents extentsOf(const QList<int> &rows) const;

protected:
    virtual void clear() = 0;
    virtual void take(Drawing &drawing) = 0;
    /// Takes up a section or a node that changed in itself alone; false when that is not enough.
    virtual bool takeOne(Drawing &drawing, AcDbEntity &entity) = 0;
    /// Tells that a row is another now.
    void rowChanged(int row) { Q_EMIT dataChanged(index(row, 0), index(row, columns() - 1)); }

private:
    const NetworkWatch &m_watch;
    std::uint64_t m_taken = 0;
};

class SectionsModel final : public NetworkModel {
    Q_OBJECT
public:
    enum Column { Name, From, To, Length, ColumnCount };
    using NetworkModel::NetworkModel;
    AcDbObjectId entityOf(int row) const override { return at(row).entity; }

    bool isLess(int column, int a, int b) const override;
    bool matches(int row, const QString &text) const override;
    const char *caption(int column) const override;
    bool isNumber(int column) const override { return column == Length; }

protected:
    int rows() const override { return static_cast<int>(m_rows.size()); }
    int columns() const override { return ColumnCount; }
    QString text(int row, int column) const override;
    void clear() override { m_rows.clear(); }
    void take(Drawing &drawing) override;
    bool takeOne(Drawing &drawing, AcDbEntity &entity) override;

private:
    struct Row {
        AcDbObjectId entity;
        QString name, from, to;
        double length = 0.0;
        bool operator==(const Row &) const = default;
    };
    const Row &at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    std::vector<Row> m_rows;
};

class NodesModel final : public NetworkModel {
    Q_OBJECT
public:
    enum Column { Name, In, Out, X, Y, ColumnCount };
    using NetworkModel::NetworkModel;
    AcDbObjectId entityOf(int row) const override { return at(row).entity; }

    bool isLess(int column, int a, int b) const override;
    bool matches(int row, const QString &text) const override;
    const char *caption(int column) const override;
    const char *explanation(int column) const override;
    bool isNumber(int column) const override { return column != Name; }

protected:
    int rows() const override { return static_cast<int>(m_rows.size()); }
    int columns() const override { return ColumnCount; }
    QString text(int row, int column) const override;
    void clear() override { m_rows.clear(); }
    void take(Drawing &drawing) override;
    bool takeOne(Drawing &drawing, AcDbEntity &entity) override;

private:
    struct Row {
        AcDbObjectId entity;
        QString name;
        int in = 0, out = 0; ///< sections that end and that begin here
        double x = 0.0, y = 0.0;
        bool operator==(const Row &) const = default;
    };
    const Row &at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    std::vector<Row> m_rows;
};

class ChecksModel final : public NetworkModel {
    Q_OBJECT
public:
    enum Column { Trouble, Name, Place, ColumnCount };
    static constexpr std::size_t kTroubles = 3;
    using NetworkModel::NetworkModel;
    AcDbObjectId entityOf(int row) const override { return at(row).entity; }
    /// The places, which for the end of a long section say more than the whole of it.
    Extents extentsOf(const QList<int> &rows) const override;
    std::size_t count(NetworkTrouble trouble) const { return m_counts[static_cast<std::size_t>(trouble)]; }
    std::size_t count() const { return m_rows.size(); }
    /// Shows rows of one kind of trouble only; nothing shows all.
    void setShown(std::optional<NetworkTrouble> trouble) { m_shown = trouble; }
    const NetworkFinding &finding(int row) const { return at(row); }
    /// The caption of a kind of trouble.
    static const char *nameOf(NetworkTrouble trouble);

    bool isShown(int row) const override { return !m_shown || at(row).trouble == *m_shown; }
    bool isLess(int column, int a, int b) const override;
    bool matches(int row, const QString &text) const override;
    const char *caption(int column) const override;

protected:
    int rows() const override { return static_cast<int>(m_rows.size()); }
    int columns() const override { return ColumnCount; }
    QString text(int row, int column) const override;
    void clear() override;
    void take(Drawing &drawing) override;
    bool takeOne(Drawing &drawing, AcDbEntity &entity) override;

private:
    const NetworkFinding &at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    std::vector<NetworkFinding> m_rows;
    std::array<std::size_t, kTroubles> m_counts{};
    std::optional<NetworkTrouble> m_shown;
};

} // namespace velmor
