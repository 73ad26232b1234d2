// The module's two dialogs at the window: while one hides for something in the drawing, the other one is not opened.
#include "contracts/HostDialog.h"
#include "host/drawing/Drawing.h"
#include "host/editor/CommandLine.h"
#include "host/editor/CommandStack.h"
#include "host/editor/MainWindow.h"
#include "host/editor/ModuleLoader.h"
#include "host/editor/Session.h"
#include "host/editor/Viewport.h"
#include "host/services/Services.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <memory>

using testing::HasSubstr;

namespace {

struct Order {
    const wchar_t *open;  ///< the command whose dialog hides
    const wchar_t *other; ///< the one that a person tries meanwhile
    Qt::Key key;          ///< of the other one
};

class TwoDialogs : public testing::TestWithParam<Order>, private velmor::PromptSource {
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char name[] = "test";
        static char *argv[] = {name, nullptr};
        // Never destroyed: at the program's end its devices would outlive what the toolkit keeps of them.
        static auto *application = new QApplication(argc, argv);
        Q_UNUSED(application);
    }
    TwoDialogs()
    {
        velmor::Services::instance().start({.language = "en"});
        session.setMessageSink({});
        session.setDrawing(velmor::Drawing::createNew());
        window = std::make_unique<velmor::MainWindow>(session);
        window->show();
        asker = session.promptSource();
        session.setPromptSource(this);
    }
    ~TwoDialogs() override
    {
        session.setPromptSource(asker);
        window.reset();
    }
    void SetUp() override { ASSERT_EQ(session.modules().loadModule(VELMOR_MODULE_FILE), std::nullopt); }
    void press(Qt::Key key)
    {
        for (QAction *action : window->findChildren<QAction *>()) {
            if (action->shortcut() == QKeySequence(key))
                return action->trigger();
        }
        ADD_FAILURE() << "no action for the key";
    }
    /// Passes the prompt on to the window; the person acts once it is shown, and then leaves it.
    std::optional<velmor::Answer> ask(const velmor::Prompt &prompt) override
    {
        ++prompts;
        QTimer::singleShot(0, [this] {
            atPrompt();
            QTest::keyClick(window->findChild<velmor::Viewport *>(), Qt::Key_Escape);
        });
        return asker->ask(prompt);
    }

    velmor::Session session;
    std::unique_ptr<velmor::MainWindow> window;
    velmor::PromptSource *asker = nullptr;
    std::function<void()> atPrompt;
    int prompts = 0;
};

TEST_P(TwoDialogs, OneIsNotOpenedOverThePickOfTheOther)
{
    const Order order = GetParam();
    int opened = 0;
    bool wasHidden = false;
    std::wstring byKey, typed, reason;
    bool ran = true;
    CAdUiBaseDialog *first = nullptr;
    session.setDialogDriver([&](CAdUiBaseDialog &dialog) {
        if (++opened > 1)
            return;
        first = &dialog;
        constexpr int kBtnHide = 3;
        dialog.Control<QAbstractButton>(kBtnHide)->click();
        EXPECT_TRUE(dialog.isVisible());
    });
    atPrompt = [&] {
        wasHidden = !first->isVisible();
        press(order.key);
        byKey = session.lastStatus();
        session.status(L"");
        auto *field = window->commandLine().findChild<QLineEdit *>();
        field->insert(QStringLiteral("'") + QString::fromWCharArray(order.other));
        QTest::keyClick(field, Qt::Key_Return);
        typed = session.lastStatus();
        ran = session.commands().run(order.other, &reason);
    };
    EXPECT_TRUE(session.commands().run(order.open));
    EXPECT_EQ(prompts, 1);
    EXPECT_TRUE(wasHidden);
    EXPECT_EQ(opened, 1);
    EXPECT_FALSE(ran);
    EXPECT_THAT(byKey, HasSubstr(std::wstring(order.open) + L" is open already"));
    EXPECT_EQ(typed, byKey);
    EXPECT_EQ(reason, byKey);
    EXPECT_TRUE(session.commands().run(order.other)) << "afterwards it opens";
    EXPECT_EQ(opened, 2);
    EXPECT_TRUE(session.alerts().empty());
}

INSTANTIATE_TEST_SUITE_P(Orders, TwoDialogs,
                         testing::Values(Order{L"zemsewage_create", L"zemsewage_edit", Qt::Key_F6},
                                         Order{L"zemsewage_edit", L"zemsewage_create", Qt::Key_F5}),
                         [](const auto &order) {
                             return order.param.key == Qt::Key_F6 ? "ReviewInDefinition" : "DefinitionInReview";
                         });

} // namespace
