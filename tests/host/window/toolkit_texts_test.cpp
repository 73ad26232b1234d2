// The toolkit's own boxes, dialogs and context menus speak the program's language, also after a switch while it runs.
#include "host/editor/Captions.h"
#include "host/editor/MainWindow.h"
#include "host/services/Messages.h"
#include "host/services/Services.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace velmor {
namespace {

class ToolkitTexts : public testing::Test {
protected:
    ToolkitTexts()
    {
        followLanguage();
        session.setDrawing(Drawing::createNew());
        window = std::make_unique<MainWindow>(session);
        window->show();
    }
    ~ToolkitTexts() override { Services::instance().setLanguage("en"); }

    static QString plain(QString text) { return text.remove(QLatin1Char('&')); }

    /// The texts of all buttons that a standard box can have, by button.
    std::map<int, QString> boxButtons()
    {
        QMessageBox box(window.get());
        std::map<int, QString> texts;
        for (int bit = QMessageBox::FirstButton; bit <= QMessageBox::LastButton; bit <<= 1)
            if (auto *button = box.addButton(static_cast<QMessageBox::StandardButton>(bit)))
                texts[bit] = plain(button->text());
        return texts;
    }
    /// What the box that closing a changed drawing asks with shows on its buttons.
    QStringList closingBox()
    {
        QStringList shown;
        QTimer::singleShot(0, window.get(), [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            for (const auto which : {QMessageBox::Save, QMessageBox::Discard, QMessageBox::Cancel})
                shown.append(plain(box->button(which)->text()));
            box->reject();
        });
        window->close();
        return shown;
    }

    Session session;
    std::unique_ptr<MainWindow> window;
};

TEST_F(ToolkitTexts, TheBoxOfClosingHasItsButtonsInTheLanguageOfNow)
{
    session.drawing()->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    const QStringList english{QStringLiteral("Save"), QStringLiteral("Discard"), QStringLiteral("Cancel")};
    const QStringList croatian{QStringLiteral("Spremi"), QStringLiteral("Odbaci"), QStringLiteral("Odustani")};
    EXPECT_EQ(closingBox(), english);
    Services::instance().setLanguage("hr");
    EXPECT_EQ(closingBox(), croatian);
    Services::instance().setLanguage("en");
    EXPECT_EQ(closingBox(), english);
}

TEST_F(ToolkitTexts, EveryButtonOfAStandardBoxIsTranslated)
{
    const auto english = boxButtons();
    ASSERT_EQ(english.size(), 18u);
    EXPECT_EQ(english.at(QMessageBox::Ok), QStringLiteral("OK"));
    Services::instance().setLanguage("hr");
    for (const auto &[button, text] : boxButtons()) {
        EXPECT_FALSE(text.isEmpty());
        EXPECT_NE(text, english.at(button));
    }
}

TEST_F(ToolkitTexts, TheMenuOfAnEditIsTranslated)
{
    QLineEdit edit;
    const auto entries = [&] {
        const std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
        QStringList texts;
        for (const QAction *action : menu->actions())
            if (!action->isSeparator())
                texts.append(plain(action->text().section(QLatin1Char('\t'), 0, 0)));
        return texts;
    };
    const QStringList english = entries();
    ASSERT_GE(english.size(), 7);
    Services::instance().setLanguage("hr");
    const QStringList croatian = entries();
    ASSERT_EQ(croatian.size(), english.size());
    for (qsizetype i = 0; i < english.size(); ++i)
        EXPECT_NE(croatian[i], english[i]);
}

TEST_F(ToolkitTexts, TheToolkitsFileDialogIsTranslated)
{
    const auto texts = [] {
        QFileDialog dialog;
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        QStringList found;
        for (const char *name : {"lookInLabel", "fileNameLabel", "fileTypeLabel"})
            if (const auto *label = dialog.findChild<QLabel *>(QLatin1String(name)))
                found.append(plain(label->text()));
        for (const QAbstractButton *button : dialog.findChild<QDialogButtonBox *>()->buttons())
            found.append(plain(button->text()));
        return found;
    };
    const QStringList english = texts();
    ASSERT_EQ(english.size(), 5);
    Services::instance().setLanguage("hr");
    const QStringList croatian = texts();
    ASSERT_EQ(croatian.size(), english.size());
    for (qsizetype i = 0; i < english.size(); ++i)
        EXPECT_NE(croatian[i], english[i]) << english[i].toStdString();
}

} // namespace
} // namespace velmor
