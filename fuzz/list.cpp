// The extended list in a dialog under random clicks, keys, edits, choices and refills, also inside its own notices. Its
// records stay in step with its rows, one for each column that there was at the row's insertion; a column of exclusive
// boxes that is only clicked has one set at most; the count of ticked boxes is right; a numeric cell that is only
// edited holds a number within the limits.
#include "contracts/HostDialog.h"
#include "controls/XComboList.h"
#include "controls/XListCtrl.h"
#include "fuzz/Require.h"
#include "tests/controls/EditOps.h"
#include "tests/controls/ListClicks.h"
#include "tests/controls/ListHost.h"

#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <cstdlib>
#include <iterator>
#include <new>

using edit_ops::Bytes;

namespace {

enum Column { kName, kFree, kOneOf, kNumber, kWords, kChoice, kColor, kHatch, kLayer, kColumns };
constexpr int kMostRows = 12;
constexpr int kDeepestNotice = 3;

const std::vector<std::wstring> &choices()
{
    static const std::vector<std::wstring> strings = {L"Asphalt", L"", L"Brick", L"Brass", L"Clay"};
    return strings;
}

class ListUnderFuzz : public CAdUiBaseDialog {
public:
    explicit ListUnderFuzz(Bytes &bytes) : m_bytes(bytes), m_list(new CXListCtrl), m_other(new QPushButton)
    {
        auto *column = new QVBoxLayout(this);
        column->addWidget(m_list);
        column->addWidget(m_other);
        for (int made = 0; made < kColumns; ++made)
            m_list->InsertColumn(made, L"C", 40);
        m_list->AddEditColumn(kNumber);
        m_list->AddEditColumn(kWords);
        m_list->AddColorColumn(kColor);
        m_list->AddHatchColumn(kHatch);
        m_list->AddLayerColumn(kLayer);
        listHost().color = [this](int &color) {
            color = static_cast<int>(m_bytes.Next());
            return color % 2 == 0;
        };
        listHost().pattern = [this](std::wstring &pattern) {
            pattern = L"ANSI31";
            return m_bytes.Below(2) == 0;
        };
        Refill();
        resize(440, 260);
        show();
    }

    void Run()
    {
        while (!m_bytes.AtEnd()) {
            Step();
            Check();
        }
        QCoreApplication::processEvents();
        Check();
    }

    std::intptr_t OnWindowMessage(unsigned message, std::uintptr_t row, std::intptr_t column) override
    {
        require(message == CXListCtrl::DataChangedMessage(), "another message");
        require(static_cast<std::intptr_t>(row) >= 0 && column >= 0, "a notice of no cell");
        if (m_depth >= kDeepestNotice || m_bytes.AtEnd())
            return 0;
        ++m_depth;
        switch (m_bytes.Below(6)) {
        case 0:
        case 1:
            Refill();
            break;
        case 2:
            Step();
            break;
        case 3:
            DeleteAll();
            break;
        default:
            break;
        }
        --m_depth;
        return 0;
    }

private:
    int AnyRow() { return static_cast<int>(m_bytes.Below(static_cast<unsigned>(m_list->GetItemCount()) + 2)) - 1; }
    int AnyColumn() { return static_cast<int>(m_bytes.Below(m_columns + 2)) - 1; }

    void Insert(int row)
    {
        const bool poor = m_bytes.Below(8) == 0;
        if (poor)
            m_list->SetRecordMaker([](std::size_t) -> std::vector<CellRecord> { throw std::bad_alloc(); });
        else
            m_list->SetRecordMaker([](std::size_t count) { return std::vector<CellRecord>(count); });
        const bool fits = row >= 0 && row <= m_list->GetItemCount();
        const int made = m_list->InsertItem(row, L"row");
        require(made == (fits && !poor ? row : -1), "the row's number");
        if (!fits)
            return;
        m_records.insert(m_records.begin() + row, poor ? 0 : static_cast<int>(m_columns));
        m_list->SetCheckbox(row, kFree, static_cast<int>(m_bytes.Below(2)), false);
        m_list->SetCheckbox(row, kOneOf, 0, true);
        m_list->SetItemText(row, kNumber, L"5.000");
        m_list->SetCellNumeric(row, kNumber);
        m_list->SetComboBox(row, kChoice, true, &choices(), static_cast<int>(m_bytes.Below(6)),
                            static_cast<int>(m_bytes.Below(7)) - 1);
        m_list->SetItemText(row, kColor, L"3");
        m_list->SetItemData(row, static_cast<std::uint64_t>(row));
    }

