// Every control, in every method, with every combination of types: enabled or not.
//
// The expectation is computed from a second writing of the tables as text, from both starting states (all controls
// off, all on), so that a row that leaves a control as it is shows too.
#include "tests/definition/dialog_fixture.h"

#include <map>
#include <set>
#include <sstream>

namespace {

using Enabling = DefinitionDialogTest;
using States = std::map<int, bool>;

/// "controls | method 0 | 1 | 2 | 3": + on, - off, = as it is, ? off while the list is empty.
constexpr const char *kMethods = R"(221 | ? | ? | - | +
290 | - | - | + | -
208 209 239 | + | + | - | -
323 326 | + | + | + | -
213 | - | - | - | +
301 | = | = | = | +
220 327 | - | - | - | +
268 | + | + | + | -
274 135 286 | + | + | + | -
207 363 | + | + | + | -
328 329 | + | + | - | -
244 322 | = | = | = | +
215 324 | = | = | = | +
)";

const std::set<int> kSelectionSweep{289, 257, 268, 207, 363, 259, 274, 135, 286, 208, 209, 239, 210,
                                    334, 335, 323, 301, 244, 324, 326, 213, 322, 215, 256, 336};

void put(States &states, std::initializer_list<int> controls, bool on)
{
    for (const int control : controls)
        states[control] = on;
}

void applyMethod(States &states, int method, bool listIsEmpty)
{
    std::istringstream rows(kMethods);
    for (std::string row; std::getline(rows, row);) {
        std::istringstream cells(row);
        std::vector<int> controls;
        std::string word;
        while (cells >> word && word != "|")
            controls.push_back(std::stoi(word));
        std::string mark;
        for (int column = 0; column <= method; ++column) {
            cells >> mark;
            cells >> word; // the bar
        }
        for (const int control : controls) {
            if (mark == "+")
                put(states, {control}, true);
            else if (mark == "-" || (mark == "?" && listIsEmpty))
                put(states, {control}, false);
        }
    }
    if (method == 1 || method == 2)
        put(states, {204, 205}, false);
}

/// Where the coefficient comes from: the terrain (0) or the table (1).
void applySource(States &states, int source)
{
    put(states, {322, 246}, source == 0);
    put(states, {325, 349, 348, 345, 222, 347}, source == 1);
}

void applyTypes(States &states, int method, int mask, int source = 0)
{
    const bool typed = method == 3;
    if (mask & 1) {
        put(states, {343, 344}, true);
        applySource(states, source);
        put(states, {327, 220}, false);
        put(states, {215}, true);
        put(states, {213}, typed);
        put(states, {301, 324}, true);
    }
    if (mask & 2) {
        put(states, {343, 344, 322, 246, 325, 349, 348, 345, 222, 347}, false);
        put(states, {216}, false);
        put(states, {327, 220}, true);
        if (typed)
            put(states, {301, 213}, true);
        put(states, {324, 215}, false);
    }
    if (mask & 4) {
        put(states, {343, 344, 322, 246, 325, 349, 348, 345, 222, 347, 324, 215}, false);
        if (typed)
            put(states, {301, 213}, true);
        put(states, {327, 220}, false);
    }
}

States statesOf(const CDialogUnderTest &dialog)
{
    States states;
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        if (const QVariant number = widget->property(kControlIdProperty); number.isValid())
            states[number.toInt()] = widget->isEnabled();
    }
    return states;
}

void setAll(CDialogUnderTest &dialog, bool on)
{
    for (const auto &[control, state] : statesOf(dialog))
        dialog.GetDlgItem(control)->setEnabled(on);
}

/// Sets the three checks without their handlers.
void setTypes(CDialogUnderTest &dialog, int mask)
{
    for (const auto &[control, bit] : {std::pair(106, 1), std::pair(107, 2), std::pair(108, 4)})
        dialog.Control<QAbstractButton>(control)->setChecked((mask & bit) != 0);
}

/// Chooses the coefficient's source without its handler.
void setSource(CDialogUnderTest &dialog, int source)
{
    dialog.Control<QAbstractButton>(source == 0 ? 343 : 344)->setChecked(true);
}

std::string difference(const States &expected, const States &found)
{
    std::string text;
    for (const auto &[control, state] : found) {
        if (expected.at(control) != state)
            text += std::to_string(control) + (state ? " is on; " : " is off; ");
    }
    return text;
}

TEST_F(Enabling, EachMethodWithEachCombinationOfTypesSetsTheControlsOfTheTables)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        for (int method = 0; method < 4; ++method) {
            for (int mask = 1; mask <= 7; ++mask) {
                for (const int source : {0, 1}) {
                    for (const bool start : {false, true}) {
                        setAll(dialog, start);
                        setTypes(dialog, mask);
                        setSource(dialog, source);
                        States expected = statesOf(dialog);
                        applyMethod(expected, method, true);
                        put(expected, {204, 205}, false); // one section
                        applyTypes(expected, method, mask, source);
                        dialog.choose(257, method);
                        EXPECT_EQ(difference(expected, statesOf(dialog)), "")
                            << "method " << method << " types " << mask << " source " << source << " from all "
                            << (start ? "on" : "off");
                    }
                }
            }
        }
    });
}

