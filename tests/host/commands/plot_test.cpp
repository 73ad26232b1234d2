// What stands in the PDF file is measured there, as a ruler would on the paper.
#include "host/editor/Person.h"
#include "host/editor/Plot.h"
#include "host/editor/PlotDialog.h"
#include "tests/host/commands/CommandsFixture.h"

#include <QTransform>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <sstream>

namespace velmor {
namespace {

constexpr double kPointsPerMillimetre = 72.0 / 25.4;

/// Straight strokes of a PDF page in millimetres from its lower left corner, y up.
struct Page {
    double width = 0.0, height = 0.0; ///< millimetres
    std::vector<QLineF> strokes;
    bool hasImages = false;
};

/// The content of a compressed stream of the file; empty for one that is none.
QByteArray contentAt(const QByteArray &pdf, qsizetype from, qsizetype to)
{
    QByteArray packed = pdf.mid(from, to - from);
    // The toolkit's packer wants the expected length in front; it is only a hint.
    packed.prepend(QByteArray("\x00\x10\x00\x00", 4));
    return qUncompress(packed);
}

void readStrokes(const QByteArray &content, Page &page)
{
    std::istringstream in(content.toStdString());
    std::vector<double> numbers;
    std::vector<QTransform> kept;
    QTransform now;
    QPointF at;
    bool inText = false;
    for (std::string word; in >> word;) {
        char *end = nullptr;
        const double value = std::strtod(word.c_str(), &end);
        if (end && *end == '\0') {
            numbers.push_back(value);
            continue;
        }
        const std::size_t n = numbers.size();
        if (word == "BT")
            inText = true;
        else if (word == "ET")
            inText = false;
        else if (word == "q")
            kept.push_back(now);
        else if (word == "Q" && !kept.empty()) {
            now = kept.back();
            kept.pop_back();
        } else if (word == "cm" && n >= 6)
            now = QTransform(numbers[n - 6], numbers[n - 5], numbers[n - 4], numbers[n - 3], numbers[n - 2],
                             numbers[n - 1]) *
                  now;
        else if (word == "m" && n >= 2)
            at = {numbers[n - 2], numbers[n - 1]};
        else if (word == "l" && n >= 2 && !inText) {
            const QPointF to(numbers[n - 2], numbers[n - 1]);
            page.strokes.emplace_back(now.map(at) / kPointsPerMillimetre, now.map(to) / kPointsPerMillimetre);
            at = to;
        }
        numbers.clear();
    }
}

Page readPdf(const std::filesystem::path &file)
{
    std::ifstream in(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    const QByteArray pdf = QByteArray::fromStdString(bytes);
    Page page;
    page.hasImages = pdf.contains("/Subtype /Image");
    const qsizetype box = pdf.indexOf("/MediaBox [");
    std::istringstream numbers(bytes.substr(static_cast<std::size_t>(box) + 11, 60));
    double x = 0.0, y = 0.0;
    numbers >> x >> y >> page.width >> page.height;
    page.width /= kPointsPerMillimetre;
    page.height /= kPointsPerMillimetre;
    for (qsizetype start = 0; (start = pdf.indexOf("stream\n", start)) >= 0;) {
        start += 7;
        const qsizetype end = pdf.indexOf("endstream", start);
        if (end < 0)
            break;
        readStrokes(contentAt(pdf, start, end), page);
        start = end + 10;
    }
    return page;
}

/// The strokes of a length, no more than a hundredth of a millimetre off.
std::vector<QLineF> ofLength(const Page &page, double millimetres)
{
    std::vector<QLineF> found;
    for (const QLineF &stroke : page.strokes)
        if (std::abs(stroke.length() - millimetres) < 0.01)
            found.push_back(stroke);
    return found;
}

class Plot : public test::CommandsFixture {
protected:
    Plot() : folder(std::filesystem::temp_directory_path() / "velmor_plot_test")
    {
        std::filesystem::create_directories(folder);
        // A cross in large coordinates: 100 m to the east, 70 m to the north.
        line(5600000, 5071000, 5600100, 5071000);
        line(5600000, 5071000, 5600000, 5071070);
    }
    ~Plot() override { std::filesystem::remove_all(folder); }
    std::wstring file(const char *name) const { return L"\"" + (folder / name).wstring() + L"\""; }

    std::filesystem::path folder;
};

TEST_F(Plot, ALengthOnPaperIsTheLengthOnTheGroundOverTheScale)
{
    ASSERT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" Extents A4 Landscape 1:500"))
        << std::string(why.begin(), why.end());
    const Page page = readPdf(folder / "a.pdf");
    EXPECT_NEAR(page.width, 297.0, 0.5);
    EXPECT_NEAR(page.height, 210.0, 0.5);
    const auto east = ofLength(page, 200.0), north = ofLength(page, 140.0);
    ASSERT_EQ(east.size(), 1u);
    ASSERT_EQ(north.size(), 1u);
    EXPECT_NEAR(east[0].dy(), 0.0, 0.01);
    EXPECT_NEAR(north[0].dx(), 0.0, 0.01);
    EXPECT_FALSE(page.hasImages);
}

TEST_F(Plot, AnotherScaleAndPaperGiveAnotherLength)
{
    ASSERT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" Extents A3 Portrait 1:1000"));
    const Page page = readPdf(folder / "a.pdf");
    EXPECT_NEAR(page.width, 297.0, 0.5);
    EXPECT_NEAR(page.height, 420.0, 0.5);
    EXPECT_EQ(ofLength(page, 100.0).size(), 1u);
    EXPECT_EQ(ofLength(page, 70.0).size(), 1u);
}

