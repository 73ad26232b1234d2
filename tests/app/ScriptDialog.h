// A dialog with one control of each kind, and a module's command that opens it.
#pragma once

#include "contracts/HostDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <stdexcept>
#include <string>
#include <vector>

namespace velmor::test {

class ScriptDialog : public CAdUiBaseDialog {
public:
    ScriptDialog()
    {
        auto *layout = new QVBoxLayout(this);
        const auto add = [&](auto *widget, int id) {
            widget->setProperty(kControlIdProperty, id);
            layout->addWidget(widget);
            return widget;
        };
        add(new QPushButton(QStringLiteral("Close")), 2);
        connect(add(new QPushButton(QStringLiteral("Count")), 10), &QPushButton::clicked, this,
                [this] { label->setText(QString::number(++clicks)); });
        label = add(new QLabel(QStringLiteral("idle")), 11);
        auto *check = add(new QCheckBox(QStringLiteral("Zoom")), 12);
        connect(check, &QCheckBox::clicked, this, [this] { ++checkClicks; });
        numbers = add(new QComboBox, 13);
        numbers->addItem(QStringLiteral("by section"), 30);
        numbers->addItem(QStringLiteral("by length"), 10);
        connect(numbers, &QComboBox::activated, this, [this](int index) { activated.push_back(index); });
        plain = add(new QComboBox, 14);
        plain->addItems({QStringLiteral("low"), QStringLiteral("high")});
        edit = add(new QLineEdit, 15);
        connect(edit, &QLineEdit::editingFinished, this, [this] { ++edits; });
        auto *readOnly = add(new QLineEdit(QStringLiteral("fixed")), 16);
        readOnly->setReadOnly(true);
        table = add(new QTableWidget(3, 2), 17);
        table->setSelectionBehavior(QAbstractItemView::SelectRows);
        for (int row = 0; row < 3; ++row)
            table->setItem(row, 1, new QTableWidgetItem(QStringLiteral("r%1").arg(row)));
        tree = add(new QTreeWidget, 23);
        tree->setHeaderHidden(true);
        for (const char *name : {"first", "second"}) {
            auto *item = new QTreeWidgetItem(tree, {QLatin1String(name)});
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsEditable);
            item->setCheckState(0, Qt::Unchecked);
            new QTreeWidgetItem(item, {QStringLiteral("inner")});
        }
        add(new QPushButton(QStringLiteral("Off")), 18)->setEnabled(false);
        add(new QPushButton(QStringLiteral("Hidden")), 19)->hide();
        connect(add(new QPushButton(QStringLiteral("Pick")), 20), &QPushButton::clicked, this, [this] { pick(); });
        connect(add(new QPushButton(QStringLiteral("Fail")), 22), &QPushButton::clicked, this,
                [this] { RunHandler([] { throw std::runtime_error("the pump is dry"); }); });
        connect(add(new QPushButton(QStringLiteral("Inner")), 21), &QPushButton::clicked, this, [this] {
            ScriptDialog inner;
            inner.DoModal();
            innerClicks = inner.clicks;
        });
    }
    void pick()
    {
        BeginEditorCommand();
        ads_point point = {0, 0, 0};
        const int status = acedGetPoint(nullptr, L"Point", point);
        CompleteEditorCommand(1);
        label->setText(status == RTNORM ? QStringLiteral("%1 %2").arg(point[0]).arg(point[1])
                                        : QStringLiteral("status %1").arg(status));
        acedAlert(L"picked");
    }

    QLabel *label = nullptr;
    QComboBox *numbers = nullptr, *plain = nullptr;
    QLineEdit *edit = nullptr;
    QTableWidget *table = nullptr;
    QTreeWidget *tree = nullptr;
    int clicks = 0, checkClicks = 0, edits = 0, innerClicks = 0;
    std::vector<int> activated;
};

} // namespace velmor::test