TEST_F(Enabling, ASelectionEnablesItsSweepAndTheMethodThenNarrowsItDown)
{
    for (int method = 0; method < 4; ++method) {
        for (const bool start : {false, true}) {
            run([&](CDialogUnderTest &dialog) {
                dialog.choose(257, method);
                setAll(dialog, start);
                dialog.GetDlgItem(203)->setEnabled(true);
                setTypes(dialog, 1);
                States expected = statesOf(dialog);
                for (const int control : kSelectionSweep)
                    put(expected, {control}, true);
                applyMethod(expected, method, true);
                put(expected, {204, 205}, false);
                applyTypes(expected, method, 1);
                select(dialog, {L"D1"});
                EXPECT_EQ(difference(expected, statesOf(dialog)), "") << "method " << method;
            });
        }
    }
}

TEST_F(Enabling, TheHiddenTypeCombosHandlerRunsTheTypesAlone)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        for (int mask = 1; mask <= 7; ++mask) {
            for (const int source : {0, 1}) {
                setAll(dialog, true);
                setTypes(dialog, mask);
                setSource(dialog, source);
                States expected = statesOf(dialog);
                applyTypes(expected, 1, mask, source);
                dialog.choose(256, 1);
                EXPECT_EQ(difference(expected, statesOf(dialog)), "") << "types " << mask << " source " << source;
            }
        }
    });
}

TEST_F(Enabling, InMethods0And1SaveStaysAsItIsWhileTheListHasRows)
{
    const AcDbObjectId box = addBox(0, 0, 10, 10, L"0");
    for (const int method : {0, 1}) {
        for (const bool on : {false, true}) {
            run([&](CDialogUnderTest &dialog) {
                select(dialog, {L"D1"});
                dialog.addMainRow(box, 100);
                dialog.GetDlgItem(221)->setEnabled(on);
                dialog.choose(257, method);
                EXPECT_EQ(dialog.isEnabled(221), on) << method;
            });
        }
    }
}

TEST_F(Enabling, ClickingTheCatchmentCheckLooksOnlyAtItsOwnType)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        for (const int method : {1, 3}) {
            for (const int source : {0, 1}) {
                for (const bool start : {false, true}) {
                    dialog.choose(257, method);
                    setTypes(dialog, 2);
                    setSource(dialog, source);
                    setAll(dialog, start);
                    dialog.GetDlgItem(106)->setEnabled(true);
                    States expected = statesOf(dialog);
                    put(expected, {343, 344, 215, 324}, true);
                    applySource(expected, source);
                    put(expected, {213, 301}, method == 3);
                    dialog.click(106);
                    EXPECT_EQ(difference(expected, statesOf(dialog)), "") << method << " source " << source;
                    put(expected, {343, 344, 215, 324}, false);
                    put(expected, {322, 246, 325, 349, 348, 345, 222, 347}, false);
                    dialog.click(106);
                    EXPECT_EQ(difference(expected, statesOf(dialog)), "") << method << " source " << source;
                }
            }
        }
    });
}

TEST_F(Enabling, ClickingTheHouseAndIndustrialChecksLooksOnlyAtTheirOwnType)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        for (const int method : {1, 3}) {
            for (const bool start : {false, true}) {
                dialog.choose(257, method);
                setTypes(dialog, 1);
                setAll(dialog, start);
                for (const int control : {107, 108})
                    dialog.GetDlgItem(control)->setEnabled(true);
                States expected = statesOf(dialog);
                put(expected, {327, 220}, true);
                put(expected, {213, 301}, method == 3);
                dialog.click(107);
                EXPECT_EQ(difference(expected, statesOf(dialog)), "") << method;
                put(expected, {327, 220}, false);
                dialog.click(107);
                EXPECT_EQ(difference(expected, statesOf(dialog)), "") << method;
                dialog.click(108);
                EXPECT_EQ(difference(expected, statesOf(dialog)), "") << method;
            }
        }
    });
}

TEST_F(Enabling, WithCatchmentAndHouseOnTheHouseRowOverrulesTheCoefficient)
{
    run([&](CDialogUnderTest &dialog) {
        select(dialog, {L"D1"});
        setTypes(dialog, 3);
        dialog.choose(257, 1);
        for (const int control : {215, 343, 344})
            EXPECT_FALSE(dialog.isEnabled(control)) << control;
    });
}

TEST_F(Enabling, TheLastTypeCannotBeClickedOff)
{
    run([&](CDialogUnderTest &dialog) {
        for (const int control : {106, 107, 108}) {
            setTypes(dialog, control == 106 ? 1 : control == 107 ? 2 : 4);
            dialog.click(control);
            EXPECT_TRUE(dialog.isChecked(control));
            EXPECT_EQ(dialog.isChecked(106) + dialog.isChecked(107) + dialog.isChecked(108), 1);
        }
    });
}

} // namespace
