// What the parameter fields show for several areas at once. No widgets, no drawing.
#pragma once

/// Sums up the areas in view, in their order.
///
/// A parameter counts only where the area's type has it: the flow coefficient with the bit of a catchment, the density
/// of population with that of a house. It shows the last area's value as long as none differs from the one before by
/// more than 0.001; a value of 0 before never counts as a difference.
class CParametersOfMany {
public:
    /// No area had the bit.
    static constexpr double kNone = -1.0;
    /// Areas differ.
    static constexpr double kMixed = -2.0;

    /// typeMask as the contract has it, area in hectares.
    void Add(int typeMask, double area, double coefficient, double population);
    /// An area that isn't there any more, yet counts in the number.
    void AddMissing() { ++m_nCount; }

    int Count() const { return m_nCount; }
    double Area() const { return m_area; }
    /// Below 0 there is no value to show.
    double Coefficient() const { return m_coefficient; }
    double Population() const { return m_population; }

private:
    int m_nCount = 0;
    double m_area = 0.0;
    double m_coefficient = kNone;
    double m_population = kNone;
};
