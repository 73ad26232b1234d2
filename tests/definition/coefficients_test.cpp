// Where the run-off coefficient comes from: the terrain types, and the table of ATV 118.
#include "tests/definition/dialog_tools.h"

#include "controls/WideText.h"

#include <fstream>

using namespace ZEMGis;
using testing::ElementsAre;

namespace {

class Coefficients : public DefinitionDialogTest {
protected:
    Coefficients()
    {
        write("ZEMXTerrainType.cfg", "<Terrains><Terrain name=\"Lawn\" flow=\"0.1000\"/>"
                                     "<Terrain name=\"Roof\" flow=\"0.9000\"/></Terrains>");
        // Each cell tells its place: class, percentage step, column.
        std::string table = "<ATVRoot>";
        for (int slope = 1; slope <= 4; ++slope) {
            table += "<Pad" + std::to_string(slope) + ">";
            int column = 0;
            for (const int intensity : {100, 130, 180, 225}) {
                table += "<Intenzitet val=\"" + std::to_string(intensity) + "\">";
                for (int step = 0; step <= 10; ++step)
                    table += "<KoefFlow percent=\"" + std::to_string(step * 10) + "\" val=\"" +
                             std::to_string(slope * 100 + step) + "." + std::to_string(column) + "\"/>";
                table += "</Intenzitet>";
                ++column;
            }
            table += "</Pad" + std::to_string(slope) + ">";
        }
        write("ATV118flow.cfg", table + "</ATVRoot>");
    }
    void write(const char *name, const std::string &text)
    {
        std::filesystem::create_directories(m_userFolder / "support");
        std::ofstream(m_userFolder / "support" / name) << text;
    }
    /// A program that finds no file of that name, shipped ones included.
    void startWithoutSupportFiles()
    {
        std::filesystem::remove_all(m_userFolder / "support");
        const std::filesystem::path resources = m_userFolder / "resources";
        std::filesystem::create_directories(resources);
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        for (const char *folder : {"messages", "icons", "symbols"})
            std::filesystem::create_directory_symlink(
                std::filesystem::absolute(source ? source : ".") / "resources" / folder, resources / folder);
        velmor::Services::instance().start({.language = "hr"}, velmor::Paths({resources}, m_userFolder));
    }
    static void setIndex(CDialogUnderTest &dialog, int control, int index)
    {
        auto *combo = dialog.Control<QComboBox>(control);
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
    }
};

TEST_F(Coefficients, TerrainTypesStandInTheirComboInTheCataloguesOrderAndTheFirstIsChosen)
{
    run([](CDialogUnderTest &dialog) {
        EXPECT_EQ(entryTexts(dialog, 322), QStringList({"Roof", "Lawn"})); // a new drawing takes each entry in front
        EXPECT_EQ(dialog.Control<QComboBox>(322)->currentIndex(), 0);
        EXPECT_TRUE(dialog.isChecked(343));
        EXPECT_FALSE(dialog.isChecked(344));
    });
}

TEST_F(Coefficients, AtTheStartTheTablesCoefficientStandsThoughTheSourceIsTheTerrain)
{
    run([](CDialogUnderTest &dialog) {
        EXPECT_EQ(dialog.text(215), "100"); // class 1, 0 %, the column of 100: 100.0
        dialog.click(343);
        EXPECT_EQ(dialog.text(215), "0.9");
    });
}

TEST_F(Coefficients, ASelectionPutsTheTerrainsCoefficientInTheTablesPlace)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        EXPECT_EQ(dialog.text(215), "0.9");
    });
}

TEST_F(Coefficients, ATerrainTypeThatIsChosenGivesItsCoefficientWithoutTrailingZeros)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        setIndex(dialog, 322, 1);
        EXPECT_EQ(dialog.text(215), "0.1");
        setIndex(dialog, 322, 0);
        EXPECT_EQ(dialog.text(215), "0.9");
    });
}

TEST_F(Coefficients, WithoutATerrainTypeTheEditKeepsItsValue)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.Control<QComboBox>(322)->clear();
        dialog.type(215, "0.42");
        dialog.click(343);
        EXPECT_EQ(dialog.text(215), "0.42");
    });
}

