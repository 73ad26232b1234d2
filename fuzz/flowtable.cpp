// The flow table: whatever stands in the file, the table is filled within its bounds and answers every question.
#include "catalog/ATV118FlowTable.h"
#include "fuzz/CatalogContract.h"
#include "fuzz/Require.h"

#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    fuzz::file.hold(bytes);
    CATV118FlowTable table;
    require(table.LoadTable());
    for (int slope = -1; slope <= 4; ++slope) {
        for (int percent = -10; percent <= 110; percent += 10) {
            const bool outside = slope < 0 || slope > 3 || percent < 0 || percent > 100;
            const double lowest = table.GetCoefficient(slope, 100, percent);
            require(!std::isnan(lowest) && (!outside || lowest == kMissingNumber));
            require(table.GetCoefficient(slope, 50, percent) == lowest);
            require(table.GetCoefficient(slope, 300, percent) == table.GetCoefficient(slope, 1e9, percent));
            if (percent < 0)
                continue; // a negative percentage is cut toward zero
            for (const double intensity : {115.0, 130.0, 179.0, 225.0})
                require(table.GetCoefficient(slope, intensity, percent) ==
                        table.GetCoefficient(slope, intensity, percent + 9));
        }
    }

    std::wstring text;
    for (const char c : bytes)
        text += static_cast<wchar_t>(static_cast<unsigned char>(c));
    const double number = ParseNumber(text);
    require(!std::isnan(number));
    const TextNumber start = ReadDouble(text);
    require(start.length <= text.size() && (start.length > 0 || start.value == 0.0));
    ReadInt(text);
    return 0;
}
