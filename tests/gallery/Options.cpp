#include "tests/gallery/Options.h"

#include "controls/ReadableColour.h"
#include "controls/WideText.h"
#include "controls/rules/Behavior.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSpinBox>

#include <array>

namespace gallery {

namespace {

constexpr int kFieldWidth = 150;
constexpr char kFlag[] = "flag"; ///< property of a check box

struct NamedColour {
    const char *name;
    std::uint32_t colour; ///< blue, green, red
};
constexpr auto kColours = std::to_array<NamedColour>({
    {"White", 0xFFFFFF},
    {"Pale yellow", 0xB4F4FF},
    {"Pale green", 0xCDEECD},
    {"Orange", 23551},
    {"Red", 0x0000C0},
    {"Blue", 0xFF0000},
    {"Dark blue", 0x5A2A00},
    {"Black", 0x000000},
});

QIcon swatch(std::uint32_t colour)
{
    QPixmap pixmap(14, 14);
    pixmap.fill(ColourOf(colour));
    QPainter(&pixmap).drawRect(0, 0, 13, 13);
    return pixmap;
}

} // namespace

Options::Options(QWidget *parent) : QWidget(parent), m_form(new QFormLayout(this))
{
    m_form->setContentsMargins(0, 0, 0, 0);
    m_form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    m_form->setHorizontalSpacing(16);
    m_form->setVerticalSpacing(8);
}

void Options::Row(const QString &label, QWidget *field)
{
    m_form->addRow(label, field);
}

void Options::Heading(const QString &text)
{
    auto *heading = new QLabel(text);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    if (m_form->rowCount() > 0)
        heading->setContentsMargins(0, 10, 0, 0);
    m_form->addRow(heading);
}

void Options::Check(const QString &label, bool value, std::function<void(bool)> set)
{
    auto *box = new QCheckBox(label);
    box->setChecked(value);
    connect(box, &QCheckBox::toggled, this, std::move(set));
    m_form->addRow(box);
}

void Options::Number(const QString &label, int value, int min, int max, std::function<void(int)> set)
{
    auto *box = new QSpinBox;
    box->setRange(min, max);
    box->setValue(value);
    box->setFixedWidth(kFieldWidth);
    connect(box, &QSpinBox::valueChanged, this, std::move(set));
    Row(label, box);
}

void Options::Text(const QString &label, const QString &value, std::function<void(const QString &)> set)
{
    auto *edit = new QLineEdit(value);
    edit->setFixedWidth(kFieldWidth);
    connect(edit, &QLineEdit::textChanged, this, std::move(set));
    Row(label, edit);
}

void Options::Character(const QString &label, wchar_t value, std::function<void(wchar_t)> set)
{
    auto *edit = new QLineEdit(ToQString(std::wstring(1, value)));
    edit->setMaxLength(1);
    edit->setFixedWidth(kFieldWidth);
    connect(edit, &QLineEdit::textChanged, this, [set = std::move(set)](const QString &text) {
        if (!text.isEmpty())
            set(ToWide(text).front());
    });
    Row(label, edit);
}

void Options::Choice(const QString &label, std::initializer_list<QString> choices, int index,
                     std::function<void(int)> set)
{
    auto *box = new QComboBox;
    box->addItems(QStringList(choices));
    box->setCurrentIndex(index);
    box->setFixedWidth(kFieldWidth);
    connect(box, &QComboBox::currentIndexChanged, this, std::move(set));
    Row(label, box);
}

void Options::EditableChoice(const QString &label, const QStringList &choices, std::function<void(const QString &)> set)
{
    auto *box = new QComboBox;
    box->setEditable(true);
    box->addItems(choices);
    box->setFixedWidth(kFieldWidth + 40);
    connect(box, &QComboBox::currentTextChanged, this, std::move(set));
    Row(label, box);
}

void Options::Colour(const QString &label, std::function<void(std::uint32_t)> set)
{
    auto *box = new QComboBox;
    for (const auto &[name, colour] : kColours)
        box->addItem(swatch(colour), QLatin1String(name), colour);
    box->setPlaceholderText(tr("As the desktop"));
    box->setCurrentIndex(-1);
    box->setFixedWidth(kFieldWidth);
    connect(box, &QComboBox::currentIndexChanged, this,
            [box, set = std::move(set)](int index) { set(box->itemData(index).toUInt()); });
    Row(label, box);
}

void Options::Button(const QString &label, std::function<void()> press)
{
    auto *button = new QPushButton(label);
    button->setFixedWidth(kFieldWidth);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, std::move(press));
    Row(QString(), button);
}

void AddFocusFlags(Options &options, std::function<void(unsigned add, unsigned remove)> modify)
{
    using namespace AMSEdit;
    struct FlagRow {
        const char *label;
        unsigned invalid, empty;
    };
    // Two boxes may stand for one bit: a message shows only beside the bit that takes the focus back.
    constexpr FlagRow kRows[] = {
        {"Beep", KillFocusBeepIfInvalid, KillFocusBeepIfEmpty},
        {"Repair", KillFocusRepairIfInvalid, KillFocusRepairIfEmpty},
        {"Message", KillFocusMessageIfInvalid, KillFocusMessageIfEmpty},
        {"Refocus", KillFocusRefocusIfInvalid, KillFocusRefocusIfEmpty},
    };
    options.Heading(Options::tr("When the focus leaves"));
    auto *table = new QWidget;
    auto *grid = new QGridLayout(table);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(18);
    grid->setVerticalSpacing(4);
    grid->addWidget(new QLabel(Options::tr("Invalid")), 0, 1, Qt::AlignHCenter);
    grid->addWidget(new QLabel(Options::tr("Empty")), 0, 2, Qt::AlignHCenter);
    int line = 1;
    for (const auto &[label, invalid, empty] : kRows) {
        grid->addWidget(new QLabel(Options::tr(label)), line, 0);
        int column = 1;
        for (const unsigned flag : {invalid, empty}) {
            auto *box = new QCheckBox;
            box->setAccessibleName(Options::tr(label));
            box->setProperty(kFlag, flag);
            QObject::connect(box, &QCheckBox::toggled, &options, [table, modify] {
                unsigned flags = 0;
                for (const QCheckBox *each : table->findChildren<QCheckBox *>())
                    flags |= each->isChecked() ? each->property(kFlag).toUInt() : 0;
                modify(flags, kKillFocusFlags & ~flags);
            });
            grid->addWidget(box, line, column++, Qt::AlignHCenter);
        }
        ++line;
    }
    static_cast<QFormLayout *>(options.layout())->addRow(table);
}

void AddColours(Options &options, AMSEdit::CEditBox &edit)
{
    options.Heading(Options::tr("Colours"));
    options.Colour(Options::tr("Background"), [&edit](std::uint32_t colour) { edit.SetBackgroundColor(colour); });
    options.Colour(Options::tr("Text"), [&edit](std::uint32_t colour) { edit.SetTextColor(colour); });
}

} // namespace gallery