    void DeleteAll()
    {
        m_list->DeleteAllItems();
        m_records.clear();
    }

    void Refill()
    {
        DeleteAll();
        for (unsigned rows = m_bytes.Below(6); rows > 0; --rows)
            Insert(m_list->GetItemCount());
    }

    void DeleteOne()
    {
        const int row = AnyRow();
        const bool there = row >= 0 && row < m_list->GetItemCount();
        require(m_list->DeleteItem(row) == there, "deleting a row");
        if (there)
            m_records.erase(m_records.begin() + row);
    }

    void Click()
    {
        const QPoint at(static_cast<int>(m_bytes.Next()) * 7 / 4, static_cast<int>(m_bytes.Next()));
        const unsigned how = m_bytes.Below(6);
        QWidget &viewport = *m_list->viewport();
        list_clicks::sendMouse(viewport, how == 0 ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, at);
        if (how != 1)
            list_clicks::sendMouse(viewport, QEvent::MouseButtonRelease, how == 2 ? at + QPoint(0, 40) : at);
    }

    void Key()
    {
        static constexpr int kKeys[] = {Qt::Key_Up,     Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Home,
                                        Qt::Key_End,    Qt::Key_F2,   Qt::Key_Space,  Qt::Key_F4,     Qt::Key_PageDown,
                                        Qt::Key_PageUp, Qt::Key_Tab,  Qt::Key_Return, Qt::Key_Escape, Qt::Key_B};
        const int key = kKeys[m_bytes.Below(std::size(kKeys))];
        const QString text = key == Qt::Key_B ? QStringLiteral("b") : QString();
        QWidget *target = m_list->GetLayerList();
        if (!target && m_list->GetPopup())
            target = m_list->GetPopup()->GetListBox();
        if (!target && m_list->IsEditing())
            target = m_list->GetEditBox();
        list_clicks::pressKey(target ? *target : *m_list, key, text);
    }

    void Popup()
    {
        CXComboList *popup = m_list->GetPopup();
        if (!popup)
            return;
        QWidget &box = *popup->GetListBox()->viewport();
        const QPoint at(static_cast<int>(m_bytes.Below(40)), static_cast<int>(m_bytes.Below(100)));
        const QPointer<CXComboList> alive = popup;
        switch (m_bytes.Below(7)) {
        case 0:
            list_clicks::sendMouse(box, QEvent::MouseButtonPress, at);
            if (alive)
                list_clicks::sendMouse(box, QEvent::MouseButtonRelease, at);
            break;
        case 1:
            list_clicks::sendMouse(box, QEvent::MouseButtonRelease, at);
            break;
        case 2:
            list_clicks::sendMouse(*popup, QEvent::MouseButtonPress, at - QPoint(20, 20));
            break;
        case 3:
            popup->GetScrollBar()->setValue(static_cast<int>(m_bytes.Below(8)));
            break;
        case 4: {
            QFocusEvent loss(QEvent::FocusOut, Qt::OtherFocusReason);
            QApplication::sendEvent(popup->GetListBox(), &loss);
            break;
        }
        case 5:
            popup->hide();
            break;
        default:
            m_list->OnPopupMessage(0xC000 + m_bytes.Below(6));
            break;
        }
    }

    void Edit()
    {
        static const char *const texts[] = {"1", "12.5", "0",          "-4",       "letters", "1000.0001",
                                            "",  "1'00", "7.12345678", "99999999", "0.001"};
        switch (m_bytes.Below(6)) {
        case 0:
            m_list->EditCell(AnyRow(), AnyColumn());
            break;
        case 1:
            m_list->CommitEditing();
            break;
        case 2:
            m_list->AbandonEditing();
            break;
        case 3:
            m_other->setFocus();
            break;
        default:
            if (m_list->IsEditing())
                m_list->GetEditBox()->setText(QString::fromLatin1(texts[m_bytes.Below(std::size(texts))]));
            break;
        }
    }

