// Texts of the overview: numbered messages with what is filled in, and numbers as all dialogs write them.
#pragma once

#include "contracts/CoreServices.h"

#include <QString>

#include <string>

namespace OverviewMessage {
enum : unsigned {
    kCloseText = 235,
    kTypeCatchment = 1936,
    kTypeHouse = 1995,
    kTypeIndustry = 1996,
    kHide = 4582,
    kWaitForKey = 50200,
    kTitle = 60300,
    kNetworkName,
    kFindingsName,
    kColumnName,
    kColumnLength,
    kColumnFrom,
    kColumnTo,
    kColumnType,
    kColumnHectares,
    kColumnShare,
    kColumnCoefficient,
    kColumnNote,
    kOutfall,
    kEndWithoutNode,
    kRing,
    kBranch,
    kAreasWithoutSection,
    kSectionCount,
    kUnknownLengths,
    kUpstreamElsewhere,
    kInLoop,
    kNoArea,
    kExpandAll,
    kCollapseAll,
    kCheckAll,
    kCheckNone,
    kCheckRow,
    kZoom,
    kNoNetwork,
    kSharesWhole,
    kSharesNotWhole,
    kNoAreas,
    kAllDrain,
    kSomeDrainNothing,
    kFindingShares,
    kFindingNoArea,
    kFindingSplits,
    kFindingLoops,
    kFindingNoOutfall,
    kShareOf,
    kNameEmpty,
    kNameControl,
    kNameTooLong,
    kNameOfArea,
    kNameOfSection,
    kNameOfNode,
    kNotRenamed,
    kUnnamed,
    kHint,
    kSharesAddUpTo,
    kExpandTip,
    kCollapseTip,
    kCheckAllTip,
    kCheckNoneTip,
    kCheckRowTip,
    kZoomTip,
    kColumnDrains,
    kFindingUnknown,
    kLastMessage = kFindingUnknown,
};
} // namespace OverviewMessage

inline QString ToQString(const std::wstring &text)
{
    return QString::fromStdWString(text);
}

inline QString Msg(unsigned number)
{
    return ToQString(ZEMGis::CModuleConfiguration::Instance()->GetMsg(number));
}

/// The values take the places of %1, %2.
template <class... Texts>
QString Msg(unsigned number, const Texts &...texts)
{
    return Msg(number).arg(texts...);
}

inline constexpr int kLengthDecimals = 2, kAreaDecimals = 4, kShareDecimals = 4, kCoefficientDecimals = 4;

inline QString NumberText(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

/// The same of a number that may be unknown, which is below 0.
inline QString KnownNumberText(double value, int decimals)
{
    return value < 0.0 ? QStringLiteral("?") : NumberText(value, decimals);
}

/// A name, or a word for the want of one.
inline QString NamedOrNot(const std::wstring &name)
{
    return name.empty() ? Msg(OverviewMessage::kUnnamed) : ToQString(name);
}
