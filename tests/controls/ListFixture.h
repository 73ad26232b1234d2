// An extended list on the screen, without a dialog: what it tells is collected.
#pragma once

#include "tests/controls/ListClicks.h"

#include "controls/ReadableColour.h"
#include "controls/XComboList.h"
#include "controls/XHeaderCtrl.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class ListWidgetTest : public testing::Test {
protected:
    using Place = std::pair<int, int>;

    static void SetUpTestSuite()
    {
        if (QApplication::instance())
            return;
        static int argumentCount = 1;
        static char name[] = "list_widget_test";
        static char *arguments[] = {name, nullptr};
        // Never deleted: statics of the toolkit go first at the end of the program.
        [[maybe_unused]] static auto *application = new QApplication(argumentCount, arguments);
    }

    ListWidgetTest()
    {
        auto *column = new QVBoxLayout(&window);
        list = new CXListCtrl;
        other = new QPushButton(QStringLiteral("Other"));
        column->addWidget(list);
        column->addWidget(other);
        m_telling = QObject::connect(list, &CXListCtrl::CellChanged, list, [this](int row, int cell) {
            told.emplace_back(row, cell);
            if (onTold)
                onTold();
        });
        window.resize(420, 360);
    }
    ~ListWidgetTest() override
    {
        QObject::disconnect(m_telling); // a window that goes ends what is edited in it
        QApplication::setPalette(m_desktop);
    }

    /// Name (120), value (100, at the right) and kind (100, centred), and rows of these names.
    void Fill(const std::vector<std::wstring> &names)
    {
        list->InsertColumn(0, L"Name", 120);
        list->InsertColumn(1, L"Value", 100, kFormatRight);
        list->InsertColumn(2, L"Kind", 100, kFormatCenter);
        for (const std::wstring &name : names)
            list->InsertItem(list->GetItemCount(), name);
    }
    void Show()
    {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }
    /// Column 1 edited in place.
    void FillEdited(const std::vector<std::wstring> &names, bool numeric)
    {
        Fill(names);
        list->AddEditColumn(1);
        for (int row = 0; row < list->GetItemCount(); ++row)
            list->SetCellNumeric(row, 1, numeric);
        Show();
    }
    std::wstring Text(int row, int column) const { return list->GetItemText(row, column); }
    QImage Picture() const { return list->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    static void SetDesktop(const QColor &window, const QColor &base, const QColor &text)
    {
        QPalette palette(window);
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::Base, base);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, text);
        palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
        palette.setColor(QPalette::HighlightedText, Qt::white);
        QApplication::setPalette(palette);
    }

    QWidget window;
    CXListCtrl *list;
    QPushButton *other;
    std::vector<Place> told;
    std::function<void()> onTold;

private:
    QMetaObject::Connection m_telling;
    QPalette m_desktop = QApplication::palette();
};
