// A small dialog on a real host with an empty drawing, and the controls driven by number as a person would.
#pragma once

#include "contracts/HostDialog.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Journal.h"
#include "host/editor/Session.h"
#include "host/services/Services.h"
#include "tests/host/services/TestFolder.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QString>

#include <functional>
#include <string>

class SmallDialogTest : public ::testing::Test {
protected:
    SmallDialogTest();
    ~SmallDialogTest() override;

    /// Runs the dialog; drive works it while it is shown and ends it, else it is cancelled.
    int run(CAdUiBaseDialog &dialog, const std::function<void()> &drive);
    /// Starts the program anew in a language.
    void start(const char *language);
    static std::wstring message(unsigned number);
    static void click(CAdUiBaseDialog &dialog, int control);
    static void type(CAdUiBaseDialog &dialog, int control, const QString &text);
    static QString text(const CAdUiBaseDialog &dialog, int control);

    velmor::Drawing &drawing() { return *m_session.drawing(); }
    AcDbObjectId addLine(const wchar_t *layer);
    static std::size_t callsOf(const char *operation);

    velmor::test::TestFolder m_user; ///< with the only support files that there are
    velmor::Session m_session;
};
