// What several tests of the definition dialog do alike.
#pragma once

#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Settings.h"
#include "tests/definition/dialog_fixture.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Names of the sections that an area drains to, each with its share, in the area's order.
inline std::vector<std::pair<std::wstring, double>> sharesOf(const ZEMGis::Sewage::CCatchmentArea &area)
{
    ZEMGis::Sewage::SectionShares pairs;
    area.GetConnectedSections(pairs);
    std::vector<std::pair<std::wstring, double>> shares;
    for (const auto &[section, share] : pairs)
        shares.emplace_back(section->GetName(), share);
    return shares;
}

/// Texts of a combo's entries.
inline QStringList entryTexts(const CDialogUnderTest &dialog, int combo)
{
    const auto *box = dialog.Control<QComboBox>(combo);
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    return texts;
}

/// The number of a setting's control in the settings dialog; -1 when there is no such key.
inline int settingControl(std::string_view key)
{
    int row = 0;
    for (const velmor::SettingSpec &spec : velmor::settingTable()) {
        if (spec.key == key)
            return velmor::kControlSettings + row;
        ++row;
    }
    return -1;
}

/// Members of the one selection set that the host has.
inline AcDbObjectIdArray membersOfTheOnlySet(velmor::Session &session)
{
    EXPECT_EQ(session.selectionSets().size(), 1u);
    constexpr std::int64_t kSearched = 100;
    for (std::int64_t id = 0; id < kSearched; ++id) {
        if (const velmor::SelectionSet *set = session.selectionSets().find(id))
            return set->members();
    }
    ADD_FAILURE() << "no set";
    return {};
}