    void Set()
    {
        const int row = AnyRow(), column = AnyColumn();
        switch (m_bytes.Below(9)) {
        case 0:
            if (column != kNumber)
                m_list->SetItemText(row, column, L"text");
            break;
        case 1:
            if (column != kOneOf)
                m_list->SetCheckbox(row, column, static_cast<int>(m_bytes.Below(4)) - 1, false);
            break;
        case 2:
            if (column != kNumber)
                m_list->SetComboBox(row, column, m_bytes.Below(2) == 0, &choices(), 3, -1);
            break;
        case 3:
            m_list->SetEnabled(row, m_bytes.Below(3) != 0);
            break;
        case 4:
            m_list->SetBold(row, column, m_bytes.Below(2) == 0);
            break;
        case 5:
            m_list->SetCurSel(row);
            break;
        case 6:
            m_list->SetHeaderCheckedState(column, static_cast<int>(m_bytes.Below(3)) - 1);
            break;
        case 7:
            m_list->SetColumnWidth(column, static_cast<int>(m_bytes.Below(80)) - 2);
            break;
        default:
            if (m_columns < kColumns + 2) {
                m_list->InsertColumn(static_cast<int>(m_columns), L"late", 30);
                ++m_columns;
            }
            break;
        }
    }

    void Step()
    {
        const unsigned what = m_bytes.Next();
        if (what < 90) {
            Click();
        } else if (what < 140) {
            Key();
        } else if (what < 170) {
            Popup();
        } else if (what < 200) {
            Edit();
        } else if (what < 215) {
            Set();
        } else if (what < 222) {
            if (m_list->GetItemCount() < kMostRows)
                Insert(AnyRow() + 1);
        } else if (what < 228) {
            DeleteOne();
        } else if (what < 232) {
            Refill();
        } else if (what < 238) {
            m_list->OpenPopup(AnyRow(), AnyColumn());
        } else if (what < 244) {
            const QModelIndex index = m_list->model()->index(AnyRow(), AnyColumn());
            if (index.isValid())
                m_list->model()->setData(index, 2, m_bytes.Below(2) == 0 ? Qt::CheckStateRole : Qt::EditRole);
        } else if (what < 250) {
            for (auto *button : m_list->viewport()->findChildren<QPushButton *>()) {
                if (button->isVisible())
                    button->click();
            }
        } else if (what < 252) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        } else if (what < 254) {
            m_list->grab();
        } else {
            setVisible(!isVisible());
        }
    }

    void Check()
    {
        const CListCells &cells = m_list->GetCells();
        require(cells.GetItemCount() == static_cast<int>(m_records.size()), "rows");
        require(m_list->model()->rowCount() == cells.GetItemCount(), "rows of the model");
        require(m_list->GetColumnCount() == static_cast<int>(m_columns), "columns");
        require(m_list->GetCurSel() < cells.GetItemCount(), "selection");
        std::vector<int> ticked(m_columns, 0);
        for (int row = 0; row < cells.GetItemCount(); ++row) {
            require(cells.GetRecordCount(row) == m_records[static_cast<std::size_t>(row)], "records");
            for (unsigned column = 0; column < m_columns; ++column)
                ticked[column] += cells.GetCheckbox(row, static_cast<int>(column)) == 1 ? 1 : 0;
            if (cells.HasRecords(row))
                RequireNumber(cells.GetItemText(row, kNumber));
        }
        for (unsigned column = 0; column < m_columns; ++column)
            require(ticked[column] == m_list->CountCheckedItems(static_cast<int>(column)), "count of ticks");
        require(ticked[kOneOf] <= 1, "two of one");
    }

    /// Three decimals, within the limits.
    static void RequireNumber(const std::wstring &text)
    {
        wchar_t *end = nullptr;
        const double value = std::wcstod(text.c_str(), &end);
        require(*end == 0 && value >= 0.001 && value <= 1000.0, "number");
        require(text.size() >= 5 && text[text.size() - 4] == L'.', "three decimals");
    }

    Bytes &m_bytes;
    CXListCtrl *m_list;
    QPushButton *m_other;
    unsigned m_columns = kColumns;
    std::vector<int> m_records; ///< how many each row got
    int m_depth = 0;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static int count = 1;
    static char name[] = "fuzz_list";
    static char *arguments[] = {name, nullptr};
    new QApplication(count, arguments); // lives as long as the program
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size > 600)
        return 0; // long inputs tell nothing that shorter ones do not
    Bytes bytes(data, size);
    {
        ListUnderFuzz dialog(bytes);
        dialog.Run();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
