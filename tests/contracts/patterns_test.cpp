// Hatch patterns: the text form, the user's files, the names that are known, and the evaluated lines.
#include "tests/contracts/ContractsFixture.h"

#include "host/drawing/HatchPattern.h"
#include "host/drawing/OwnPatterns.h"
#include "host/drawing/PatternLibrary.h"

#include <algorithm>
#include <numbers>

namespace velmor::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr double kPi = std::numbers::pi;

TEST(PatternText, GivesNameDescriptionAndSetsOfLines)
{
    const PatternFile file =
        readPatterns("; comment\n*One, first of all ; more comment\n 45, 1,-2, .5,3.175, 4,-1.5,0,-1.5\n\n"
                     "0,0,0,0,1\r\n*TWO\n90, 0,0, 0,-2\n");
    EXPECT_TRUE(file.findings.empty());
    ASSERT_EQ(file.patterns.size(), 2u);
    EXPECT_EQ(file.patterns[0].name, L"One");
    EXPECT_EQ(file.patterns[0].description, L"first of all");
    EXPECT_EQ(file.patterns[0].line, 2u);
    EXPECT_THAT(file.patterns[0].families, ElementsAre(PatternFamily{45, 1, -2, 0.5, 3.175, {4, -1.5, 0, -1.5}},
                                                       PatternFamily{0, 0, 0, 0, 1, {}}));
    EXPECT_EQ(file.patterns[1].description, L"");
}

TEST(PatternText, TellsWhatIsWrongWithItsLineAndLeavesThatPatternOut)
{
    const PatternFile file = readPatterns("0,0,0,0,1\n"              // 1: before any name
                                          "*GOOD\n0,0,0,0,1\n"       // 2
                                          "*BAD\n0,0,x,0,1\n"        // 4: line 5
                                          "*FEW\n0,0,0,0\n"          // 6: line 7
                                          "*FLAT\n0,0,0,1,0\n"       // 8: line 9
                                          "*NOTHING\n"               // 10
                                          "*good\n0,0,0,0,2\n"       // 11: twice
                                          "*, nameless\n"            // 13
                                          "*DOTTY\n0,0,0,0,1, 0,0\n" // 14: line 15
                                          "*INF\n0,0,0,0,1e300\n");  // 16: line 17
    ASSERT_EQ(file.patterns.size(), 1u);
    EXPECT_EQ(file.patterns[0].name, L"GOOD");
    std::vector<std::size_t> lines;
    for (const Finding &finding : file.findings)
        lines.push_back(finding.line);
    EXPECT_THAT(lines, ElementsAre(1, 5, 7, 9, 10, 11, 13, 15, 17));
}

TEST(PatternText, ReadsBackWhatItWrote)
{
    const PatternFile own = readPatterns(ownPatternText());
    EXPECT_TRUE(own.findings.empty());
    for (Pattern pattern : own.patterns) {
        const PatternFile again = readPatterns(patternText(pattern));
        ASSERT_EQ(again.patterns.size(), 1u);
        pattern.line = 1;
        EXPECT_EQ(again.patterns[0], pattern);
    }
}

TEST(OwnPatterns, StandUnderTheUsualNames)
{
    auto &library = PatternLibrary::instance();
    for (const wchar_t *name :
         {L"SOLID",    L"ANSI31",   L"ANSI32",   L"ANSI33",   L"ANSI34",  L"ANSI35",   L"ANSI36",   L"ANSI37",
          L"ANSI38",   L"ANGLE",    L"AR-B816",  L"AR-B816C", L"AR-B88",  L"AR-BRELM", L"AR-BRSTD", L"AR-CONC",
          L"AR-HBONE", L"AR-PARQ1", L"AR-RROOF", L"AR-RSHKE", L"AR-SAND", L"BOX",      L"BRASS",    L"BRICK",
          L"BRSTONE",  L"CLAY",     L"CORK",     L"CROSS",    L"DASH",    L"DOLMIT",   L"DOTS",     L"EARTH",
          L"ESCHER",   L"FLEX",     L"GRASS",    L"GRATE",    L"GRAVEL",  L"HEX",      L"HONEY",    L"HOUND",
          L"INSUL",    L"LINE",     L"MUDST",    L"NET",      L"NET3",    L"PLAST",    L"PLASTI",   L"SACNCR",
          L"SQUARE",   L"STARS",    L"STEEL",    L"SWAMP",    L"TRANS",   L"TRIANG",   L"ZIGZAG"})
        EXPECT_TRUE(library.find(name)) << std::string(name, name + std::wcslen(name));
    EXPECT_EQ(library.find(L"ansi31"), library.find(L"ANSI31"));
    EXPECT_FALSE(library.find(L"NO SUCH"));
}

