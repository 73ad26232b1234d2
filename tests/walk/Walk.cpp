#include "tests/walk/Walk.h"

#include "host/editor/Theme.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QFontDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeView>

#include <set>

namespace velmor::test {

namespace {

constexpr double kLeastContrast = 4.5;

/// Labels that show what a person made: the name of the current section.
bool isContent(const QWidget &label)
{
    return label.property("content").toBool() || label.property("controlId").toInt() == 266;
}

/// The toolkit's own windows: a desktop puts its own in their place, and what is inside of them is not ours to name.
bool isToolkitsOwn(const QWidget &widget)
{
    for (const QWidget *w = &widget; w; w = w->parentWidget())
        if (qobject_cast<const QFileDialog *>(w) || qobject_cast<const QColorDialog *>(w) ||
            qobject_cast<const QFontDialog *>(w) || w->inherits("QAbstractPrintDialog") ||
            w->inherits("QPrintPreviewDialog"))
            return true;
    return false;
}

/// Parts that the toolkit makes inside of a widget; the widget itself is what a person meets.
bool isInnerPart(const QWidget &widget)
{
    const QWidget *parent = widget.parentWidget();
    return widget.objectName().startsWith(QLatin1String("qt_")) || qobject_cast<const QScrollBar *>(&widget) ||
           (parent && qobject_cast<const QComboBox *>(parent)) || widget.inherits("QComboBoxPrivateContainer") ||
           widget.inherits("QComboBoxListView") || (parent && parent->inherits("QComboBoxPrivateContainer")) ||
           widget.inherits("QTableCornerButton") || widget.inherits("QMenuBarExtension") ||
           widget.inherits("QToolBarExtension") || widget.inherits("QDockWidgetTitleButton") ||
           widget.inherits("QLineEditIconButton") || widget.objectName() == QLatin1String("ScrollLeftButton") ||
           widget.objectName() == QLatin1String("ScrollRightButton");
}

/// All widgets of a window, windows of their own inside of it left out.
QList<QWidget *> widgetsOf(const QWidget &window)
{
    QList<QWidget *> found{const_cast<QWidget *>(&window)};
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        bool inWindow = true;
        for (const QWidget *w = widget; w && w != &window; w = w->parentWidget())
            inWindow = inWindow && !(w->isWindow() && !qobject_cast<const QDockWidget *>(w));
        if (inWindow && !isInnerPart(*widget))
            found.append(widget);
    }
    return found;
}

/// The main window keeps the bar of docks that no longer share a place.
bool isEmptyTabBar(const QWidget &widget)
{
    const auto *tabs = qobject_cast<const QTabBar *>(&widget);
    return tabs && tabs->count() == 0;
}

QString placeOf(const QWidget &widget, const QWidget &window)
{
    QStringList steps;
    for (const QWidget *w = &widget; w && w != &window; w = w->parentWidget()) {
        const QString kind = QString::fromLatin1(w->metaObject()->className());
        const QVariant number = w->property("controlId");
        if (number.isValid()) {
            steps.prepend(kind + QLatin1Char('#') + number.toString());
        } else if (!w->objectName().isEmpty()) {
            steps.prepend(kind + QLatin1Char('.') + w->objectName());
        } else {
            int index = 0;
            if (const QWidget *parent = w->parentWidget())
                for (const QObject *sibling : parent->children()) {
                    if (sibling == w)
                        break;
                    index += sibling->isWidgetType();
                }
            steps.prepend(kind + QString::number(index));
        }
    }
    return steps.join(QLatin1Char('/'));
}

/// Text as it is seen: without the marks of mnemonics.
QString plain(QString text)
{
    text.replace(QLatin1String("&&"), QString(QChar(1)));
    text.remove(QLatin1Char('&'));
    return text.replace(QChar(1), QLatin1Char('&'));
}

QString nameOf(const QWidget &widget)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(&widget));
    return accessible ? accessible->text(QAccessible::Name).trimmed() : QString();
}

QChar mnemonicOf(const QString &text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i)
        if (text[i] == QLatin1Char('&')) {
            if (text[i + 1] != QLatin1Char('&'))
                return text[i + 1].toUpper();
            ++i;
        }
    return {};
}

