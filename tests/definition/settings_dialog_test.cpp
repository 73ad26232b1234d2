// What a person sets in the host's settings dialog, and what the definition dialog and its marks make of it.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"
#include "definition/ReadableColour.h"
#include "host/editor/dialogs/HostDialogs.h"

#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QSpinBox>

using namespace ZEMGis;
using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using velmor::Journal;

namespace {

class SettingsRoad : public DefinitionDialogTest {
protected:
    /// A person opens the settings of a group, works them and ends them by a button.
    void settings(const wchar_t *group, int button, const std::function<void(CAdUiBaseDialog &)> &work)
    {
        m_session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
            work(dialog);
            dialog.Control<QAbstractButton>(button)->click();
        });
        CModuleConfiguration::Instance()->ShowGSDialog(group);
        m_session.setDialogDriver(nullptr);
    }
    static void setHatchAndName(CAdUiBaseDialog &dialog, int colour, double scale, const QString &prefix)
    {
        dialog.Control<QSpinBox>(settingControl("CATCH_HATCH_COLOR_TEMP"))->setValue(colour);
        dialog.Control<QDoubleSpinBox>(settingControl("CATCH_HATCH_SCALE"))->setValue(scale);
        auto *edit = dialog.Control<QLineEdit>(settingControl("CATCH_NAME_PREFIX"));
        edit->clear();
        for (const QChar letter : prefix) {
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
            QApplication::sendEvent(edit, &key);
        }
    }
    /// The next definition dialog has that swatch, proposes such names and hatches so.
    void expectHatchAndName(int colour, double scale, const std::string &prefix)
    {
        const auto before = hatches().size();
        const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
        run([&](CDialogUnderTest &dialog) {
            EXPECT_EQ(dialog.swatch(333), acedGetRGB(colour));
            select(dialog, {L"D1"});
            EXPECT_THAT(dialog.text(329).toStdString(), StartsWith(prefix));
            dialog.addMainRow(box, 100);
            dialog.selectRows({0});
            ASSERT_THAT(hatches(), SizeIs(before + 1));
            const CZEMCEntityPtr entity(hatches().back(), AcDb::kForRead);
            const auto &hatch = static_cast<const AcDbHatch &>(*entity.get());
            EXPECT_DOUBLE_EQ(hatch.patternScale(), scale);
            EXPECT_EQ(hatch.colorIndex(), colour);
        });
    }
    /// Colours in which the sections are drawn when they are selected.
    std::vector<std::string> highlightColours()
    {
        std::vector<std::string> colours;
        run([&](CDialogUnderTest &dialog) {
            Journal::instance().clear();
            Journal::instance().setRecording(true);
            select(dialog, {L"D1", L"D2"});
            Journal::instance().setRecording(false);
            for (const auto &entry : entriesOf("CEntity::DrawTemporary"))
                colours.push_back(entry.arguments.at(1));
        });
        return colours;
    }
};

TEST_F(SettingsRoad, SwatchNextNameAndNextHatchFollowWhatWasSetWithOk)
{
    settings(L"TCE1", velmor::kControlOk,
             [](CAdUiBaseDialog &dialog) { setHatchAndName(dialog, 6, 2.5, QStringLiteral("P-")); });
    expectHatchAndName(6, 2.5, "P-");
}

TEST_F(SettingsRoad, CancelLeavesSwatchNextNameAndNextHatchAsTheyWere)
{
    settings(L"TCE1", velmor::kControlOk,
             [](CAdUiBaseDialog &dialog) { setHatchAndName(dialog, 6, 2.5, QStringLiteral("P-")); });
    settings(L"TCE1", velmor::kControlCancel,
             [](CAdUiBaseDialog &dialog) { setHatchAndName(dialog, 1, 9.0, QStringLiteral("Q-")); });
    expectHatchAndName(6, 2.5, "P-");
}

TEST_F(SettingsRoad, TheNextHighlightHasTheColourThatWasSet)
{
    for (const int colour : {3, 5}) {
        for (const wchar_t *group : {L"TCE1", L"TCE2"}) {
            const int wanted = group == std::wstring_view(L"TCE1") ? colour : colour + 10;
            settings(group, velmor::kControlOk, [&](CAdUiBaseDialog &dialog) {
                dialog.Control<QSpinBox>(settingControl("HIGHLIGHT_COLOR"))->setValue(wanted);
            });
            const auto drawn = highlightColours();
            EXPECT_THAT(drawn, Not(IsEmpty()));
            EXPECT_THAT(drawn, Each(std::to_string(wanted)));
        }
    }
}

} // namespace
