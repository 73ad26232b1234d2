// The catchment areas of a drawing as a table, with sums for each type.
#pragma once

#include "host/editor/panels/PanelModel.h"
#include "host/sewage/AreaTable.h"

#include <array>

namespace velmor {

/// Number and hectares of the areas of one type; an area of several types counts in each of them.
struct TypeSum {
    int areas = 0;
    double gross = 0.0, net = 0.0;
    bool operator==(const TypeSum &) const = default;
};
/// Sums by type (catchment, house, industrial), and behind them that of all areas, each counted once.
struct AreaSums {
    std::array<TypeSum, 3> byType;
    TypeSum all;
};

/// "catchment, household", in the program's language.
QString areaTypeWords(int type);

class AreasModel final : public PanelModel, private DrawingObserver {
    Q_OBJECT
public:
    enum Column { Name, Type, Kind, Gross, Net, Coefficient, Density, Sections, ColumnCount };

    explicit AreasModel(QObject *parent = nullptr) : PanelModel(parent) {}
    ~AreasModel() override { setDrawing(nullptr); }
    void setDrawing(Drawing *drawing);
    /// Takes up what changed since the last call: nothing is read unless an area's or a section's entity changed.
    /// False then.
    bool bringUpToDate();

    const AreaRow &area(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    AreaSums sumsOf(const QList<int> &rows) const;

    bool isLess(int column, int a, int b) const override;
    bool matches(int row, const QString &text) const override;
    const char *caption(int column) const override;
    const char *explanation(int column) const override;
    bool isNumber(int column) const override { return column >= Gross && column <= Density; }

protected:
    int rows() const override { return static_cast<int>(m_rows.size()); }
    int columns() const override { return ColumnCount; }
    QString text(int row, int column) const override;

private:
    void entityAppended(AcDbEntity &entity) override { look(entity); }
    void entityModified(AcDbEntity &entity) override { look(entity); }
    void entityErased(AcDbEntity &entity, bool) override { look(entity); }
    void dataChanging(AcDbObject &object, const std::string &key) override;
    void look(const AcDbEntity &entity);

    Drawing *m_drawing = nullptr;
    bool m_stale = false;
    std::vector<AreaRow> m_rows;
};

} // namespace velmor
