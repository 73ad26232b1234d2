// The tree list with a small network of pipes and areas, every bit of its style switchable, and a second one to drag
// rows to.
#include "tests/gallery/Options.h"
#include "tests/gallery/Rows.h"

#include "controls/ReadableColour.h"
#include "controls/WideText.h"
#include "controls/rules/TreeListImages.h"
#include "controls/treelist/TreeListCtrl.h"
#include "controls/treelist/TreeListEditors.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <array>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

namespace gallery {

namespace {

QString translated(const char *text)
{
    return Options::tr(text);
}

enum Column { kName, kLength, kKind, kArea, kShare };

struct StyleRow {
    std::uint32_t bit;
    const char *label;
};
struct StyleGroup {
    const char *heading;
    std::vector<StyleRow> rows;
};

const std::vector<StyleGroup> &styleGroups()
{
    static const std::vector<StyleGroup> groups = {
        {"Tree",
         {{StyleTree, "First column draws the tree"},
          {StyleTreeLines, "Dotted lines"},
          {StyleTreeRootLines, "Lines at the top level, too"},
          {StyleTreeButtons, "Plus and minus buttons"}}},
        {"Marks",
         {{StyleCheck, "Check boxes"},
          {StyleNoCheckPropagation, "A check stays on its one row"},
          {StyleLock, "Locks"},
          {StyleNoLockPropagation, "A lock stays on its one row"},
          {StyleImage, "Images"}}},
        {"Selection",
         {{StyleMultiSelect, "Several rows: Ctrl and a click adds one"},
          {StyleFullRowSelect, "Highlight spans the row"},
          {StyleSelectColumn, "Own highlight of the column"},
          {StyleShowSelectionAlways, "Shown without focus"}}},
        {"Background and grid",
         {{StyleBkColor, "Background colour of its own"},
          {StyleBkBitmap, "Background picture"},
          {StyleAlternate, "Rows in two colours"},
          {StyleHorzGrid, "Horizontal lines"},
          {StyleGridInFirstColumn, "Horizontal lines in the first column"},
          {StyleHorzGridFull, "Horizontal lines over the whole width"},
          {StyleHorzGridEmptyRows, "Lines below the last row"},
          {StyleVertGrid, "Vertical lines"},
          {StyleVertGridAll, "Vertical lines down to the bottom"},
          {StyleClientEdge, "Sunken frame"}}},
        {"Header",
         {{StyleHeader, "Header"},
          {StyleHeaderSort, "A click sorts"},
          {StyleHeaderDrag, "Columns can be dragged"},
          {StyleHeaderDrop, "Columns can be dropped"}}},
        {"Editing and dragging",
         {{StyleReadOnly, "Read-only"},
          {StyleDrag, "Rows can be dragged"},
          {StyleDrop, "Rows can be dropped"},
          {StyleDropSelf, "Dropped within the same list"},
          {StyleDropRoot, "Dropped beside all rows"}}},
    };
    return groups;
}

QString nameOf(int code)
{
    static const std::vector<std::pair<int, const char *>> names = {
        {NotifyColumnChanging, "column changing"},
        {NotifyRowChanging, "row changing"},
        {NotifyEndEdit, "end of edit"},
        {NotifyDragEnter, "drag comes in"},
        {NotifyDragLeave, "drag leaves"},
        {NotifyDrop, "drop"},
        {NotifyCheck, "check"},
        {NotifyLock, "lock"},
        {NotifySelChanging, "selection changing"},
        {NotifySelChanged, "selection changed"},
        {NotifyExpanding, "expanding"},
        {NotifyExpanded, "expanded"},
        {NotifyBeginDrag, "drag begins"},
        {NotifyBeginControl, "editor shown"},
        {NotifyEndControl, "editor hidden"},
    };
    for (const auto &[known, name] : names) {
        if (known == code)
            return translated(name);
    }
    return {};
}

CTreeListItem *add(CTreeListCtrl &list, CTreeListItem *parent, int image, const std::array<std::wstring, 5> &texts)
{
    CTreeListItem *item = list.InsertItem(texts[0], parent);
    for (int column = 1; item && column < list.GetColumnCount(); ++column)
        list.SetItemText(item, column, texts[static_cast<std::size_t>(column)]);
    if (item) {
        list.SetItemImage(item, image, image, image, image);
        list.SetItemState(item, kItemShowsImage, 0);
    }
    return item;
}

void addBranch(CTreeListCtrl &list, CTreeListItem *parent, const std::wstring &name, int first, int sections)
{
    CTreeListItem *branch = add(list, parent, kImageBranch, {name, L"", L"Branch", L"", L""});
    for (int i = 0; i < sections; ++i) {
        const std::wstring number = std::to_wstring(first + i);
        CTreeListItem *section = add(list, branch, kImageSection,
                                     {L"Section S-" + number, std::to_wstring(22 + i * 7) + L".50",
                                      i % 2 == 0 ? L"Concrete" : L"Stoneware", L"", L""});
        add(list, section, kImageHouse, {L"Roofs " + number, L"", L"Pitched roof", L"0.1250", L"60"});
        add(list, section, kImageRain, {L"Street " + number, L"", L"Asphalt", L"0.0840", L"40"});
    }
    list.Expand(branch, kExpand);
}

void fillSmall(CTreeListCtrl &list)
{
    list.DeleteAllItems();
    CTreeListItem *outfall = add(list, TreeListRoot(), kImageOutfall, {L"Outfall I-1", L"", L"Outfall", L"", L""});
    addBranch(list, outfall, L"Main sewer", 101, 4);
    addBranch(list, outfall, L"North branch", 201, 2);
    list.Expand(outfall, kExpand);
    CTreeListItem *first = list.GetFirstShowItem(2);
    list.Expand(first, kExpand);
    list.SetItemCheck(first, true);
    list.SetItemLock(list.GetFirstShowItem(5), true);
    list.SelectItem(first, kName);
}

/// 100 outfalls of 10 branches of 100 sections, less some for their own rows.
void fillLarge(CTreeListCtrl &list, int rows)
{
    list.DeleteAllItems();
    int left = rows;
    for (int outfall = 1; left > 0; ++outfall) {
        CTreeListItem *top = add(list, TreeListRoot(), kImageOutfall,
                                 {L"Outfall I-" + std::to_wstring(outfall), L"", L"Outfall", L"", L""});
        --left;
        for (int branch = 1; branch <= 10 && left > 0; ++branch) {
            CTreeListItem *middle =
                add(list, top, kImageBranch, {L"Branch " + std::to_wstring(branch), L"", L"Branch", L"", L""});
            --left;
            for (int section = 1; section <= 100 && left > 0; ++section, --left)
                add(list, middle, kImageSection,
                    {L"Section S-" + std::to_wstring(section), std::to_wstring(10 + section % 90) + L".50", L"Concrete",
                     L"", L""});
            list.Expand(middle, kExpand);
        }
        list.Expand(top, kExpand);
    }
}

/// A copy of a row with all below it, from one list to another.
void copyRow(const CTreeListCtrl &from, const CTreeListItem *item, CTreeListCtrl &to, CTreeListItem *parent)
{
    CTreeListItem *copy = to.InsertItem(item->Text(kName), parent);
    for (int column = 1; copy && column < to.GetColumnCount(); ++column)
        to.SetItemText(copy, column, item->Text(column));
    if (!copy)
        return;
    const TreeListImages images = item->Images();
    to.SetItemImage(copy, images.normal, images.expanded, images.selected, images.expandedSelected);
    constexpr std::uint32_t kShown = kItemShowsCheck | kItemShowsLock | kItemShowsImage;
    to.SetItemState(copy, item->State() & kShown, ~item->State() & kShown);
    to.SetItemModify(copy, kName, item->ColumnModify(kName));
    to.SetCheck(copy, from.GetCheck(item));
    to.SetLock(copy, from.GetLock(item));
    for (const CTreeListItem *child = item->FirstChild(); child; child = child->Next())
        copyRow(from, child, to, copy);
    if (item->Has(kItemExpanded))
        to.Expand(copy, kExpand);
}

/// A fresh list becomes as another one is: columns, rows, selection, height of the rows and font.
void copyList(CTreeListCtrl &from, CTreeListCtrl &to)
{
    to.setFont(from.font());
    to.SetItemHeight(from.GetItemHeight());
    for (int column = 0; column < from.GetColumnCount(); ++column)
        to.SetColumnWidth(column, from.GetColumnWidth(column));
    to.SetColumnOrderArray(from.GetColumnOrderArray());
    to.SetSortColumn(from.GetSortColumn(), from.IsSortDescending());
    for (const CTreeListItem *item = from.GetRootItem()->FirstChild(); item; item = item->Next())
        copyRow(from, item, to, TreeListRoot());
    std::vector<int> selected; // the newest first
    TreeListPosition position = from.GetFirstSelectedItemPosition();
    for (int count = from.GetSelectedCount(); count > 0; --count)
        selected.push_back(from.GetShowIndex(from.GetNextSelectedItem(position)));
    for (auto row = selected.rbegin(); row != selected.rend(); ++row) {
        if (*row >= 0)
            to.SelectItem(to.GetFirstShowItem(*row), from.GetSelectColumn(), false);
    }
}

/// Both lists; their owner.
class TreePage : public QWidget, public CTreeListOwner {
public:
    explicit TreePage(std::function<void(const QString &)> note) : m_note(std::move(note))
    {
        auto *column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(6);
        for (auto &[list, name, height] :
             {std::tuple{&m_list, translated("Tree list"), 320}, {&m_other, translated("Rows from above"), 140}}) {
            *list = Make(kFirstStyle, name, height);
            if (list == &m_other)
                column->addWidget(new QLabel(translated("Rows can be dragged here from above")));
            column->addWidget(*list);
        }
        m_bQuiet = true;
        fillSmall(*m_list);
        m_bQuiet = false;
    }
    ~TreePage() override
    {
        m_list->SetOwner(nullptr);
        m_other->SetOwner(nullptr);
    }