class PatternContract : public ContractsFixture {
protected:
    PatternContract() { std::filesystem::create_directories(folder / "user" / "support"); }
    void writeSupport(const std::string &name, const std::string &text)
    {
        std::ofstream(folder / "user" / "support" / name) << text;
    }
    /// Appended to model space and closed.
    AcDbHatch &hatch(const wchar_t *pattern, double angleDegrees, double scale, const std::vector<AcDbObjectId> &loops)
    {
        auto *made = new AcDbHatch;
        made->setNormal({0, 0, 1});
        made->setElevation(0.0);
        made->setPatternAngle(angleDegrees * kPi / 180.0);
        made->setPatternScale(scale);
        EXPECT_EQ(made->setPattern(AcDbHatch::kPreDefined, pattern), Acad::eOk);
        made->setAssociative(false);
        made->setHatchStyle(AcDbHatch::kNormal);
        for (const AcDbObjectId &loop : loops)
            EXPECT_EQ(made->appendLoop(AcDbHatch::kExternal, {loop}), Acad::eOk);
        EXPECT_EQ(made->evaluateHatch(false), Acad::eOk);
        made->setColorIndex(1, true);
        AcDbObjectId id;
        EXPECT_EQ(CZEMCDraw::appendToModelSpace(made, id), Acad::eOk);
        made->close();
        return *made;
    }
    /// Length of a line's part inside a box.
    static double lengthIn(const AcDbHatch::Line &l, double x1, double y1, double x2, double y2)
    {
        constexpr int kSteps = 200;
        int in = 0;
        for (int i = 0; i < kSteps; ++i) {
            const double t = (i + 0.5) / kSteps, x = l.x1 + t * (l.x2 - l.x1), y = l.y1 + t * (l.y2 - l.y1);
            in += x > x1 && x < x2 && y > y1 && y < y2;
        }
        return std::hypot(l.x2 - l.x1, l.y2 - l.y1) * in / kSteps;
    }
    static double distanceBetween(const AcDbHatch &h)
    {
        // Distances of the lines from the origin, square to their direction.
        std::vector<double> places;
        for (const auto &l : h.lines()) {
            const double length = std::hypot(l.x2 - l.x1, l.y2 - l.y1);
            if (length > 1.0)
                places.push_back((l.x1 * (l.y2 - l.y1) - l.y1 * (l.x2 - l.x1)) / length);
        }
        std::sort(places.begin(), places.end());
        double least = 1e9;
        for (std::size_t i = 1; i < places.size(); ++i)
            if (places[i] - places[i - 1] > 1e-6)
                least = std::min(least, places[i] - places[i - 1]);
        return least;
    }
};

TEST_F(PatternContract, TheUsersFileWinsAndIsReadAgainWhenItChanges)
{
    auto &library = PatternLibrary::instance();
    writeSupport("patterns.pat", "*ANSI31, mine\n10, 0,0, 0,7\n*EXTRA\n0,0,0,0,1\n");
    startServices("en");
    EXPECT_EQ(library.find(L"ansi31")->description, L"mine");
    EXPECT_TRUE(isHatchPattern(L"extra"));
    EXPECT_NEAR(hatchFamilies(L"ANSI31", 0.0, 1.0).front().angle, 10.0 * kPi / 180.0, 1e-12);
    writeSupport("patterns.pat", "*OTHER, a longer text than before so that the size tells\n0,0,0,0,1\n");
    EXPECT_TRUE(isHatchPattern(L"OTHER"));
    EXPECT_FALSE(isHatchPattern(L"EXTRA"));
    EXPECT_NE(library.find(L"ANSI31")->description, L"mine");
    writeSupport("SINGLE.pat", "*SINGLE\n0,0,0,0,1\n");
    EXPECT_TRUE(isHatchPattern(L"SINGLE")) << "a file of the pattern's own name";
}

