// Colour static, tool tips and flat combo box.
#include "tests/gallery/Options.h"
#include "tests/gallery/Rows.h"

#include "controls/FlatComboBox.h"
#include "controls/MyToolTipCtrl.h"
#include "controls/WideText.h"
#include "controls/XColorStatic.h"

#include <QLabel>
#include <QLineEdit>
#include <QStyle>

#include <memory>

namespace gallery {

namespace {

QString translated(const char *text)
{
    return Options::tr(text);
}

Row colourStaticRow()
{
    auto *label = new CXColorStatic(translated("Section S-104"));
    label->SetTextColor(0xFF0000, false);
    label->SetBold(true, false);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    auto *options = new Options;
    options->Text(translated("Text"), label->text(), [=](const QString &text) { label->setText(text); });
    options->Colour(translated("Text colour"), [=](std::uint32_t colour) { label->SetTextColor(colour); });
    options->Colour(translated("Background"), [=](std::uint32_t colour) { label->SetBackgroundColor(colour); });
    options->Check(translated("Bold"), true, [=](bool on) { label->SetBold(on); });
    options->Number(translated("Size in points"), label->font().pointSize(), 6, 24,
                    [=](int size) { label->SetFont(static_cast<const wchar_t *>(nullptr), size); });
    options->Choice(translated("Stands"), {translated("Left"), translated("Centre"), translated("Right")}, 0,
                    [=](int index) {
                        constexpr Qt::Alignment kPlaces[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
                        label->setAlignment(kPlaces[index] | Qt::AlignVCenter);
                    });
    const auto margins = std::make_shared<QPoint>();
    options->Number(translated("Margin at the left"), 0, 0, 60, [=](int x) {
        margins->setX(x);
        label->SetMargins(margins->x(), margins->y());
    });
    options->Number(translated("Margin at the top"), 0, 0, 20, [=](int y) {
        margins->setY(y);
        label->SetMargins(margins->x(), margins->y());
    });
    options->EditableChoice(
        translated("Face"), {label->font().family(), QStringLiteral("Monospace"), QStringLiteral("Serif")},
        [=](const QString &face) { label->SetFont(ToWide(face).c_str(), label->font().pointSize()); });
    options->Check(translated("Icon in place of the text"), false, [=](bool on) {
        label->SetIcon(on ? label->style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
    });
    Row row;
    row.name = translated("Colour static");
    row.control = label;
    row.options = options;
    row.text = [label] { return label->text(); };
    return row;
}

Row toolTipRow()
{
    auto *frame = new QLabel(translated("Left half    |    The rest"));
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setAlignment(Qt::AlignCenter);
    frame->setFixedHeight(28);
    auto *tips = new CMyToolTipCtrl(frame);
    tips->AddWindowTool(frame, L"The window's tip");
    tips->AddRectTool(frame, L"Left half", QRect(0, 0, 95, 28), 1);
    auto *options = new Options;
    options->Text(translated("Window"), QStringLiteral("The window's tip"),
                  [=](const QString &text) { tips->AddWindowTool(frame, ToWide(text)); });
    options->Text(translated("Left half"), QStringLiteral("Left half"),
                  [=](const QString &text) { tips->AddRectTool(frame, ToWide(text), QRect(0, 0, 95, 28), 1); });
    Row row;
    row.name = translated("Tool tips");
    row.control = frame;
    row.options = options;
    row.text = [frame] { return frame->toolTip(); };
    return row;
}

Row flatComboRow()
{
    auto *combo = new CFlatComboBox;
    combo->setEditable(true);
    combo->addItems({translated("Pitched roof"), translated("Asphalt"), translated("Parks and lawns")});
    auto *options = new Options;
    options->Colour(translated("Text colour"), [=](std::uint32_t colour) { combo->SetTextColor(colour); });
    options->Colour(translated("Background"), [=](std::uint32_t colour) { combo->SetBackgroundColor(colour); });
    Row row;
    row.name = translated("Flat combo box");
    row.control = combo;
    row.options = options;
    row.text = [combo] { return combo->currentText(); };
    return row;
}

} // namespace

Group SmallRows()
{
    return {translated("Labels, tips and lists"), {colourStaticRow(), toolTipRow(), flatComboRow()}};
}

} // namespace gallery