TEST_F(Coefficients, WithoutASupportFileTheComboStaysEmptyEvenIfTheDrawingHasAList)
{
    run([](CDialogUnderTest &) {}); // the drawing gets its list
    startWithoutSupportFiles();
    run([](CDialogUnderTest &dialog) { EXPECT_EQ(entryTexts(dialog, 322), QStringList()); });
    EXPECT_TRUE(alerts().empty());
}

TEST_F(Coefficients, TheTableIsAskedForClassIntensityAndTenTimesTheIndex)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.click(344);
        EXPECT_EQ(dialog.text(215), "100");
        setIndex(dialog, 345, 2);
        EXPECT_EQ(dialog.text(215), "300");
        setIndex(dialog, 347, 3);
        EXPECT_EQ(dialog.text(215), "303"); // class 2, 100.0, 30.0
        dialog.type(222, "225");
        EXPECT_EQ(dialog.text(215), "303.3");
        dialog.type(222, "155"); // between 130 and 180
        EXPECT_EQ(dialog.text(215), "303.15");
        setIndex(dialog, 347, 10);
        EXPECT_EQ(dialog.text(215), "310.15");
        setIndex(dialog, 345, 0);
        EXPECT_EQ(dialog.text(215), "110.15");
    });
}

TEST_F(Coefficients, EveryClassAndEveryPercentageReachesItsCell)
{
    run([](CDialogUnderTest &dialog) {
        dialog.click(344);
        for (int slope = 0; slope < 4; ++slope) {
            setIndex(dialog, 345, slope);
            for (int step = 0; step <= 10; ++step) {
                setIndex(dialog, 347, step);
                EXPECT_EQ(dialog.text(215), QString::number((slope + 1) * 100 + step));
            }
        }
    });
}

TEST_F(Coefficients, AnEmptyIntensityCountsAsZero)
{
    run([](CDialogUnderTest &dialog) {
        dialog.click(344);
        dialog.type(222, "225");
        dialog.type(222, "");
        EXPECT_EQ(dialog.text(215), "100"); // below the first column its value holds
    });
}

TEST_F(Coefficients, WithoutATableTheMarkerGoesThroughTheEditLikeAnyNumber)
{
    startWithoutSupportFiles();
    run([](CDialogUnderTest &dialog) { EXPECT_EQ(dialog.text(215), "-1000"); });
    EXPECT_TRUE(alerts().empty());
}

TEST_F(Coefficients, EachSourceTurnsItsOwnControlsOnAndTheOthersOff)
{
    run([](CDialogUnderTest &dialog) {
        const auto expectOn = [&](bool table) {
            for (const int control : {325, 349, 348, 345, 222, 347})
                EXPECT_EQ(dialog.isEnabled(control), table) << control;
            for (const int control : {322, 246})
                EXPECT_EQ(dialog.isEnabled(control), !table) << control;
        };
        expectOn(false);
        dialog.click(344);
        expectOn(true);
        EXPECT_FALSE(dialog.isChecked(343));
        dialog.click(343);
        expectOn(false);
        EXPECT_FALSE(dialog.isChecked(344));
    });
}

TEST_F(Coefficients, TheSourceThatWasChosenOutlivesMethodsAndSelections)
{
    run([&](CDialogUnderTest &dialog) {
        dialog.click(344);
        setIndex(dialog, 347, 5);
        select(dialog, {L"D1"});
        EXPECT_EQ(dialog.text(215), "105");
        for (const int method : {0, 2, 3, 1}) {
            dialog.type(215, "0.5");
            dialog.choose(257, method);
            EXPECT_EQ(dialog.text(215), "105") << method;
        }
    });
}

TEST_F(Coefficients, WhatIsTypedOverIsWhatIsSaved)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        EXPECT_EQ(dialog.text(215), "0.9");
        dialog.type(215, "0.55");
        dialog.choose(257, 2);
        EXPECT_EQ(dialog.text(215), "0.9"); // a method asks the source again
        dialog.type(215, "0.55");
        dialog.click(290);
    });
    ASSERT_FALSE(areas().empty());
    EXPECT_EQ(static_cast<double>(property(*areas().front(), L"CA_COEFF")), 0.55);
}

} // namespace
