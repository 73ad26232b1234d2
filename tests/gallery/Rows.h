// What the gallery's window asks of a control: its name, the control itself, its value and its options.
#pragma once

#include "controls/rules/CalendarTime.h"
#include "controls/rules/RegionalSettings.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace gallery {

struct Row {
    QString name;
    QWidget *control = nullptr;
    QWidget *options = nullptr;
    std::function<QString()> text;
    std::function<QString()> value; ///< none: the control has no value beside its text
    std::function<bool()> valid;    ///< none: every text is valid
    bool wide = false;              ///< stands over the readouts as well, which it has none of
};

/// Rows of one kind, in order.
struct Group {
    QString title;
    std::vector<Row> rows;
};

/// What every edit is made with.
struct Setting {
    const AMSEdit::IRegionalSettings &regional;
    /// Told of every beep, with the control's name.
    std::function<void(const QString &what)> note;
};

Group NumberRows(const Setting &setting);
Group TextRows(const Setting &setting);
Group DateRows(const Setting &setting);
Group SmallRows();
Group ListRows(const Setting &setting);
Group TreeRows(const Setting &setting);

} // namespace gallery