QList<QMenu *> menusOf(const QWidget &window)
{
    QList<QMenu *> menus;
    if (const auto *menu = qobject_cast<const QMenu *>(&window))
        menus.append(const_cast<QMenu *>(menu));
    for (QMenu *menu : window.findChildren<QMenu *>())
        if (!menu->title().isEmpty()) // the toolkit's own for a bar without room has none
            menus.append(menu);
    return menus;
}

/// Where the text of a widget stands, as an image in its own pixels.
QImage pictureOf(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// Best contrast of any pixel with the colour that most pixels have; the ground of a picture that holds only text.
double contrastInPicture(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    QRgb ground = 0;
    int most = -1;
    for (auto at = counts.cbegin(); at != counts.cend(); ++at)
        if (at.value() > most) {
            most = at.value();
            ground = at.key();
        }
    double best = 1.0;
    for (auto at = counts.cbegin(); at != counts.cend(); ++at)
        best = std::max(best, contrastOf(QColor(at.key()), QColor(ground)));
    return best;
}

bool hasLetters(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
}

} // namespace

TextsByPlace textsOf(const QWidget &window)
{
    TextsByPlace texts;
    const auto add = [&](const QString &place, const QString &what, const QString &text) {
        if (hasLetters(text))
            texts.insert(place + QLatin1Char(' ') + what, text);
    };
    for (const QWidget *widget : widgetsOf(window)) {
        const QString place = placeOf(*widget, window);
        if (!isToolkitsOwn(*widget)) {
            add(place, QStringLiteral("tip"), widget->toolTip());
            add(place, QStringLiteral("status tip"), widget->statusTip());
            add(place, QStringLiteral("name"), widget->accessibleName());
            add(place, QStringLiteral("description"), widget->accessibleDescription());
        }
        if (widget->isWindow() || qobject_cast<const QDockWidget *>(widget))
            add(place, QStringLiteral("title"), widget->windowTitle());
        if (const auto *label = qobject_cast<const QLabel *>(widget); label && !isContent(*label))
            add(place, QStringLiteral("text"), label->text());
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            add(place, QStringLiteral("text"), button->text());
        if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            add(place, QStringLiteral("title"), group->title());
        if (const auto *edit = qobject_cast<const QLineEdit *>(widget))
            add(place, QStringLiteral("place holder"), edit->placeholderText());
        if (const auto *tabs = qobject_cast<const QTabBar *>(widget))
            for (int i = 0; i < tabs->count(); ++i)
                add(place, QStringLiteral("tab %1").arg(i), tabs->tabText(i));
        if (const auto *header = qobject_cast<const QHeaderView *>(widget); header && header->model())
            for (int i = 0; i < header->count(); ++i)
                add(place, QStringLiteral("head %1").arg(i),
                    header->model()->headerData(i, header->orientation()).toString());
        if (const auto *header = qobject_cast<const QHeaderView *>(widget); header && header->model())
            for (int i = 0; i < header->count(); ++i)
                add(place, QStringLiteral("head tip %1").arg(i),
                    header->model()->headerData(i, header->orientation(), Qt::ToolTipRole).toString());
    }
    for (const QMenu *menu : menusOf(window)) {
        const auto actions = menu->actions();
        for (qsizetype i = 0; i < actions.size(); ++i) {
            const QString place = QStringLiteral("menu %1/%2").arg(menusOf(window).indexOf(menu)).arg(i);
            if (actions[i]->isSeparator() || actions[i]->property("content").toBool())
                continue;
            add(place, QStringLiteral("text"), actions[i]->text());
            add(place, QStringLiteral("status tip"), actions[i]->statusTip());
        }
    }
    return texts;
}

QStringList unnamedWidgets(const QWidget &window)
{
    QStringList found;
    for (const QWidget *widget : widgetsOf(window))
        if (widget != &window && widget->focusPolicy() != Qt::NoFocus && !isToolkitsOwn(*widget) &&
            !qobject_cast<const QMenuBar *>(widget) && !isEmptyTabBar(*widget) && nameOf(*widget).isEmpty())
            found.append(placeOf(*widget, window));
    return found;
}

