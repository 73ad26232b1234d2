// A tree list on the screen with pipes and areas, and an owner that remembers what it is told.
#pragma once

#include "tests/treelist/PinnedFont.h"

#include "controls/treelist/TreeListCtrl.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QWheelEvent>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// Keeps every notice, and answers with what was prepared for its code, else 0.
class JournalOwner : public CTreeListOwner {
public:
    struct Told {
        int code = 0;
        std::wstring text; ///< of the item's first column
        int column = 0;
        bool operator==(const Told &) const = default;
    };

    std::int64_t OnTreeListNotify(const TreeListNotice &notice) override
    {
        told.push_back({notice.code, notice.item ? notice.item->Text(0) : std::wstring(), notice.column});
        if (onNotice)
            onNotice(notice);
        auto &prepared = answers[notice.code];
        if (prepared.empty())
            return 0;
        const std::int64_t answer = prepared.front();
        if (prepared.size() > 1) // the last one stays
            prepared.pop_front();
        return answer;
    }
    std::vector<int> Codes() const
    {
        std::vector<int> codes;
        for (const Told &one : told)
            codes.push_back(one.code);
        return codes;
    }
    int CountOf(int code) const
    {
        int count = 0;
        for (const Told &one : told)
            count += one.code == code ? 1 : 0;
        return count;
    }

    std::vector<Told> told;
    std::map<int, std::deque<std::int64_t>> answers; ///< by code, one after the other; the last one stays
    std::function<void(const TreeListNotice &)> onNotice;
};

/// Columns: 0 the name, 160; 1 the length, 80, at the right, edited in a box; 2 the kind, 90, centred. The rows:
///   Outfall 1
///     Pipe 1-2
///       Area A
///       Area B
///     Pipe 2-3
///       Area C
///   Outfall 2        (collapsed)
///     Pipe 9-8
/// The control is 400 x 300 with rows of 20, in a window with a button beside it; neither style, font nor colours are
/// the machine's.
class TreeListTest : public testing::Test {
protected:
    static constexpr std::uint32_t kTreeStyle =
        StyleTree | StyleTreeLines | StyleTreeRootLines | StyleTreeButtons | StyleHeader;

    static void SetUpTestSuite()
    {
        if (QApplication::instance())
            return;
        static int argumentCount = 1;
        static char name[] = "treelist_test";
        static char *arguments[] = {name, nullptr};
        // Never deleted: statics of the toolkit go first at the end of the program.
        [[maybe_unused]] static auto *application = new QApplication(argumentCount, arguments);
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(LightPalette());
    }

    TreeListTest()
    {
        window.resize(520, 300);
        list = new CTreeListCtrl(&window);
        list->setFont(PinnedFont());
        other = new QPushButton(QStringLiteral("Other"), &window);
        other->setGeometry(410, 10, 100, 30);
    }
    ~TreeListTest() override
    {
        list->SetOwner(nullptr);
        QApplication::setPalette(LightPalette());
    }

