#include "host/editor/dialogs/SettingsDialog.h"

#include "host/editor/Captions.h"
#include "host/editor/dialogs/HostDialogs.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace velmor {

namespace {

constexpr int kResetOffset = 100; ///< from a field's number to its reset button's

/// A number in as few digits as say it; a comma and a point both begin the fraction.
class NumberBox final : public QDoubleSpinBox {
public:
    using QDoubleSpinBox::QDoubleSpinBox;
    QString textFromValue(double number) const override { return QString::number(number, 'g', 15); }
    double valueFromText(const QString &text) const override { return pointed(text).toDouble(); }
    QValidator::State validate(QString &text, int &) const override
    {
        bool isNumber = false;
        const double number = pointed(text).toDouble(&isNumber);
        if (isNumber && number >= minimum() && number <= maximum())
            return QValidator::Acceptable;
        static const QRegularExpression onTheWay(QStringLiteral("^[0-9]*[.,]?[0-9]*(e[+-]?[0-9]*)?$"));
        return onTheWay.match(text).hasMatch() ? QValidator::Intermediate : QValidator::Invalid;
    }

private:
    static QString pointed(QString text) { return text.replace(QLatin1Char(','), QLatin1Char('.')).trimmed(); }
};

bool isColour(const SettingSpec &spec)
{
    return std::holds_alternative<int>(spec.standard) && spec.lowest == 1 && spec.highest == 255;
}

QPixmap swatchOf(int colorIndex)
{
    const std::uint32_t bgr = acedGetRGB(colorIndex);
    QPixmap swatch(20, 14);
    swatch.fill(
        QColor(static_cast<int>(bgr & 0xff), static_cast<int>(bgr >> 8 & 0xff), static_cast<int>(bgr >> 16 & 0xff)));
    return swatch;
}

QString valueText(const SettingValue &value)
{
    if (const int *number = std::get_if<int>(&value))
        return QString::number(*number);
    if (const double *number = std::get_if<double>(&value))
        return QString::number(*number, 'g', 15);
    return QStringLiteral("\"%1\"").arg(QString::fromStdWString(std::get<std::wstring>(value)));
}

} // namespace

/// One key with its widget. It is set, or it stands at its default.
class SettingField {
public:
    SettingField(const SettingSpec &spec, SettingGroup shownIn)
        : m_spec(spec),
          m_standard(shownIn == kGroupReview && spec.reviewStandard ? *spec.reviewStandard : spec.standard),
          m_before(Services::instance().settings().value(spec.key)), m_isSet(m_before.has_value())
    {
    }

    QWidget *makeWidget(QWidget *parent, int controlId)
    {
        if (const int *number = std::get_if<int>(&m_standard); number && m_spec.lowest == 0 && m_spec.highest == 1) {
            m_check = new QCheckBox(parent);
            QObject::connect(m_check, &QCheckBox::toggled, m_check, [this] { touched(); });
            m_widget = m_check;
        } else if (number) {
            m_whole = new QSpinBox(parent);
            m_whole->setRange(static_cast<int>(m_spec.lowest), static_cast<int>(m_spec.highest));
            QObject::connect(m_whole, &QSpinBox::valueChanged, m_whole, [this] { touched(); });
            m_widget = m_whole;
        } else if (std::holds_alternative<double>(m_standard)) {
            m_number = new NumberBox(parent);
            m_number->setDecimals(12);
            m_number->setRange(m_spec.lowest, m_spec.highest);
            m_number->setSingleStep(0.5);
            QObject::connect(m_number, &QDoubleSpinBox::valueChanged, m_number, [this] { touched(); });
            m_widget = m_number;
        } else {
            m_text = new QLineEdit(parent);
            m_text->setMaxLength(250);
            QObject::connect(m_text, &QLineEdit::textEdited, m_text, [this] { touched(); });
            m_widget = m_text;
        }
        m_widget->setProperty(kControlIdProperty, controlId);
        show(m_before.value_or(m_standard));
        return m_widget;
    }

    const SettingSpec &spec() const { return m_spec; }
    const SettingValue &standard() const { return m_standard; }
    QWidget *widget() const { return m_widget; }
    std::function<void()> onChange;

    SettingValue value() const
    {
        if (m_check)
            return m_check->isChecked() ? 1 : 0;
        if (m_whole)
            return m_whole->value();
        if (m_number)
            return m_number->value();
        return m_text->text().toStdWString();
    }

    void setValue(const SettingValue &value)
    {
        show(value);
        m_isSet = true;
        tell();
    }

    void reset()
    {
        show(m_standard);
        m_isSet = false;
        tell();
    }

    /// Writes the key when it says something else than before.
    SaveResult apply() const
    {
        const std::optional<SettingValue> now = m_isSet ? std::optional(value()) : std::nullopt;
        if (now == m_before)
            return {};
        return now ? Services::instance().set(m_spec.key, *now) : Services::instance().reset(m_spec.key);
    }
    /// The way back, after another key could not be kept.
    void restore() const
    {
        if (m_before)
            Services::instance().set(m_spec.key, *m_before);
        else
            Services::instance().reset(m_spec.key);
    }

private:
    void show(const SettingValue &value)
    {
        m_showing = true;
        if (m_check)
            m_check->setChecked(std::get<int>(value) != 0);
        else if (m_whole)
            m_whole->setValue(std::get<int>(value));
        else if (m_number)
            m_number->setValue(std::get<double>(value));
        else
            m_text->setText(QString::fromStdWString(std::get<std::wstring>(value)));
        m_showing = false;
    }
    void touched()
    {
        m_isSet = m_isSet || !m_showing;
        tell();
    }
    void tell() const
    {
        if (onChange)
            onChange();
    }