QStringList cutTexts(const QWidget &window)
{
    QStringList found;
    const auto tell = [&](const QWidget &widget, const QString &text, int needed, int room) {
        if (needed > room)
            found.append(
                QStringLiteral("%1: \"%2\" needs %3, has %4").arg(placeOf(widget, window), text).arg(needed).arg(room));
    };
    for (QWidget *widget : widgetsOf(window)) {
        if (!widget->isVisible() || isToolkitsOwn(*widget))
            continue;
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            if (label->text().isEmpty())
                continue;
            if (label->wordWrap()) {
                tell(*label, label->text(), label->heightForWidth(label->width()), label->height());
            } else {
                tell(*label, label->text(), label->sizeHint().width(), label->width());
                tell(*label, label->text(), label->fontMetrics().height(), label->height());
            }
        } else if (qobject_cast<const QCheckBox *>(widget) || qobject_cast<const QRadioButton *>(widget) ||
                   qobject_cast<const QAbstractButton *>(widget)) {
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            if (button->text().isEmpty())
                continue;
            tell(*button, button->text(), button->minimumSizeHint().width(), button->width());
            tell(*button, button->text(), button->fontMetrics().height(), button->height());
        } else if (const auto *box = qobject_cast<const QComboBox *>(widget)) {
            QStyleOptionComboBox option;
            option.initFrom(box);
            const int room =
                box->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box).width();
            for (int i = 0; i < box->count(); ++i)
                tell(*box, box->itemText(i), box->fontMetrics().horizontalAdvance(box->itemText(i)), room);
        } else if (const auto *group = qobject_cast<const QGroupBox *>(widget)) {
            tell(*group, group->title(), group->fontMetrics().horizontalAdvance(plain(group->title())), group->width());
        } else if (const auto *header = qobject_cast<const QHeaderView *>(widget)) {
            if (header->orientation() == Qt::Horizontal && header->model())
                for (int i = 0; i < header->count(); ++i)
                    if (!header->isSectionHidden(i) &&
                        !header->model()->headerData(i, Qt::Horizontal).toString().isEmpty())
                        tell(*header, header->model()->headerData(i, Qt::Horizontal).toString(),
                             header->sectionSizeHint(i), header->sectionSize(i));
        } else if (const auto *edit = qobject_cast<const QLineEdit *>(widget)) {
            tell(*edit, edit->placeholderText(), edit->fontMetrics().horizontalAdvance(edit->placeholderText()),
                 edit->width() - 4);
            tell(*edit, edit->text(), edit->fontMetrics().height(), edit->height());
        } else if (const auto *dock = qobject_cast<const QDockWidget *>(widget)) {
            tell(*dock, dock->windowTitle(), dock->fontMetrics().horizontalAdvance(dock->windowTitle()), dock->width());
        }
    }
    return found;
}

QStringList weakTexts(QWidget &window)
{
    QStringList found;
    for (QWidget *widget : widgetsOf(window)) {
        if (!widget->isVisible() || isToolkitsOwn(*widget) || widget->size().isEmpty())
            continue;
        const QPalette palette = widget->palette();
        const auto check = [&](QPalette::ColorRole text, QPalette::ColorRole ground) {
            const auto group = widget->isEnabled() ? QPalette::Active : QPalette::Disabled;
            const double contrast = contrastOf(palette.color(group, text), palette.color(group, ground));
            if (contrast < kLeastContrast)
                found.append(QStringLiteral("%1: contrast %2 (%3 on %4)")
                                 .arg(placeOf(*widget, window))
                                 .arg(contrast, 0, 'f', 2)
                                 .arg(palette.color(group, text).name(), palette.color(group, ground).name()));
        };
        const bool isView = qobject_cast<const QAbstractItemView *>(widget) != nullptr;
        const bool isEdit = qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget) ||
                            qobject_cast<const QPlainTextEdit *>(widget);
        if (isView || isEdit) {
            check(QPalette::Text, QPalette::Base);
            check(QPalette::HighlightedText, QPalette::Highlight);
            if (isEdit)
                check(QPalette::PlaceholderText, QPalette::Base);
            if (isView)
                check(QPalette::Text, QPalette::AlternateBase);
        } else if (qobject_cast<const QPushButton *>(widget) || qobject_cast<const QComboBox *>(widget)) {
            check(QPalette::ButtonText, QPalette::Button);
        }
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        const auto *tool = qobject_cast<const QToolButton *>(widget);
        const bool showsIcon = tool && !tool->icon().isNull() && tool->toolButtonStyle() == Qt::ToolButtonIconOnly;
        if (hasLetters(text) && !showsIcon) { // the text of an icon is only told, not painted
            const double contrast = contrastInPicture(pictureOf(*widget));
            if (contrast < kLeastContrast)
                found.append(QStringLiteral("%1: \"%2\" is painted with a contrast of %3")
                                 .arg(placeOf(*widget, window), text)
                                 .arg(contrast, 0, 'f', 2));
        }
    }
    return found;
}