    static constexpr std::uint32_t kFirstStyle =
        StyleTree | StyleTreeLines | StyleTreeRootLines | StyleTreeButtons | StyleHeader | StyleHeaderDrag |
        StyleHeaderDrop | StyleCheck | StyleLock | StyleImage | StyleFullRowSelect | StyleMultiSelect | StyleHorzGrid |
        StyleVertGrid | StyleGridInFirstColumn | StyleShowSelectionAlways | StyleDrag | StyleDrop | StyleDropSelf |
        StyleDropRoot;

    CTreeListCtrl &List() { return *m_list; }
    /// With the bit that a list takes at Create only and keeps as its frame.
    std::uint32_t Style() const { return m_list->GetStyle() | (m_bEdge ? std::uint32_t{StyleClientEdge} : 0u); }
    /// Both follow.
    void SetStyle(std::uint32_t style)
    {
        const bool edge = (style & StyleClientEdge) != 0;
        if (edge != std::exchange(m_bEdge, edge)) {
            m_bQuiet = true;
            Remake(m_list, style);
            Remake(m_other, style);
            m_bQuiet = false;
            return;
        }
        m_list->SetStyle(style & ~StyleClientEdge);
        m_other->SetStyle(style & ~StyleClientEdge);
    }
    void SetBkColor(std::uint32_t colour)
    {
        m_ground = colour;
        m_list->SetBkColor(colour);
    }
    void SetTextColor(std::uint32_t colour)
    {
        m_text = colour;
        m_list->SetTextColor(colour);
    }
    void SetItemHeight(int height)
    {
        m_list->SetItemHeight(height);
        m_other->SetItemHeight(height);
    }
    void SetFontSize(int points)
    {
        for (CTreeListCtrl *list : {m_list, m_other}) {
            QFont font = list->font();
            font.setPointSize(points);
            list->setFont(font);
        }
    }
    /// Fills without telling of each row that goes.
    void Fill(int rows)
    {
        m_bQuiet = true;
        if (rows > 0)
            fillLarge(*m_list, rows);
        else
            fillSmall(*m_list);
        m_bQuiet = false;
        m_note(translated("Tree list: %1 rows").arg(m_list->GetVisibleCount()));
    }
    void Refuse(int code, bool on)
    {
        if (on)
            m_refused.insert(code);
        else
            m_refused.erase(code);
    }