TEST_F(Plot, TheUnitOfTheDrawingCounts)
{
    ASSERT_TRUE(run(L"UNITS MIllimetres")); // 100 mm to the east
    ASSERT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" Extents A4 Landscape 1:1"));
    EXPECT_EQ(ofLength(readPdf(folder / "a.pdf"), 100.0).size(), 1u);
}

TEST_F(Plot, WhatLiesOnALayerThatIsOffOrFrozenIsNotOnThePaper)
{
    ASSERT_TRUE(run(L"LAYER MAke Hidden"));
    line(5600010, 5071010, 5600040, 5071010);
    ASSERT_TRUE(run(L"LAYER SEt 0"));
    const auto strokes = [&](const wchar_t *command) {
        EXPECT_TRUE(run(command));
        EXPECT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" Extents A4 Landscape 1:500"));
        return ofLength(readPdf(folder / "a.pdf"), 60.0).size();
    };
    EXPECT_EQ(strokes(L"LAYER ON Hidden"), 1u);
    EXPECT_EQ(strokes(L"LAYER OFF Hidden"), 0u);
    EXPECT_EQ(strokes(L"LAYER ON Hidden"), 1u);
    EXPECT_EQ(strokes(L"LAYER FReeze Hidden"), 0u);
}

TEST_F(Plot, TheLinesOfAHatchStandAsFarApartOnPaperAsItsPatternSaysOverTheScale)
{
    rectangle(5600010, 5071010, 5600090, 5071060);
    ASSERT_TRUE(run(L"HATCH _Pattern ANSI31 _Scale 2 5600050,5071030 \"\"")) << std::string(why.begin(), why.end());
    ASSERT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" Extents A4 Landscape 1:500"));
    std::vector<double> across; // where the slanted lines stand, across their direction
    for (const QLineF &stroke : readPdf(folder / "a.pdf").strokes)
        if (std::abs(stroke.dx()) > 1.0 && std::abs(stroke.dx() - stroke.dy()) < 0.01)
            across.push_back((stroke.x1() - stroke.y1()) / std::numbers::sqrt2);
    std::ranges::sort(across);
    ASSERT_GE(across.size(), 10u);
    constexpr double kSpacing = 3.175 * 2.0 * 1000.0 / 500.0; // millimetres
    for (std::size_t i = 1; i < across.size(); ++i)
        EXPECT_NEAR(across[i] - across[i - 1], kSpacing, 0.01);
}

TEST_F(Plot, FitTakesTheLargestUsualScale)
{
    const auto plan = planPlot(drawing(), {.paper = QPageSize::A4, .orientation = QPageLayout::Landscape});
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan->denominator, 500.0); // at 1:250 it would be 400 mm wide
    EXPECT_TRUE(plan->fits);
    EXPECT_EQ(plan->onPaper(5600050, 5071035), plan->frame.center());
}

TEST_F(Plot, AWindowIsShownInTheMiddleAndWhatLiesOutsideTheFrameIsCut)
{
    ASSERT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" Window 5600000,5071000 5600020,5071020 A4 Landscape 1:100"));
    EXPECT_TRUE(wasTold(L"edges are cut off"));
    PlotSettings settings;
    settings.window.emplace();
    settings.window->add(0, 0);
    settings.window->add(20, 10);
    settings.denominator = 100.0;
    const auto plan = planPlot(drawing(), settings);
    EXPECT_TRUE(plan->fits);
    EXPECT_EQ(plan->onPaper(10, 5), plan->frame.center());
    EXPECT_NEAR(plan->onPaper(20, 5).x() - plan->onPaper(10, 5).x(), 100.0, 1e-9);
}

