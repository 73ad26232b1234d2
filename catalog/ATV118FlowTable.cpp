#include "catalog/ATV118FlowTable.h"

#include "catalog/Markup.h"
#include "contracts/CoreServices.h"

#include <algorithm>

namespace {

constexpr wchar_t kFileName[] = L"ATV118flow.cfg";
/// A file that can't be read leaves the document as it was; one that is only damaged does not.
constexpr wchar_t kUnread[] = L"<Unread/>";
constexpr const wchar_t *kClassNames[] = {L"Pad1", L"Pad2", L"Pad3", L"Pad4"};
constexpr std::array<int, CATV118FlowTable::kIntensities> kColumns = {100, 130, 180, 225};

/// Empty when there is no place to look at.
std::wstring TablePath()
{
    std::wstring path;
    if (acedFindFile(kFileName, path) == RTNORM)
        return path;
    path = ZEMGis::CModuleConfiguration::Instance()->GetPath(L"Support");
    return path.empty() ? path : path + kFileName;
}

} // namespace

CATV118FlowTable::CATV118FlowTable()
{
    m_cells.fill(kMissingNumber);
    LoadTable();
}

bool CATV118FlowTable::LoadTable()
{
    const std::wstring path = TablePath();
    if (path.empty())
        return false;
    m_cells.fill(kMissingNumber);
    CMarkup document;
    document.SetText(kUnread);
    if (!document.Load(path) && document.GetText() == kUnread)
        return false;
    document.Rewind();
    if (document.FindElement(L"ATVRoot")) {
        document.EnterChild();
        for (int nClass = 0; nClass < kSlopeClasses; ++nClass)
            if (document.FindElement(kClassNames[nClass]))
                ReadSlopeClass(document, nClass);
    }
    return true;
}

void CATV118FlowTable::ReadSlopeClass(CMarkup &document, int nSlopeClass)
{
    document.EnterChild();
    while (document.FindElement(L"Intenzitet")) {
        const auto column = std::ranges::find(kColumns, ReadInt(document.GetAttribute(L"val")));
        document.EnterChild();
        if (column != kColumns.end())
            ReadIntensity(document, nSlopeClass, static_cast<int>(column - kColumns.begin()));
        document.LeaveElement();
    }
    document.LeaveElement();
}

void CATV118FlowTable::ReadIntensity(CMarkup &document, int nSlopeClass, int nColumn)
{
    while (document.FindElement(L"KoefFlow")) {
        const int nRow = ReadInt(document.GetAttribute(L"percent")) / 10;
        if (nRow >= 0 && nRow < kPercentRows)
            Cell(nSlopeClass, nRow, nColumn) = ParseNumber(document.GetAttribute(L"val"));
    }
}

double CATV118FlowTable::GetCoefficient(int nSlopeClass, double intensity, double percent) const
{
    if (nSlopeClass < 0 || nSlopeClass >= kSlopeClasses)
        return kMissingNumber;
    const double row = percent / 10.0;
    if (!(row > -1.0 && row < kPercentRows))
        return kMissingNumber;
    const int nRow = static_cast<int>(row);
    // The columns at or around the intensity; both the same outside of them.
    int nRight = 0;
    while (nRight < kIntensities && !(intensity <= kColumns[static_cast<std::size_t>(nRight)]))
        ++nRight;
    const int nLeft = std::max(nRight - 1, 0);
    nRight = std::min(nRight, kIntensities - 1);
    const double x0 = kColumns[static_cast<std::size_t>(nLeft)], x1 = kColumns[static_cast<std::size_t>(nRight)];
    const double y0 = CellAt(nSlopeClass, nRow, nLeft), y1 = CellAt(nSlopeClass, nRow, nRight);
    if (y0 == y1)
        return y0;
    if (intensity == x1)
        return y1; // the cell itself: the line ends beside it by a rounding
    return (y1 - y0) / (x1 - x0) * (intensity - x0) + y0;
}