TEST_F(PatternContract, AMistakeInTheUsersFileIsToldOnceWithFileAndLine)
{
    writeSupport("patterns.pat", "*FINE\n0,0,0,0,1\n*WRONG\n0,0,zero,0,1\n");
    startServices("en");
    std::vector<std::wstring> told;
    session.setMessageSink([&](MessageKind, const std::wstring &text) { told.push_back(text); });
    EXPECT_FALSE(isHatchPattern(L"WRONG"));
    EXPECT_TRUE(isHatchPattern(L"FINE"));
    EXPECT_THAT(told, ElementsAre(HasSubstr(L"patterns.pat:4: ")));
}

TEST_F(PatternContract, NoEvaluatedLineCrossesAnIslandWhateverThePattern)
{
    const std::vector<AcDbObjectId> loops{box(0, 0, 100, 100), box(20, 20, 45, 45), box(60, 55, 80, 90)};
    for (const Pattern *pattern : PatternLibrary::instance().all()) {
        if (pattern->families.empty())
            continue;
        // Patterns of walls repeat in hundreds of units.
        const bool isLarge = pattern->name.starts_with(L"AR-");
        const AcDbHatch &made = hatch(pattern->name.c_str(), 30.0, isLarge ? 0.05 : 1.0, loops);
        double inside = 0.0;
        for (const auto &l : made.lines()) {
            EXPECT_LT(lengthIn(l, 20.001, 20.001, 44.999, 44.999), 1e-9);
            EXPECT_LT(lengthIn(l, 60.001, 55.001, 79.999, 89.999), 1e-9);
            inside += lengthIn(l, -0.001, -0.001, 100.001, 100.001);
            EXPECT_GE(std::min({l.x1, l.x2, l.y1, l.y2}), -1e-6);
            EXPECT_LE(std::max({l.x1, l.x2, l.y1, l.y2}), 100.0 + 1e-6);
        }
        const bool isDots = pattern->families.front().dashes == std::vector<double>{0.0, -1.6};
        if (!isDots && pattern->name != L"AR-SAND" && pattern->name != L"ISO07" && pattern->name != L"SACNCR") {
            EXPECT_GT(inside, 50.0) << std::string(pattern->name.begin(), pattern->name.end());
        }
        EXPECT_FALSE(made.lines().empty());
    }
}

TEST_F(PatternContract, ScaleSpacesAndAngleTurnsTheLines)
{
    const AcDbObjectId ring = box(0, 0, 100, 100);
    const double one = distanceBetween(hatch(L"ANSI31", 0.0, 1.0, {ring}));
    const double more = distanceBetween(hatch(L"ANSI31", 0.0, 2.5, {ring}));
    EXPECT_NEAR(one, 3.175, 1e-9);
    EXPECT_NEAR(more / one, 2.5, 1e-9);
    for (const auto &l : hatch(L"ANSI31", 45.0, 1.0, {ring}).lines()) // 45 by itself, and 45 more
        EXPECT_NEAR(l.x1, l.x2, 1e-9);
}