QStringList sharedMnemonics(const QWidget &window)
{
    QStringList found;
    using Owners = QMap<QChar, QStringList>;
    const auto tell = [&](const Owners &owners, const QString &where) {
        for (auto at = owners.cbegin(); at != owners.cend(); ++at)
            if (at.value().size() > 1)
                found.append(QStringLiteral("%1: %2 is shared by %3")
                                 .arg(where, at.key(), at.value().join(QLatin1String(", "))));
    };
    for (const QMenu *menu : menusOf(window)) {
        Owners owners;
        for (const QAction *action : menu->actions())
            if (const QChar key = mnemonicOf(action->text()); !key.isNull() && action->isVisible())
                owners[key].append(action->text());
        tell(owners, QStringLiteral("menu \"%1\"").arg(menu->title()));
    }
    Owners owners;
    const auto add = [&](const QString &text) {
        if (const QChar key = mnemonicOf(text); !key.isNull())
            owners[key].append(text);
    };
    for (const QWidget *widget : widgetsOf(window)) {
        if (!widget->isVisibleTo(&window) || qobject_cast<const QMenu *>(widget))
            continue;
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget);
            button && !button->inherits("QToolButton"))
            add(button->text());
        else if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->buddy())
            add(label->text());
        else if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            add(group->title());
        else if (const auto *tabs = qobject_cast<const QTabBar *>(widget))
            for (int i = 0; i < tabs->count(); ++i)
                add(tabs->tabText(i));
        else if (const auto *bar = qobject_cast<const QMenuBar *>(widget))
            for (const QAction *action : bar->actions())
                add(action->text());
    }
    tell(owners, QStringLiteral("window"));
    return found;
}

QStringList unreachableActions(const QWidget &window)
{
    QStringList found;
    for (const QMenu *menu : menusOf(window)) {
        if (menu->title().isEmpty())
            continue; // where a menu bar that is too narrow puts its last menus, which stay reachable by their own keys
        bool chain = true;
        for (const QAction *step = menu->menuAction(); step && chain;) {
            chain = !mnemonicOf(step->text()).isNull();
            const QAction *above = nullptr;
            for (QMenu *other : menusOf(window))
                if (!other->title().isEmpty() && other->actions().contains(const_cast<QAction *>(step)))
                    above = other->menuAction();
            step = above;
        }
        for (const QAction *action : menu->actions())
            if (!action->isSeparator() && action->shortcut().isEmpty() &&
                (!chain || mnemonicOf(action->text()).isNull()))
                found.append(QStringLiteral("menu \"%1\": \"%2\"").arg(menu->title(), action->text()));
    }
    return found;
}

QStringList untranslated(const TextsByPlace &english, const TextsByPlace &croatian)
{
    // Words that are the same in both languages, names of programs, languages, files and units.
    static const std::set<QString> shared = {
        QStringLiteral("Velmor"), QStringLiteral("English"), QStringLiteral("Hrvatski"), QStringLiteral("Info"),
        QStringLiteral("Auto"),   QStringLiteral("DXF"),     QStringLiteral("PDF"),      QStringLiteral("ACI"),
        QStringLiteral("velmor"), QStringLiteral("Zoom"),    QStringLiteral("ATV 118"),  QStringLiteral("SWMM"),
        QStringLiteral("JSON"),   QStringLiteral("CSV"),     QStringLiteral("DEL"),
    };
    QStringList found;
    for (auto at = english.cbegin(); at != english.cend(); ++at) {
        const auto other = croatian.constFind(at.key());
        if (other != croatian.constEnd() && plain(other.value()) == plain(at.value()) &&
            !shared.contains(plain(at.value())))
            found.append(QStringLiteral("%1: \"%2\"").arg(at.key(), at.value()));
    }
    return found;
}

} // namespace velmor::test
