#include "tests/dialogs/small_dialog_fixture.h"

#include "tests/dialogs/DialogProgram.h"

#include "controls/Mnemonics.h"
#include "controls/WideText.h"
#include "host/drawing/Entities.h"

#include <QApplication>
#include <QLabel>

#include <cstdlib>

namespace {

/// The shipped resources without the support files. One folder for all tests: pictures are remembered by their paths.
const std::filesystem::path &resources()
{
    static const velmor::test::TestFolder folder;
    static const bool made = [] {
        const char *source = std::getenv("VELMOR_SOURCE_DIR");
        const auto shipped = std::filesystem::absolute(source ? source : ".") / "resources";
        for (const char *name : {"messages", "icons"})
            std::filesystem::create_directory_symlink(shipped / name, folder.path() / name);
        return true;
    }();
    static_cast<void>(made);
    return folder.path();
}

} // namespace

SmallDialogTest::SmallDialogTest()
{
    dialogApplication();
    start("hr");
    m_session.setMessageSink([](velmor::MessageKind, const std::wstring &) {});
    m_session.setDrawing(velmor::Drawing::createNew());
}

SmallDialogTest::~SmallDialogTest()
{
    velmor::Journal::instance().setRecording(false);
    velmor::Journal::instance().clear();
}

void SmallDialogTest::start(const char *language)
{
    velmor::Services::instance().start({.language = language}, velmor::Paths({resources()}, m_user.path()));
}

int SmallDialogTest::run(CAdUiBaseDialog &dialog, const std::function<void()> &drive)
{
    m_session.setDialogDriver([&](CAdUiBaseDialog &) { drive(); });
    const int result = dialog.DoModal();
    m_session.setDialogDriver(nullptr);
    return result;
}

std::wstring SmallDialogTest::message(unsigned number)
{
    return ZEMGis::CModuleConfiguration::Instance()->GetMsg(number);
}

void SmallDialogTest::click(CAdUiBaseDialog &dialog, int control)
{
    auto *button = dialog.Control<QAbstractButton>(control);
    ASSERT_NE(button, nullptr) << control;
    button->click();
}

void SmallDialogTest::type(CAdUiBaseDialog &dialog, int control, const QString &text)
{
    dialog.Control<QLineEdit>(control)->setText(text);
}

QString SmallDialogTest::text(const CAdUiBaseDialog &dialog, int control)
{
    const QWidget *widget = dialog.GetDlgItem(control);
    if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
        return edit->text();
    QString shown;
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        shown = label->text();
    else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
        shown = button->text();
    return ToQString(WithoutMnemonic(ToWide(shown)));
}

AcDbObjectId SmallDialogTest::addLine(const wchar_t *layer)
{
    const std::size_t index = drawing().ensureLayer(layer);
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1));
    AcDbLine &entity = *line;
    const AcDbObjectId id = drawing().append(std::move(line));
    drawing().setLayerOf(entity, index);
    return id;
}

std::size_t SmallDialogTest::callsOf(const char *operation)
{
    std::size_t count = 0;
    for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries())
        count += entry.operation == operation;
    return count;
}