    const SettingSpec &m_spec;
    SettingValue m_standard;
    std::optional<SettingValue> m_before;
    bool m_isSet, m_showing = false;
    QWidget *m_widget = nullptr;
    QCheckBox *m_check = nullptr;
    QSpinBox *m_whole = nullptr;
    NumberBox *m_number = nullptr;
    QLineEdit *m_text = nullptr;
};

SettingsDialog::SettingsDialog(const std::wstring &group, QWidget *parent)
    : DefaultButtonDialog(parent), m_problem(new QLabel(this))
{
    const auto shown = settingGroup(group) == kGroupReview ? kGroupReview : kGroupDefinition;
    setWindowTitle(uiString(shown == kGroupReview ? "ui.settings.review" : "ui.settings.definition"));
    auto *content = new QWidget(this);
    auto *boxes = new QVBoxLayout(content);
    for (const bool others : {false, true}) {
        auto *box = new QGroupBox(uiString(others ? "ui.settings.others" : "ui.settings.these"), content);
        auto *form = new QFormLayout(box);
        form->setRowWrapPolicy(QFormLayout::WrapLongRows);
        std::size_t row = 0;
        for (const SettingSpec &spec : settingTable()) {
            const bool isShown = (spec.groups & shown) != 0;
            if ((spec.groups & (kGroupDefinition | kGroupReview)) != 0 && isShown != others)
                addField(spec, row, shown, *form);
            ++row;
        }
        boxes->addWidget(box);
    }
    boxes->addStretch();

    auto *scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    scroll->setFocusPolicy(Qt::NoFocus);
    m_problem->setWordWrap(true);
    m_problem->hide();

    auto *ok = new QPushButton(uiString("ui.button.ok"), this);
    auto *cancel = new QPushButton(uiString("ui.button.cancel"), this);
    auto *defaults = new QPushButton(uiString("ui.button.defaults"), this);
    ok->setProperty(kControlIdProperty, static_cast<int>(kControlOk));
    cancel->setProperty(kControlIdProperty, static_cast<int>(kControlCancel));
    defaults->setProperty(kControlIdProperty, static_cast<int>(kControlDefaults));
    ok->setDefault(true);
    connect(defaults, &QPushButton::clicked, this, [this] { resetAll(); });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(defaults);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto *column = new QVBoxLayout(this);
    column->addWidget(scroll, 1);
    column->addWidget(m_problem);
    column->addLayout(buttons);
    // As high as its content, so that nothing scrolls where the screen has room.
    const QSize wish = content->sizeHint();
    resize(wish.width() + 60, std::min(wish.height() + 90, 900));
}

SettingsDialog::~SettingsDialog() = default;

void SettingsDialog::addField(const SettingSpec &spec, std::size_t row, SettingGroup shownIn, QFormLayout &form)
{
    SettingField &field = *m_fields.emplace_back(std::make_unique<SettingField>(spec, shownIn));
    const int number = kControlSettings + static_cast<int>(row);
    auto *line = new QWidget(form.parentWidget());
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    const QString caption = uiString(spec.caption);
    QWidget *widget = field.makeWidget(line, number);
    widget->setAccessibleName(caption);
    QString tip = uiString("ui.settings.tip.default").arg(valueText(field.standard()));
    if (!std::holds_alternative<std::wstring>(spec.standard))
        tip += QLatin1Char('\n') + uiString("ui.settings.tip.limits").arg(spec.lowest).arg(spec.highest);
    widget->setToolTip(tip);
    layout->addWidget(widget, 1);
    if (isColour(spec)) {
        auto *swatch = new QToolButton(line);
        swatch->setAccessibleName(uiString("ui.settings.choose").arg(caption));
        swatch->setToolTip(swatch->accessibleName());
        swatch->setIconSize({20, 14});
        field.onChange = [&field, swatch] { swatch->setIcon(swatchOf(std::get<int>(field.value()))); };
        field.onChange();
        connect(swatch, &QToolButton::clicked, this, [&field] {
            if (int index = std::get<int>(field.value()); runColorDialog(index, false, 7))
                field.setValue(index);
        });
        layout->addWidget(swatch);
    }
    auto *reset = new QToolButton(line);
    reset->setText(QStringLiteral("\u21ba"));
    reset->setAccessibleName(uiString("ui.settings.reset").arg(caption));
    reset->setToolTip(reset->accessibleName());
    reset->setProperty(kControlIdProperty, number + kResetOffset);
    connect(reset, &QToolButton::clicked, this, [&field] { field.reset(); });
    layout->addWidget(reset);
    auto *label = new QLabel(caption, form.parentWidget());
    label->setBuddy(widget);
    form.addRow(label, line);
}

void SettingsDialog::resetAll()
{
    for (const auto &field : m_fields)
        field->reset();
}

void SettingsDialog::OnOK()
{
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const SaveResult saved = m_fields[i]->apply();
        if (saved)
            continue;
        for (std::size_t back = i + 1; back-- > 0;)
            m_fields[back]->restore();
        m_problem->setText(QString::fromStdString(saved.message));
        m_problem->show();
        m_fields[i]->widget()->setFocus();
        return;
    }
    EndDialog(kOk);
}

bool runSettingsDialog(const std::wstring &group)
{
    return canShowDialogs() && SettingsDialog(group, dialogOwner()).DoModal() == CAdUiBaseDialog::kOk;
}

} // namespace velmor
