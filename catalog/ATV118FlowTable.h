// The run-off coefficients of the ATV 118 worksheet, from the support file ATV118flow.cfg.
//
//   <ATVRoot> <Pad1> <Intenzitet val="100"> <KoefFlow percent="0" val="0.00"/> ...
//
// Pad1 to Pad4, in this order: the slope classes under 1 %, 1 to 4 %, 4 to 10 %, over 10 %. Intenzitet: one rain
// intensity of 100, 130, 180 and 225; others are passed over. KoefFlow: percent is the share of surfaces with run-off
// from 0 to 100 in steps of 10, val the coefficient with "," or "." before the fraction. The file is UTF-8.
#pragma once

#include "catalog/NumberText.h"

#include <array>

class CMarkup;

class CATV118FlowTable {
public:
    static constexpr int kSlopeClasses = 4;
    static constexpr int kPercentRows = 11;
    static constexpr int kIntensities = 4;

    /// Reads the file; a table without a file has no number in any cell.
    CATV118FlowTable();
    virtual ~CATV118FlowTable() = default;

    /// Reads the file along the support path, else in the support folder. True when it could be read, whatever stands
    /// in it: a damaged file counts as far as its elements can be recognised, and cells that the file does not fill, or
    /// not with a number, hold kMissingNumber. False leaves no number in any cell or, without any place to look at, the
    /// cells as they were. Nothing is told.
    bool LoadTable();

    /// The coefficient of a slope class (0 to 3), a rain intensity and a percentage. The percentage takes the step
    /// below it; at an intensity of the table the value is the cell's own, between two it lies on a straight line,
    /// outside of them it is that of the nearest. kMissingNumber for a class or a percentage that the table does not
    /// have. With one end missing, the line from the missing number is what comes out.
    double GetCoefficient(int nSlopeClass, double intensity, double percent) const;

private:
    void ReadSlopeClass(CMarkup &document, int nSlopeClass);
    void ReadIntensity(CMarkup &document, int nSlopeClass, int nColumn);
    double &Cell(int nSlopeClass, int nRow, int nColumn)
    {
        return m_cells[static_cast<std::size_t>((nSlopeClass * kPercentRows + nRow) * kIntensities + nColumn)];
    }
    double CellAt(int nSlopeClass, int nRow, int nColumn) const
    {
        return m_cells[static_cast<std::size_t>((nSlopeClass * kPercentRows + nRow) * kIntensities + nColumn)];
    }
    std::array<double, kSlopeClasses * kPercentRows * kIntensities> m_cells;
};