    std::int64_t OnTreeListNotify(const TreeListNotice &notice) override
    {
        if (m_bQuiet)
            return 0;
        const bool isRefused = m_refused.contains(notice.code);
        if (const QString name = nameOf(notice.code); !name.isEmpty()) {
            const QString row = notice.item ? ToQString(notice.item->Text(kName)) : translated("no row");
            m_note(translated("Tree list: %1, %2, column %3%4")
                       .arg(name, row)
                       .arg(notice.column)
                       .arg(isRefused ? translated(": refused") : QString()));
        }
        if (isRefused)
            return -1;
        if (notice.code == NotifyBeginControl && notice.column == kKind) {
            for (const wchar_t *kind : {L"Concrete", L"Stoneware", L"Polyethylene", L"Pitched roof", L"Asphalt"})
                notice.control->GetCombo()->AddString(kind);
        }
        if (notice.code == NotifyDrop)
            Drop(*notice.source, *notice.control, notice.item);
        return 0;
    }

private:
    CTreeListCtrl *Make(std::uint32_t style, const QString &name, int height)
    {
        auto *list = new CTreeListCtrl;
        list->setAccessibleName(name);
        list->Create(style, QRect(), this, 0);
        list->setFixedHeight(height);
        list->SetOwner(this);
        addColumns(*list);
        connect(list, &CTreeListCtrl::ColumnClicked, this,
                [this](int clicked) { m_note(translated("Tree list: header of column %1").arg(clicked)); });
        return list;
    }