TEST_F(Plot, WithoutTitleTheDrawingHasTheWholeFrame)
{
    PlotSettings settings;
    const auto with = planPlot(drawing(), settings);
    settings.title = false;
    const auto without = planPlot(drawing(), settings);
    EXPECT_FALSE(with->title.isEmpty());
    EXPECT_TRUE(without->title.isEmpty());
    EXPECT_GT(without->frame.height(), with->frame.height());
}

TEST_F(Plot, NothingVisibleIsNotPlottedAndAWrongPlaceIsTold)
{
    EXPECT_FALSE(run(L"EXPORTPDF /no/such/folder/a.pdf Extents A4 Landscape Fit"));
    EXPECT_THAT(why, testing::HasSubstr(L"/no/such/folder"));
    EXPECT_FALSE(run(L"EXPORTPDF " + file("b.pdf") + L" Extents A4 Landscape 0"));
    run(L"ERASE ALL \"\"");
    EXPECT_FALSE(run(L"EXPORTPDF " + file("b.pdf") + L" Extents A4 Landscape Fit"));
    EXPECT_FALSE(std::filesystem::exists(folder / "b.pdf"));
    EXPECT_THAT(why, testing::HasSubstr(L"nothing visible"));
}

/// A view with somebody before it.
struct Sitting final : SessionView, Person {
    std::vector<std::wstring> asked;
    bool agrees = false;
    bool agreesTo(const std::wstring &question, const std::wstring &) override
    {
        asked.push_back(question);
        return agrees;
    }
    bool givesUpDrawing() override { return false; }
    void showDrawing(Drawing *) override {}
    void redraw() override {}
    void zoomTo(const Extents &) override {}
    void showAlert(const std::wstring &) override {}
    void showStatus(const std::wstring &) override {}
};

TEST_F(Plot, APersonIsAskedBeforeAFileIsReplacedAScriptIsNot)
{
    const auto bytes = [this] {
        std::ifstream in(folder / "a.pdf", std::ios::binary);
        return std::string((std::istreambuf_iterator<char>(in)), {});
    };
    std::ofstream(folder / "a.pdf") << "theirs";
    const std::wstring how = L" Extents A4 Landscape 1:500";
    Sitting person;
    session.setView(&person);
    EXPECT_FALSE(run(L"EXPORTPDF " + file("a.pdf") + how));
    ASSERT_THAT(person.asked, testing::SizeIs(1));
    EXPECT_THAT(person.asked[0], testing::HasSubstr((folder / "a.pdf").wstring()));
    EXPECT_EQ(bytes(), "theirs");
    EXPECT_TRUE(run(L"EXPORTPDF " + file("new.pdf") + how));
    EXPECT_THAT(person.asked, testing::SizeIs(1)) << "nothing stands there";
    EXPECT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + L" _REPLACE" + how));
    EXPECT_THAT(person.asked, testing::SizeIs(1)) << "a dialog has asked";
    EXPECT_THAT(bytes(), testing::StartsWith("%PDF"));
    std::ofstream(folder / "a.pdf") << "theirs";
    person.agrees = true;
    EXPECT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + how));
    EXPECT_THAT(person.asked, testing::SizeIs(2));
    EXPECT_THAT(bytes(), testing::StartsWith("%PDF"));
    session.setView(nullptr);
    std::ofstream(folder / "a.pdf") << "theirs";
    EXPECT_TRUE(run(L"EXPORTPDF " + file("a.pdf") + how));
    EXPECT_THAT(bytes(), testing::StartsWith("%PDF"));
}

TEST_F(Plot, AnUnknownPrinterIsTold)
{
    EXPECT_FALSE(run(L"PLOT Extents A4 Landscape Fit \"no such printer\""));
    EXPECT_THAT(why, testing::HasSubstr(L"no such printer"));
}

TEST_F(Plot, TheDialogMakesSettingsOfItsFields)
{
    Extents shown;
    shown.add(0, 0);
    shown.add(10, 10);
    PlotDialog dialog(session, shown, nullptr);
    auto *scale = dialog.findChild<QLineEdit *>();
    scale->setText(QStringLiteral("1:250"));
    EXPECT_EQ(dialog.settings().denominator, 250.0);
    scale->setText(QStringLiteral("200"));
    EXPECT_EQ(dialog.settings().denominator, 200.0);
    EXPECT_FALSE(dialog.settings().window);
    dialog.findChildren<QComboBox *>()[0]->setCurrentIndex(1);
    EXPECT_EQ(dialog.settings().window, shown);
    scale->setText(QStringLiteral("much"));
    const auto buttons = dialog.findChildren<QPushButton *>();
    EXPECT_FALSE(buttons[0]->isEnabled());
}

} // namespace
} // namespace velmor