TEST_F(PatternContract, ColourScaleAndAngleAreSeen)
{
    const Extents shown{0, 0, 100, 100};
    const AcDbObjectId ring = box(0, 0, 100, 100);
    const QRect inside = pixelsOf({5, 5, 95, 95}, shown);
    const auto pictureOf = [&](int color, double scale, double angle) {
        AcDbHatch &one = hatch(L"ANSI31", angle, scale, {ring});
        drawing().setColorOf(one, color);
        const QImage image = picture(shown);
        drawing().erase(one);
        return image;
    };
    const auto pixelsLike = [&](const QImage &image, auto isLike) {
        int found = 0;
        for (int y = inside.top(); y <= inside.bottom(); ++y)
            for (int x = inside.left(); x <= inside.right(); ++x)
                found += isLike(image.pixelColor(x, y));
        return found;
    };
    constexpr int kClearly = 60;
    const auto isRed = [](const QColor &c) { return c.red() > std::max(c.green(), c.blue()) + kClearly; };
    const auto isBlue = [](const QColor &c) { return c.blue() > std::max(c.red(), c.green()) + kClearly; };
    const QImage red = pictureOf(1, 2.5, 0.0), blue = pictureOf(5, 2.5, 0.0);
    EXPECT_GT(pixelsLike(red, isRed), 1000);
    EXPECT_EQ(pixelsLike(red, isBlue), 0);
    EXPECT_GT(pixelsLike(blue, isBlue), 1000);
    EXPECT_EQ(pixelsLike(blue, isRed), 0);
    // Lines 2.5 times as far apart leave 2.5 times as little ink.
    const QImage narrow = pictureOf(1, 2.0, 0.0), wide = pictureOf(1, 5.0, 0.0);
    EXPECT_NEAR(static_cast<double>(inkIn(narrow, inside)) / inkIn(wide, inside), 2.5, 0.35);
    // Of a pattern at 45 degrees, turned by as much, each line stands in one column of pixels.
    const auto emptyColumns = [&](const QImage &image) {
        int empty = 0;
        for (int x = inside.left(); x <= inside.right(); ++x)
            empty += inkIn(image, QRect(x, inside.top(), 1, inside.height())) == 0;
        return empty;
    };
    EXPECT_EQ(emptyColumns(wide), 0);
    EXPECT_GT(emptyColumns(pictureOf(1, 5.0, 45.0)), inside.width() / 2);
}

TEST_F(PatternContract, AHatchWithTwoIslandsShowsTwoHolesLiveAndAfterReopening)
{
    const std::vector<AcDbObjectId> loops{box(0, 0, 100, 100), box(20, 20, 45, 45), box(60, 55, 80, 90)};
    const Extents shown{0, 0, 100, 100};
    const QImage before = picture(shown);
    hatch(L"ANSI31", 0.0, 1.0, loops);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const QImage after = picture(shown);
        EXPECT_GT(differences(before, after), 2000);
        EXPECT_EQ(inkIn(after, pixelsOf({20, 20, 45, 45}, shown)), 0);
        EXPECT_EQ(inkIn(after, pixelsOf({60, 55, 80, 90}, shown)), 0);
        EXPECT_GT(inkIn(after, pixelsOf({50, 5, 95, 50}, shown)), 500);
        const auto &last = *entities().back();
        ASSERT_EQ(kindOf(last), EntityKind::Hatch);
        EXPECT_FALSE(static_cast<const AcDbHatch &>(last).lines().empty());
        EXPECT_EQ(static_cast<const AcDbHatch &>(last).patternName(), L"ANSI31");
    }
}

TEST_F(PatternContract, DotsAreSeen)
{
    const QImage before = picture({0, 0, 100, 100});
    hatch(L"DOTS", 0.0, 4.0, {box(10, 10, 90, 90)});
    EXPECT_GT(inkIn(picture({0, 0, 100, 100}), pixelsOf({20, 20, 80, 80}, {0, 0, 100, 100})), 40);
    EXPECT_EQ(inkOf(before), 0);
}

TEST_F(PatternContract, AHatchOfTheUsersPatternLooksTheSameWhereThatPatternIsUnknown)
{
    writeSupport("patterns.pat", "*MINE\n30, 1,2, 1.5,4, 3,-1,0,-1\n");
    startServices("en");
    const auto lines = hatch(L"MINE", 10.0, 2.0, {box(0, 0, 50, 50)}).lines();
    std::filesystem::remove(folder / "user" / "support" / "patterns.pat");
    startServices("en");
    reopen();
    const auto &again = static_cast<const AcDbHatch &>(*entities().back());
    ASSERT_EQ(again.lines().size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_NEAR(again.lines()[i].x1, lines[i].x1, 1e-9);
        EXPECT_NEAR(again.lines()[i].y2, lines[i].y2, 1e-9);
    }
}

} // namespace
} // namespace velmor::test
