// Importing a network beside the window: progress, cancel, and that a cancelled import leaves everything as it was.
#include "host/drawing/ChangeLog.h"
#include "host/editor/CommandStack.h"
#include "host/editor/MainWindow.h"
#include "host/network/InpImport.h"
#include "host/network/InpReader.h"
#include "host/services/Services.h"

#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <unistd.h>

namespace velmor {
namespace {

namespace fs = std::filesystem;

/// A chain of that many conduits, with a polygon beside each.
std::string chain(int conduits)
{
    std::ostringstream text;
    text << "[OPTIONS]\nFLOW_UNITS LPS\n[JUNCTIONS]\n";
    for (int i = 0; i <= conduits; ++i)
        text << 'N' << i << " 0\n";
    text << "[CONDUITS]\n";
    for (int i = 0; i < conduits; ++i)
        text << 'C' << i << " N" << i << " N" << i + 1 << " 10\n";
    text << "[COORDINATES]\n";
    for (int i = 0; i <= conduits; ++i)
        text << 'N' << i << ' ' << 10 * i << " 0\n";
    text << "[POLYGONS]\n";
    for (int i = 0; i < conduits; ++i)
        text << 'S' << i << ' ' << 10 * i << " 1\n"
             << 'S' << i << ' ' << 10 * i + 9 << " 1\n"
             << 'S' << i << ' ' << 10 * i << " 9\n";
    return text.str();
}

TEST(ImportProgress, GrowsFromNothingToAllAndEndsTheReadingWhenItIsRefused)
{
    const std::string text = chain(5000);
    std::vector<double> told;
    const auto all = readInp(text, "town.inp", true, [&](double done) {
        told.push_back(done);
        return true;
    });
    EXPECT_EQ(all.conduits.size(), 5000u);
    ASSERT_GT(told.size(), 10u);
    EXPECT_TRUE(std::ranges::is_sorted(told));
    EXPECT_LT(told.front(), 0.1);
    EXPECT_GT(told.back(), 0.9);
    EXPECT_LE(told.back(), 1.0);
    for (const double until : {0.2, 0.8}) { // while lines are split, and in the tables
        const auto cancelled = readInp(text, "town.inp", true, [&](double done) { return done < until; });
        EXPECT_EQ(cancelled.status, FileStatus::Cancelled);
        EXPECT_THAT(cancelled.message, testing::HasSubstr("town.inp"));
        EXPECT_TRUE(cancelled.nodes.empty());
    }
}

TEST(ImportProgress, EndsTheDrawingOfWhatWasReadAndTheStepTakesBackWhatStands)
{
    const auto drawing = Drawing::createNew();
    auto &log = drawing->component<ChangeLog>();
    double last = 0.0;
    log.begin(L"Import");
    const auto cancelled = drawNetwork(*drawing, readInp(chain(2000), "town.inp", true), "town.inp", [&](double done) {
        EXPECT_GE(done, last);
        last = done;
        return done < 0.9;
    });
    EXPECT_EQ(cancelled.status, FileStatus::Cancelled);
    EXPECT_EQ(cancelled.sections, 0u);
    EXPECT_FALSE(drawing->modelSpace().entities().empty());
    log.giveUp();
    log.keep();
    EXPECT_TRUE(std::ranges::all_of(drawing->modelSpace().entities(), &AcDbEntity::isErased));
    EXPECT_FALSE(drawing->findLayer(kSectionLayer));
}

/// Presses the progress dialog's button as soon as it shows so many thousandths.
class Impatient {
public:
    explicit Impatient(int from)
    {
        QObject::connect(&m_look, &QTimer::timeout, &m_look, [this, from] {
            auto *dialog = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
            if (!dialog || dialog->value() < from)
                return;
            ++presses;
            dialog->findChild<QPushButton *>()->click();
        });
        m_look.start(1);
    }
    int presses = 0;

private:
    QTimer m_look;
};

class Importing : public testing::Test {
protected:
    Importing()
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-importing-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        m_file = m_folder / "town.inp";
        Services::instance().start({.language = "en"}, Paths({resources()}, m_folder));
        std::ofstream(m_file) << chain(60'000); // far more than a moment's work
        m_session.setDrawing(Drawing::createNew());
    }
    ~Importing() override
    {
        Services::instance().start({.language = "en"});
        fs::remove_all(m_folder);
    }
    static fs::path resources()
    {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        return fs::path(source ? source : ".") / "resources";
    }

    fs::path m_folder, m_file;
    Session m_session;
};

TEST_F(Importing, IntoTheOpenDrawingShowsItsProgressAndACancelLeavesTheDrawing)
{
    MainWindow window(m_session);
    window.show();
    for (const int from : {0, 400}) { // while the file is read, and while it is drawn
        Impatient person(from);
        EXPECT_FALSE(m_session.commands().run(L"IMPORT \"" + m_file.wstring() + L"\" WITH-POLYGONS"));
        EXPECT_GE(person.presses, 1) << from;
        EXPECT_THAT(m_session.lastStatus(), testing::HasSubstr(L"cancelled"));
        EXPECT_TRUE(m_session.alerts().empty());
        EXPECT_TRUE(std::ranges::all_of(m_session.drawing()->modelSpace().entities(), &AcDbEntity::isErased));
        EXPECT_FALSE(m_session.drawing()->findLayer(kSectionLayer));
        EXPECT_FALSE(m_session.drawing()->isModified());
    }
}

TEST_F(Importing, AsANewDrawingShowsItsProgressAndACancelLeavesTheFormerOne)
{
    Drawing *former = m_session.drawing();
    MainWindow window(m_session);
    window.show();
    Impatient person(400);
    EXPECT_FALSE(window.openFile(m_file));
    EXPECT_GE(person.presses, 1);
    EXPECT_EQ(m_session.drawing(), former);
    EXPECT_TRUE(former->modelSpace().entities().empty());
}

TEST_F(Importing, BeforeThereIsAWindowShowsItsProgressToo)
{
    QWidget screen;
    Impatient person(400);
    const OpenedFile opened = readForWindow(m_file, &screen);
    EXPECT_TRUE(opened.cancelled);
    EXPECT_EQ(opened.drawing, nullptr);
    EXPECT_GE(person.presses, 1);
}

TEST_F(Importing, ToTheEndBringsWhatAnImportWithoutAWindowBrings)
{
    MainWindow window(m_session);
    window.show();
    EXPECT_TRUE(m_session.commands().run(L"IMPORT \"" + m_file.wstring() + L"\" No"));
    EXPECT_EQ(m_session.drawing()->modelSpace().entities().size(), 120'001u);
    EXPECT_TRUE(m_session.drawing()->isModified());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace
} // namespace velmor
