// The walk's own eye: it finds what is wrong in windows that are made to be wrong, and nothing in sound ones.
#include "tests/walk/Walk.h"

#include "host/editor/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmor::test {
namespace {

using testing::SizeIs;

TEST(WalkEye, AnEditWithoutANameIsFoundAndOneWithABuddyIsNot)
{
    QWidget window;
    auto *label = new QLabel(QStringLiteral("&Width"), &window);
    auto *named = new QLineEdit(&window), *unnamed = new QLineEdit(&window);
    label->setBuddy(named);
    EXPECT_THAT(unnamedWidgets(window), SizeIs(1));
    unnamed->setAccessibleName(QStringLiteral("Height"));
    EXPECT_THAT(unnamedWidgets(window), SizeIs(0));
}

TEST(WalkEye, ATextWithoutRoomIsFound)
{
    QWidget window;
    auto *label = new QLabel(QStringLiteral("A rather long text that takes its room"), &window);
    label->resize(label->sizeHint());
    window.show();
    EXPECT_THAT(cutTexts(window), SizeIs(0));
    label->resize(label->width() / 2, label->height());
    EXPECT_THAT(cutTexts(window), SizeIs(1));
}

TEST(WalkEye, AWeakTextIsFound)
{
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    auto *label = new QLabel(QStringLiteral("Weak"), &window);
    layout->addWidget(label);
    window.setPalette(paletteOf(Theme::Light));
    window.show();
    EXPECT_THAT(weakTexts(window), SizeIs(0));
    QPalette weak = label->palette();
    weak.setColor(QPalette::WindowText, QColor(0xb0, 0xb0, 0xb0));
    label->setPalette(weak);
    EXPECT_THAT(weakTexts(window), SizeIs(1));
}

TEST(WalkEye, AMnemonicThatTwoShareIsFound)
{
    QWidget window;
    new QPushButton(QStringLiteral("&Save"), &window);
    new QPushButton(QStringLiteral("Save &as"), &window);
    EXPECT_THAT(sharedMnemonics(window), SizeIs(0));
    new QPushButton(QStringLiteral("&Stop"), &window);
    EXPECT_THAT(sharedMnemonics(window), SizeIs(1));
}

TEST(WalkEye, AnActionThatNoKeyReachesIsFound)
{
    QMenuBar bar;
    QMenu *menu = bar.addMenu(QStringLiteral("&File"));
    menu->addAction(QStringLiteral("&Open"));
    EXPECT_THAT(unreachableActions(bar), SizeIs(0));
    QAction *action = menu->addAction(QStringLiteral("Close"));
    EXPECT_THAT(unreachableActions(bar), SizeIs(1));
    action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    EXPECT_THAT(unreachableActions(bar), SizeIs(0));
}

TEST(WalkEye, ATextThatIsTheSameInBothLanguagesIsFoundUnlessBothShareTheWord)
{
    const TextsByPlace english{{QStringLiteral("a"), QStringLiteral("&Save")},
                               {QStringLiteral("b"), QStringLiteral("Velmor")},
                               {QStringLiteral("c"), QStringLiteral("Layer")}};
    const TextsByPlace croatian{{QStringLiteral("a"), QStringLiteral("S&ave")},
                                {QStringLiteral("b"), QStringLiteral("Velmor")},
                                {QStringLiteral("c"), QStringLiteral("Sloj")}};
    EXPECT_THAT(untranslated(english, croatian), SizeIs(1));
}

TEST(Themes, EveryTextOfBothPalettesHasContrastEnough)
{
    for (const Theme theme : {Theme::Light, Theme::Dark}) {
        const QPalette palette = paletteOf(theme);
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::WindowText, QPalette::Window},
            {QPalette::Text, QPalette::Base},
            {QPalette::Text, QPalette::AlternateBase},
            {QPalette::ButtonText, QPalette::Button},
            {QPalette::ToolTipText, QPalette::ToolTipBase},
            {QPalette::HighlightedText, QPalette::Highlight},
            {QPalette::PlaceholderText, QPalette::Base},
            {QPalette::Link, QPalette::Base},
            {QPalette::Link, QPalette::Window},
            {QPalette::LinkVisited, QPalette::Base},
            {QPalette::LinkVisited, QPalette::Window},
            {QPalette::WindowText, QPalette::Button},
        };
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            for (const auto &[text, ground] : pairs)
                EXPECT_GE(contrastOf(palette.color(group, text), palette.color(group, ground)), 4.5)
                    << (theme == Theme::Dark ? "dark " : "light ") << group << ": " << text << " on " << ground;
    }
}

TEST(Themes, TheRatioOfContrastIsThatOfTheStandard)
{
    EXPECT_NEAR(contrastOf(Qt::black, Qt::white), 21.0, 1e-9);
    EXPECT_NEAR(contrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005);
    EXPECT_DOUBLE_EQ(contrastOf(Qt::red, Qt::red), 1.0);
}

} // namespace
} // namespace velmor::test