    /// A list of another style in a list's place.
    void Remake(CTreeListCtrl *&list, std::uint32_t style)
    {
        list->FinishModify();
        CTreeListCtrl *fresh = Make(style, list->accessibleName(), list->height());
        copyList(*list, *fresh);
        if (list == m_list && m_ground)
            fresh->SetBkColor(*m_ground);
        if (list == m_list && m_text)
            fresh->SetTextColor(*m_text);
        delete layout()->replaceWidget(list, fresh);
        list->SetOwner(nullptr);
        delete std::exchange(list, fresh);
        fresh->show();
    }

    static void addColumns(CTreeListCtrl &list)
    {
        list.SetColumnText(kName, L"Name");
        list.SetColumnWidth(kName, 220);
        list.SetColumnModify(kName, kEditorEdit);
        list.InsertColumn(L"Length [m]", kColumnDefaultFormat, 90, -1, 40, 200);
        list.InsertColumn(L"Kind", kColumnDefaultFormat, 110);
        list.InsertColumn(L"Area [ha]", kColumnDefaultFormat, 90);
        list.InsertColumn(L"Share [%]", kColumnDefaultFormat, 80);
        for (const int column : {kLength, kArea, kShare})
            list.SetColumnFormat(column, kColumnRight, kColumnLeft | kColumnCentred);
        list.SetColumnFormat(kName, kColumnSorts | 0x1000000, 0);
        list.SetColumnModify(kLength, kEditorEdit);
        list.SetColumnModify(kKind, kEditorCombo);
        list.SetColumnModify(kShare, kEditorEdit);
    }

    /// Moves the selected rows, each with all below it, under the target, or to the top level.
    void Drop(CTreeListCtrl &source, CTreeListCtrl &list, CTreeListItem *target)
    {
        std::vector<CTreeListItem *> rows;
        TreeListPosition position = source.GetFirstSelectedItemPosition();
        for (int count = source.GetSelectedCount(); count > 0; --count) {
            CTreeListItem *item = source.GetNextSelectedItem(position);
            if (!source.IsInSelectsTree(item->Parent()))
                rows.push_back(item); // the others go with it
        }
        m_bQuiet = true;
        CTreeListItem *parent = target ? target : TreeListRoot();
        for (CTreeListItem *item : rows) {
            if (&source == &list) {
                list.MoveAfterItem(item, parent);
            } else {
                copyRow(source, item, list, parent);
                source.DeleteItem(item);
            }
        }
        if (target)
            list.Expand(target, kExpand);
        m_bQuiet = false;
    }

