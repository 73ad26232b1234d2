// The date and time edits as widgets, with the user's settings and the system's clock.
#include "controls/AMSDateEdits.h"
#include "tests/controls/WidgetEditBox.h"

#include <QApplication>
#include <QKeyEvent>

#include <gtest/gtest.h>

using namespace AMSEdit;

namespace {

class DateWidgets : public testing::Test, private ToolkitForTests {
protected:
    DateWidgets() { QLocale::setDefault(QLocale(QStringLiteral("hr_HR"))); }
    ~DateWidgets() override { QLocale::setDefault(m_before); }

    static void Press(QWidget &edit, int key, const QString &text = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&edit, &event);
    }
    static void Type(QWidget &edit, const char *keys)
    {
        for (; *keys; ++keys)
            Press(edit, Qt::Key_unknown, QString(QLatin1Char(*keys)));
    }

private:
    QLocale m_before;
};

} // namespace

TEST_F(DateWidgets, ADateIsTypedAsTheUsersRegionWritesIt)
{
    CAMSDateEdit edit;
    EXPECT_TRUE(edit.IsDayShownBeforeMonth());
    Type(edit, "29022004");
    EXPECT_EQ(edit.text(), QStringLiteral("29.02.2004"));
    EXPECT_EQ(edit.GetDate(), CalendarTime(2004, 2, 29));
    Press(edit, Qt::Key_Home);
    Press(edit, Qt::Key_Down);
    EXPECT_EQ(edit.text(), QStringLiteral("28.02.2004"));
    edit.setText(QStringLiteral("31.02.2001"));
    EXPECT_EQ(edit.text(), QStringLiteral("28.02.2001"));
    edit.SetToday();
    EXPECT_TRUE(edit.IsValid());
}

TEST_F(DateWidgets, ATimeIsTypedAndSteppedWithKeys)
{
    CAMSTimeEdit edit;
    EXPECT_TRUE(edit.IsShowing24HourFormat());
    Type(edit, "1345");
    EXPECT_EQ(edit.text(), QStringLiteral("13:45"));
    Press(edit, Qt::Key_Home);
    Press(edit, Qt::Key_Up);
    EXPECT_EQ(edit.text(), QStringLiteral("14:45"));
    edit.SetToNow();
    EXPECT_TRUE(edit.IsValid());
}

TEST_F(DateWidgets, ADateAndTimeAreTypedInOneRun)
{
    CAMSDateTimeEdit edit;
    Type(edit, "290220041345");
    EXPECT_EQ(edit.text(), QStringLiteral("29.02.2004 13:45"));
    edit.SetToNow();
    EXPECT_TRUE(edit.IsValid());
}