    static QPalette LightPalette()
    {
        QPalette palette(QColor(0xEF, 0xEF, 0xEF));
        palette.setColor(QPalette::Window, QColor(0xEF, 0xEF, 0xEF));
        palette.setColor(QPalette::Base, Qt::white);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, Qt::black);
        palette.setColor(QPalette::Highlight, QColor(0x30, 0x8C, 0xC6));
        palette.setColor(QPalette::HighlightedText, Qt::white);
        palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xDC));
        palette.setColor(QPalette::ToolTipText, Qt::black);
        return palette;
    }

    /// Makes the control and its columns; no rows.
    void CreateEmpty(std::uint32_t style = kTreeStyle)
    {
        ASSERT_NE(list->Create(style, QRect(0, 0, 400, 300), &window, 900), 0);
        list->SetItemHeight(20);
        list->SetColumnText(0, L"Name");
        list->SetColumnWidth(0, 160);
        list->InsertColumn(L"Length", kColumnRight, 80);
        list->InsertColumn(L"Kind", kColumnCentred, 90);
        list->SetColumnModify(1, kEditorEdit);
        list->SetOwner(&owner);
    }
    CTreeListItem *Add(const std::wstring &name, CTreeListItem *parent, const std::wstring &length = L"",
                       const std::wstring &kind = L"")
    {
        CTreeListItem *item = list->InsertItem(name, parent, TreeListLast());
        list->SetItemText(item, 1, length);
        list->SetItemText(item, 2, kind);
        return item;
    }
    /// The control with the small tree, on the screen, with the focus; nothing of it is in the journal.
    void CreateTree(std::uint32_t style = kTreeStyle)
    {
        CreateEmpty(style);
        outfall1 = Add(L"Outfall 1", TreeListRoot(), L"", L"outfall");
        pipe12 = Add(L"Pipe 1-2", outfall1, L"42.50", L"section");
        areaA = Add(L"Area A", pipe12, L"0.25", L"area");
        areaB = Add(L"Area B", pipe12, L"1.75", L"area");
        pipe23 = Add(L"Pipe 2-3", outfall1, L"17.00", L"section");
        areaC = Add(L"Area C", pipe23, L"3.10", L"area");
        outfall2 = Add(L"Outfall 2", TreeListRoot(), L"", L"outfall");
        pipe98 = Add(L"Pipe 9-8", outfall2, L"8.00", L"section");
        for (CTreeListItem *item : {outfall1, pipe12, pipe23})
            list->Expand(item, kExpand);
        Show();
    }
    /// count rows without children: "Row 0" and so on.
    void AddRows(int count)
    {
        for (int row = 0; row < count; ++row)
            list->InsertItem(L"Row " + std::to_wstring(row), TreeListRoot(), TreeListLast());
    }
    void Show()
    {
        window.show();
        window.activateWindow();
        list->setFocus();
        Settle();
        owner.told.clear();
    }
    static void Settle()
    {
        for (int round = 0; round < 4; ++round)
            QApplication::processEvents();
    }

    // --- Places, in pixels of the viewport ---

    /// The middle of a part of a row's cell in column 0; of its text for kHitText.
    QPoint PlaceOf(CTreeListItem *item, int part = kHitText, int column = 0) const
    {
        QRect cell;
        list->GetItemRect(item, column, cell, false);
        const TreeListParts parts =
            PartsOf(list->GetCell(item, column),
                    {cell.left(), cell.top(), cell.left() + cell.width(), cell.top() + cell.height()});
        const TreeListRect &place = part == kHitButton  ? parts.button
                                    : part == kHitCheck ? parts.check
                                    : part == kHitLock  ? parts.lock
                                    : part == kHitImage ? parts.image
                                                        : parts.text;
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }
    QRect RowOf(CTreeListItem *item) const
    {
        QRect row;
        list->GetItemRect(item, row);
        return row;
    }
    QImage Picture() const { return list->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    // --- What a person does ---

    void Mouse(QEvent::Type type, const QPoint &point, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QWidget *at = list->viewport();
        QMouseEvent event(type, QPointF(point), QPointF(at->mapToGlobal(point)), button, buttons, keys);
        QApplication::sendEvent(at, &event);
    }
    void Press(const QPoint &point, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        Mouse(QEvent::MouseButtonPress, point, Qt::LeftButton, Qt::LeftButton, keys);
    }
    void Release(const QPoint &point, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        Mouse(QEvent::MouseButtonRelease, point, Qt::LeftButton, Qt::NoButton, keys);
    }
    void Click(const QPoint &point, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        Press(point, keys);
        Release(point, keys);
    }
    void DoubleClick(const QPoint &point)
    {
        Click(point);
        Mouse(QEvent::MouseButtonDblClick, point, Qt::LeftButton, Qt::LeftButton);
        Release(point);
    }
    void Move(const QPoint &point, Qt::MouseButtons buttons = Qt::NoButton)
    {
        Mouse(QEvent::MouseMove, point, Qt::NoButton, buttons);
    }
    /// To what has the focus, as the platform sends it: first asked whether it is a shortcut.
    bool Key(int key, Qt::KeyboardModifiers keys = Qt::NoModifier, const QString &text = {})
    {
        QWidget *at = QApplication::focusWidget() ? QApplication::focusWidget() : list;
        QKeyEvent ask(QEvent::ShortcutOverride, key, keys, text);
        ask.ignore();
        QApplication::sendEvent(at, &ask);
        QKeyEvent down(QEvent::KeyPress, key, keys, text);
        QApplication::sendEvent(at, &down);
        const bool taken = down.isAccepted();
        if (QWidget *behind = QApplication::focusWidget()) {
            QKeyEvent up(QEvent::KeyRelease, key, keys, text);
            QApplication::sendEvent(behind, &up);
        }
        return taken;
    }
    /// Letters one by one.
    void Type(const QString &text)
    {
        for (const QChar &letter : text)
            Key(0, Qt::NoModifier, QString(letter));
    }
    /// notches > 0: away from the person, which scrolls up.
    void Wheel(int notches)
    {
        const QPointF at(50, 50);
        QWheelEvent event(at, list->viewport()->mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(list->viewport(), &event);
    }

    JournalOwner owner;
    QWidget window;
    CTreeListCtrl *list = nullptr;
    QPushButton *other = nullptr;
    CTreeListItem *outfall1 = nullptr, *pipe12 = nullptr, *areaA = nullptr, *areaB = nullptr, *pipe23 = nullptr,
                  *areaC = nullptr, *outfall2 = nullptr, *pipe98 = nullptr;
};