    std::function<void(const QString &)> m_note;
    CTreeListCtrl *m_list = nullptr, *m_other = nullptr;
    std::set<int> m_refused;
    std::optional<std::uint32_t> m_ground, m_text; ///< colours that were chosen
    bool m_bQuiet = false;
    bool m_bEdge = false; ///< the sunken frame
};

/// A check box for each bit; all show what the control made of it.
void addStyles(Options &options, TreePage &page)
{
    auto boxes = std::make_shared<std::vector<std::pair<std::uint32_t, QCheckBox *>>>();
    const auto show = [&page, boxes] {
        for (const auto &[bit, box] : *boxes) {
            const QSignalBlocker blocker(box);
            box->setChecked((page.Style() & bit) != 0);
        }
    };
    for (const StyleGroup &group : styleGroups()) {
        options.Heading(translated(group.heading));
        for (const auto &[bit, label] : group.rows) {
            auto *box = new QCheckBox(translated(label));
            static_cast<QFormLayout *>(options.layout())->addRow(box);
            QObject::connect(box, &QCheckBox::toggled, &options, [&page, show, bit = bit](bool on) {
                const std::uint32_t style = page.Style();
                page.SetStyle(on ? style | bit : style & ~bit);
                show();
            });
            boxes->emplace_back(bit, box);
        }
    }
    show();
}

void addRowOptions(Options &options, TreePage &page)
{
    options.Heading(translated("The selected row"));
    const auto withSelected = [&page](auto change) {
        return [&page, change](auto value) {
            if (CTreeListItem *item = page.List().GetSelectedItem())
                change(page.List(), item, value);
        };
    };
    options.Number(translated("Image"), kImageSection, 0, kImageGood,
                   withSelected([](CTreeListCtrl &list, CTreeListItem *item, int image) {
                       list.SetItemImage(item, image, image, image, image);
                   }));
    constexpr std::array<std::pair<std::uint32_t, const char *>, 3> kShows = {{{kItemShowsCheck, "Shows a check box"},
                                                                               {kItemShowsLock, "Shows a lock"},
                                                                               {kItemShowsImage, "Shows an image"}}};
    for (const auto &[bit, label] : kShows)
        options.Check(translated(label), true,
                      withSelected([bit = bit](CTreeListCtrl &list, CTreeListItem *item, bool on) {
                          list.SetItemState(item, on ? bit : 0, on ? 0 : bit);
                      }));
    options.Choice(translated("Editor of its name"),
                   {translated("The column's"), translated("None"), translated("A line"), translated("A list")}, 0,
                   withSelected([](CTreeListCtrl &list, CTreeListItem *item, int index) {
                       list.SetItemModify(item, kName, index - 1);
                   }));
    options.Button(translated("Add a row below"), [&page] {
        CTreeListItem *parent = page.List().GetSelectedItem();
        add(page.List(), parent ? parent : TreeListRoot(), kImageItem, {L"New row", L"", L"", L"", L""});
        page.List().Expand(parent, kExpand);
    });
    options.Button(translated("Delete it"), [&page] {
        if (CTreeListItem *item = page.List().GetSelectedItem())
            page.List().DeleteItem(item);
    });
}

Row treeRow(const Setting &setting)
{
    auto *page = new TreePage(setting.note);
    auto *options = new Options;
    options->Button(translated("A small network"), [=] { page->Fill(0); });
    options->Button(translated("100,000 rows"), [=] { page->Fill(100'000); });
    options->Number(translated("Row height"), page->List().GetItemHeight(), 16, 60,
                    [=](int height) { page->SetItemHeight(height); });
    options->Number(translated("Size in points"), page->List().font().pointSize(), 6, 24,
                    [=](int size) { page->SetFontSize(size); });
    options->Choice(translated("Width of the names"),
                    {translated("As dragged"), translated("To the rows"), translated("To rows and header")}, 0,
                    [=](int index) {
                        if (index > 0)
                            page->List().SetColumnWidth(kName, -index, 60);
                    });
    addStyles(*options, *page);
    addRowOptions(*options, *page);
    options->Heading(translated("The owner refuses"));
    constexpr std::array<std::pair<int, const char *>, 7> kRefusals = {{{NotifyColumnChanging, "A changed cell"},
                                                                        {NotifyRowChanging, "A changed row"},
                                                                        {NotifySelChanging, "Another selection"},
                                                                        {NotifyExpanding, "Expanding"},
                                                                        {NotifyCheck, "Checks"},
                                                                        {NotifyBeginDrag, "Dragging"},
                                                                        {NotifyDragOver, "Drops on rows"}}};
    for (const auto &[code, label] : kRefusals)
        options->Check(translated(label), false, [=, code = code](bool on) { page->Refuse(code, on); });
    options->Heading(translated("Colours"));
    options->Colour(translated("Background"), [=](std::uint32_t colour) { page->SetBkColor(colour); });
    options->Colour(translated("Text"), [=](std::uint32_t colour) { page->SetTextColor(colour); });

    Row row;
    row.name = translated("Tree list");
    row.control = page;
    row.options = options;
    row.text = [page] {
        const CTreeListItem *item = page->List().GetSelectedItem();
        return item ? ToQString(item->Text(kName)) : QString();
    };
    row.wide = true;
    return row;
}

} // namespace

Group TreeRows(const Setting &setting)
{
    return {translated("Tree of rows"), {treeRow(setting)}};
}

} // namespace gallery
