// The tree list against the toolkit's own trees, side by side in one run:
//   tree_list [ROWS...]
// The same rows, columns and texts in three levels, both shown on the screen, of one size, font and row height. Filling
// and expanding stand against a QTreeWidget, frames and scrolling against a QTreeView over a plain model whose leaves
// say that they have no children. Times are the processor's and the best of several rounds in turns, memory is what the
// heap has in use. Ends with 1 when a figure is beyond its bound.
#include "controls/treelist/TreeListCtrl.h"

#include <QAbstractItemModel>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTreeWidget>

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kColumns = 5;
constexpr std::array<const char *, kColumns> kHeaders = {"Section", "Length [m]", "Upper node", "Type", "Area [ha]"};
constexpr std::array<int, kColumns> kWidths = {260, 100, 140, 140, 100};
constexpr QSize kSize(800, 640);
constexpr int kSteps = 60; ///< of scrolling, in a round

double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

double milliseconds(const std::function<void()> &work)
{
    const double start = now();
    work();
    return now() - start;
}

double heapBytes()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Says so when a figure is beyond its bound; the program then ends with 1.
bool isBeyond = false;
void bound(const char *what, double value, double most)
{
    if (value <= most)
        return;
    isBeyond = true;
    std::printf("  BEYOND ITS BOUND: %s is %.3f, at most %.3f is allowed\n", what, value, most);
}

/// Texts of all rows, made beforehand in the characters of each side, so that neither is timed at making them.
class Texts {
public:
    explicit Texts(int rows)
    {
        m_ends.reserve(static_cast<std::size_t>(rows) * kColumns + 1);
        m_ends.push_back(0);
        char text[40];
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < kColumns; ++column) {
                switch (column) {
                case 0:
                    std::snprintf(text, sizeof text, "Section %d", row);
                    break;
                case 1:
                    std::snprintf(text, sizeof text, "%d.%02d", 10 + row % 90, row % 97);
                    break;
                case 2:
                    std::snprintf(text, sizeof text, "Node %d", row % 5000);
                    break;
                case 3:
                    std::snprintf(text, sizeof text, row % 3 == 0 ? "Brick paving" : "Asphalt");
                    break;
                default:
                    std::snprintf(text, sizeof text, "0.%04d", row % 9973);
                }
                for (const char *c = text; *c; ++c) {
                    m_wide.push_back(static_cast<wchar_t>(*c));
                    m_utf16.push_back(static_cast<char16_t>(*c));
                }
                m_ends.push_back(m_wide.size());
            }
        }
    }
    std::wstring wide(int row, int column) const
    {
        const auto [begin, size] = placeOf(row, column);
        return {m_wide.data() + begin, size};
    }
    QString text(int row, int column) const
    {
        const auto [begin, size] = placeOf(row, column);
        return QString(reinterpret_cast<const QChar *>(m_utf16.data() + begin), static_cast<qsizetype>(size));
    }

private:
    std::pair<std::size_t, std::size_t> placeOf(int row, int column) const
    {
        const std::size_t at = static_cast<std::size_t>(row) * kColumns + static_cast<std::size_t>(column);
        return {m_ends[at], m_ends[at + 1] - m_ends[at]};
    }
    std::wstring m_wide;
    std::u16string m_utf16;
    std::vector<std::size_t> m_ends;
};

/// Parents of so many rows in three levels, in the order of the rows; -1 at the top.
std::vector<int> parentsOf(int rows)
{
    const int width = static_cast<int>(std::ceil(std::cbrt(rows)));
    std::vector<int> parents;
    parents.reserve(static_cast<std::size_t>(rows));
    const auto isFull = [&] { return static_cast<int>(parents.size()) == rows; };
    while (!isFull()) {
        const int top = static_cast<int>(parents.size());
        parents.push_back(-1);
        for (int middle = 0; middle < width && !isFull(); ++middle) {
            const int at = static_cast<int>(parents.size());
            parents.push_back(top);
            for (int leaf = 0; leaf < width && !isFull(); ++leaf)
                parents.push_back(at);
        }
    }
    return parents;
}

/// All rows in memory, the texts as the toolkit keeps them.
class PlainModel : public QAbstractItemModel {
public:
    PlainModel(const std::vector<int> &parents, const Texts &texts, int rowHeight)
        : m_rowHeight(rowHeight), m_nodes(parents.size())
    {
        for (std::size_t i = 0; i < parents.size(); ++i) {
            std::vector<int> &siblings = parents[i] < 0 ? m_tops : node(parents[i]).children;
            m_nodes[i].parent = parents[i];
            m_nodes[i].row = static_cast<int>(siblings.size());
            siblings.push_back(static_cast<int>(i));
            for (int column = 0; column < kColumns; ++column)
                m_nodes[i].texts[static_cast<std::size_t>(column)] = texts.text(static_cast<int>(i), column);
        }
    }
    QModelIndex index(int row, int column, const QModelIndex &parent) const override
    {
        return createIndex(row, column, static_cast<quintptr>(childrenOf(parent)[static_cast<std::size_t>(row)]));
    }
    QModelIndex parent(const QModelIndex &index) const override
    {
        const int parent = nodeOf(index).parent;
        return parent < 0 ? QModelIndex() : createIndex(node(parent).row, 0, static_cast<quintptr>(parent));
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.column() > 0 ? 0 : static_cast<int>(childrenOf(parent).size());
    }
    int columnCount(const QModelIndex &) const override { return kColumns; }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
        return nodeOf(index).children.empty() ? flags | Qt::ItemNeverHasChildren : flags;
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::DisplayRole)
            return nodeOf(index).texts[static_cast<std::size_t>(index.column())];
        return role == Qt::SizeHintRole ? QVariant(QSize(10, m_rowHeight)) : QVariant();
    }
    QVariant headerData(int section, Qt::Orientation, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(QLatin1String(kHeaders[static_cast<std::size_t>(section)]))
                                       : QVariant();
    }

private:
    struct Node {
        int parent = -1, row = 0;
        std::vector<int> children;
        std::array<QString, kColumns> texts;
    };
    Node &node(int at) { return m_nodes[static_cast<std::size_t>(at)]; }
    const Node &node(int at) const { return m_nodes[static_cast<std::size_t>(at)]; }
    const Node &nodeOf(const QModelIndex &index) const { return m_nodes[index.internalId()]; }
    const std::vector<int> &childrenOf(const QModelIndex &index) const
    {
        return index.isValid() ? nodeOf(index).children : m_tops;
    }
    int m_rowHeight;
    std::vector<Node> m_nodes;
    std::vector<int> m_tops;
};

// --- Ours ---

constexpr std::uint32_t kPlainStyle =
    StyleTree | StyleTreeLines | StyleTreeRootLines | StyleTreeButtons | StyleFullRowSelect | StyleHeader;
constexpr std::uint32_t kRichStyle = kPlainStyle | StyleCheck | StyleLock | StyleImage | StyleHorzGrid | StyleVertGrid |
                                     StyleGridInFirstColumn | StyleAlternate;

std::unique_ptr<CTreeListCtrl> makeList(std::uint32_t style)
{
    auto list = std::make_unique<CTreeListCtrl>();
    list->Create(style, QRect(QPoint(0, 0), kSize), nullptr, 1);
    for (int column = 0; column < kColumns; ++column) {
        const std::string header = kHeaders[static_cast<std::size_t>(column)];
        const std::wstring text(header.begin(), header.end());
        const int width = kWidths[static_cast<std::size_t>(column)];
        if (column < list->GetColumnCount()) {
            list->SetColumnText(column, text);
            list->SetColumnWidth(column, width);
        } else {
            list->InsertColumn(text, kColumnDefaultFormat, width);
        }
    }
    list->show();
    QCoreApplication::processEvents();
    return list;
}

void fillList(CTreeListCtrl &list, const std::vector<int> &parents, const Texts &texts)
{
    std::vector<CTreeListItem *> items(parents.size());
    for (std::size_t i = 0; i < parents.size(); ++i) {
        const int row = static_cast<int>(i);
        CTreeListItem *parent = parents[i] < 0 ? TreeListRoot() : items[static_cast<std::size_t>(parents[i])];
        items[i] = list.InsertItem(texts.wide(row, 0), parent);
        for (int column = 1; column < kColumns; ++column)
            list.SetItemText(items[i], column, texts.wide(row, column));
    }
    QCoreApplication::processEvents();
}

/// Each item with children by a call of its own, from the top down.
void expandList(CTreeListCtrl &list)
{
    std::vector<CTreeListItem *> open = {list.GetRootItem()};
    while (!open.empty()) {
        CTreeListItem *parent = open.back();
        open.pop_back();
        for (CTreeListItem *item = parent->FirstChild(); item; item = item->Next()) {
            if (!item->FirstChild())
                break; // siblings are alike
            list.Expand(item, kExpand);
            open.push_back(item);
        }
    }
    QCoreApplication::processEvents();
}

// --- Theirs ---

std::unique_ptr<QTreeWidget> makeWidget()
{
    auto widget = std::make_unique<QTreeWidget>();
    widget->setColumnCount(kColumns);
    widget->setUniformRowHeights(true);
    widget->resize(kSize);
    for (int column = 0; column < kColumns; ++column)
        widget->setColumnWidth(column, kWidths[static_cast<std::size_t>(column)]);
    widget->show();
    QCoreApplication::processEvents();
    return widget;
}

/// The quickest way that it has: all texts at once, and the branches come in when they are complete.
void fillWidget(QTreeWidget &widget, const std::vector<int> &parents, const Texts &texts)
{
    std::vector<QTreeWidgetItem *> items(parents.size());
    QList<QTreeWidgetItem *> tops;
    for (std::size_t i = 0; i < parents.size(); ++i) {
        QStringList strings;
        strings.reserve(kColumns);
        for (int column = 0; column < kColumns; ++column)
            strings.append(texts.text(static_cast<int>(i), column));
        if (parents[i] < 0) {
            items[i] = new QTreeWidgetItem(strings);
            tops.append(items[i]);
        } else {
            items[i] = new QTreeWidgetItem(items[static_cast<std::size_t>(parents[i])], strings);
        }
    }
    widget.addTopLevelItems(tops);
    QCoreApplication::processEvents();
}

// --- Figures ---

struct Filling {
    double fill = 1e300, bytes = 0.0, expand = 1e300, empty = 1e300;
};

void compareFilling(int rows, const std::vector<int> &parents, const Texts &texts)
{
    Filling ours, theirs;
    for (int round = 0; round < (rows > 200'000 ? 3 : 5); ++round) {
        {
            const auto list = makeList(kPlainStyle);
            const double before = heapBytes();
            ours.fill = std::min(ours.fill, milliseconds([&] { fillList(*list, parents, texts); }));
            ours.bytes = (heapBytes() - before) / rows;
            ours.expand = std::min(ours.expand, milliseconds([&] { expandList(*list); }));
            if (list->GetVisibleCount() != rows)
                std::abort();
            ours.empty = std::min(ours.empty, milliseconds([&] {
                                      list->DeleteAllItems();
                                      QCoreApplication::processEvents();
                                  }));
        }
        const auto widget = makeWidget();
        const double before = heapBytes();
        theirs.fill = std::min(theirs.fill, milliseconds([&] { fillWidget(*widget, parents, texts); }));
        theirs.bytes = (heapBytes() - before) / rows;
        theirs.expand = std::min(theirs.expand, milliseconds([&] {
                                     widget->expandAll();
                                     QCoreApplication::processEvents();
                                 }));
        theirs.empty = std::min(theirs.empty, milliseconds([&] {
                                    widget->clear();
                                    QCoreApplication::processEvents();
                                }));
    }
    std::printf("  %-34s %10.1f ms %10.1f ms   ratio %.3f\n", "filling (QTreeWidget)", ours.fill, theirs.fill,
                ours.fill / theirs.fill);
    std::printf("  %-34s %10.0f B  %10.0f B    ratio %.3f\n", "memory a row (QTreeWidget)", ours.bytes, theirs.bytes,
                ours.bytes / theirs.bytes);
    std::printf("  %-34s %10.2f ms %10.2f ms   ratio %.3f\n", "expanding all (QTreeWidget)", ours.expand, theirs.expand,
                ours.expand / theirs.expand);
    std::printf("  %-34s %10.2f ms %10.2f ms   ratio %.3f\n", "emptying (QTreeWidget)", ours.empty, theirs.empty,
                ours.empty / theirs.empty);
    bound("filling over a QTreeWidget's", ours.fill / theirs.fill, 0.4);
    bound("memory over a QTreeWidget's", ours.bytes / theirs.bytes, 0.35);
    bound("expanding over a QTreeWidget's", ours.expand / theirs.expand, 0.1);
}

struct Painting {
    double frame = 1e300, step = 1e300, page = 1e300;
};

/// One round of each, from the middle of the rows on.
void paintRound(QAbstractScrollArea &view, int rows, Painting &best)
{
    QScrollBar &bar = *view.verticalScrollBar();
    const int middle = rows / 2;
    bar.setValue(middle);
    QCoreApplication::processEvents();
    for (int i = 0; i < 10; ++i)
        best.frame = std::min(best.frame, milliseconds([&] { view.viewport()->repaint(); }));
    best.step = std::min(best.step, milliseconds([&] {
                                        for (int i = 1; i <= kSteps; ++i) {
                                            bar.setValue(middle + i);
                                            QCoreApplication::processEvents();
                                        }
                                    }) / kSteps);
    constexpr int kPages = 10;
    best.page = std::min(best.page, milliseconds([&] {
                                        for (int i = 1; i <= kPages; ++i) {
                                            bar.setValue(middle + (i % 2 == 0 ? 1 : -1) * 100);
                                            QCoreApplication::processEvents();
                                        }
                                    }) / kPages);
}

std::unique_ptr<QTreeView> makeView(PlainModel &model)
{
    auto view = std::make_unique<QTreeView>();
    view->setUniformRowHeights(true);
    view->setModel(&model);
    view->resize(kSize);
    for (int column = 0; column < kColumns; ++column)
        view->setColumnWidth(column, kWidths[static_cast<std::size_t>(column)]);
    view->show();
    view->expandAll();
    QCoreApplication::processEvents();
    return view;
}

void comparePainting(int rows, const std::vector<int> &parents, const Texts &texts)
{
    const auto list = makeList(kPlainStyle), rich = makeList(kRichStyle);
    for (const auto &each : {list.get(), rich.get()}) {
        fillList(*each, parents, texts);
        expandList(*each);
        each->SetItemHeight(22);
    }
    for (CTreeListItem *item = rich->GetFirstVisibleItem(); item; item = rich->GetNextVisibleItem(item))
        rich->SetItemState(item, kItemShowsImage, 0);
    PlainModel model(parents, texts, list->GetItemHeight());
    const auto view = makeView(model);
    const int theirHeight = view->visualRect(model.index(0, 0, QModelIndex())).height();
    if (theirHeight != list->GetItemHeight() || view->verticalScrollBar()->maximum() < rows / 2 ||
        list->verticalScrollBar()->maximum() < rows / 2 || view->font() != list->font()) {
        std::printf("  rows of %d and %d pixels, bars to %d and %d: not the same thing\n", list->GetItemHeight(),
                    theirHeight, list->verticalScrollBar()->maximum(), view->verticalScrollBar()->maximum());
        std::exit(2);
    }
    if (std::getenv("TREE_LIST_PICTURES")) {
        list->grab().save(QStringLiteral("tree_list_%1.png").arg(rows));
        rich->grab().save(QStringLiteral("tree_list_rich_%1.png").arg(rows));
        view->grab().save(QStringLiteral("tree_view_%1.png").arg(rows));
    }
    Painting ours, richOurs, theirs;
    for (int round = 0; round < 7; ++round) {
        paintRound(*list, rows, ours);
        paintRound(*view, rows, theirs);
        paintRound(*rich, rows, richOurs);
    }
    const auto tell = [](const char *what, double our, double their) {
        std::printf("  %-34s %10.3f ms %10.3f ms   ratio %.3f\n", what, our, their, our / their);
    };
    Painting bareOurs, bareTheirs;
    for (QAbstractScrollArea *each :
         {static_cast<QAbstractScrollArea *>(list.get()), static_cast<QAbstractScrollArea *>(view.get())})
        each->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (int round = 0; round < 7; ++round) {
        paintRound(*list, rows, bareOurs);
        paintRound(*view, rows, bareTheirs);
    }
    tell("a full frame (QTreeView)", ours.frame, theirs.frame);
    tell("a step of scrolling (QTreeView)", ours.step, theirs.step);
    tell("  step without the scroll bars", bareOurs.step, bareTheirs.step);
    tell("a leap of scrolling (QTreeView)", ours.page, theirs.page);
    tell("  frame with all glyphs and grids", richOurs.frame, theirs.frame);
    tell("  step with all glyphs and grids", richOurs.step, theirs.step);
    bound("a frame over a QTreeView's", ours.frame / theirs.frame, 0.7);
    bound("a step of scrolling over a QTreeView's", ours.step / theirs.step, 1.0);
}

/// Scrolling of lists of all sizes, in turns, so that what else runs on the machine slows all of them. Without the bar:
/// the toolkit paints it with several threads, whose waking is most of a step and differs from run to run.
void reportGrowth(std::vector<int> sizes)
{
    std::sort(sizes.begin(), sizes.end());
    const Texts texts(sizes.back());
    std::vector<std::unique_ptr<CTreeListCtrl>> lists;
    for (const int rows : sizes) {
        lists.push_back(makeList(kPlainStyle));
        fillList(*lists.back(), parentsOf(rows), texts);
        expandList(*lists.back());
        lists.back()->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    std::vector<Painting> best(sizes.size());
    for (int round = 0; round < 15; ++round) {
        for (std::size_t i = 0; i < sizes.size(); ++i)
            paintRound(*lists[i], sizes[i], best[i]);
    }
    double growth = 0.0;
    for (const Painting &painting : best)
        growth = std::max(growth, painting.step / best.front().step);
    std::printf("a step of scrolling without the bar: %.3f ms with the fewest rows, dearest over that %.2f\n",
                best.front().step, growth);
    bound("growth of a step of scrolling with the rows", growth, 1.3);
}

/// Microseconds to find the item of a row and the row of an item, in the mean over random rows.
std::pair<double, double> findingTime(const CTreeListCtrl &list)
{
    constexpr int kFinds = 20'000;
    std::mt19937 random(5);
    std::uniform_int_distribution<int> any(0, list.GetVisibleCount() - 1);
    std::vector<int> rows(kFinds);
    std::generate(rows.begin(), rows.end(), [&] { return any(random); });
    std::vector<const CTreeListItem *> items(kFinds);
    std::pair<double, double> best = {1e300, 1e300};
    for (int round = 0; round < 5; ++round) {
        std::shuffle(rows.begin(), rows.end(), random);
        best.first = std::min(best.first, milliseconds([&] {
                                              for (std::size_t i = 0; i < kFinds; ++i)
                                                  items[i] = list.GetFirstShowItem(rows[i]);
                                          }) * 1e3 /
                                              kFinds);
        best.second = std::min(best.second, milliseconds([&] {
                                                for (std::size_t i = 0; i < kFinds; ++i) {
                                                    if (list.GetShowIndex(items[i]) != rows[i])
                                                        std::abort();
                                                }
                                            }) * 1e3 /
                                                kFinds);
    }
    return best;
}

/// Cells of random rows, as a screen reader asks for them: each is an object of its own from then on.
void reportAccess(CTreeListCtrl &list)
{
    constexpr int kAsked = 20'000;
    QAccessibleTableInterface *cells = QAccessible::queryAccessibleInterface(&list)->tableInterface();
    std::mt19937 random(9);
    std::uniform_int_distribution<int> row(0, list.GetVisibleCount() - 1), column(0, kColumns - 1);
    std::size_t letters = 0;
    const double before = heapBytes();
    const double time = milliseconds([&] {
        for (int i = 0; i < kAsked; ++i)
            letters +=
                static_cast<std::size_t>(cells->cellAt(row(random), column(random))->text(QAccessible::Name).size());
    });
    std::printf("  a cell for a screen reader         %10.3f us, %.0f bytes, of %d rows %zu letters\n",
                time * 1e3 / kAsked, (heapBytes() - before) / kAsked, cells->rowCount(), letters);
    bound("a cell for a screen reader, microseconds", time * 1e3 / kAsked, 20.0);
}

void reportFinding(int rows, const std::vector<int> &parents, const Texts &texts)
{
    const auto tree = makeList(kPlainStyle), flat = makeList(kPlainStyle);
    fillList(*tree, parents, texts);
    expandList(*tree);
    // A million children of one item.
    std::vector<int> ofOne(parents.size(), 0);
    ofOne[0] = -1;
    fillList(*flat, ofOne, texts);
    flat->Expand(flat->GetFirstVisibleItem(), kExpand);
    const auto inTree = findingTime(*tree), inFlat = findingTime(*flat);
    std::printf("  row to item in three levels        %10.3f us, item to row %10.3f us\n", inTree.first, inTree.second);
    std::printf("  row to item, %d of one item   %10.3f us, item to row %10.3f us\n", rows - 1, inFlat.first,
                inFlat.second);
    bound("row to item, microseconds", inTree.first, 2.0);
    reportAccess(*tree);
}

/// A column that is fitted to the texts of all rows, against asking the font for each of them.
void compareFitting(const std::vector<int> &parents, const Texts &texts)
{
    const auto list = makeList(kPlainStyle);
    fillList(*list, parents, texts);
    expandList(*list);
    const QFontMetrics metrics = list->fontMetrics();
    for (const int column : {0, 1}) {
        double ours = 1e9, asked = 1e9;
        int widest = 0;
        for (int round = 0; round < 3; ++round) {
            ours = std::min(ours, milliseconds([&] { list->SetColumnWidth(column, -1); }));
            asked = std::min(asked, milliseconds([&] {
                                 for (auto *item = list->GetFirstShowItem(0); item; item = list->GetNextShowItem(item))
                                     widest = std::max(widest, metrics.horizontalAdvance(
                                                                   QString::fromStdWString(item->Text(column))));
                             }));
        }
        if (list->GetColumnWidth(column) < widest)
            std::abort();
        std::printf("  fit column %d to %d rows      %10.2f ms, asking the font for each %10.2f ms (%.3f)\n", column,
                    list->GetVisibleCount(), ours, asked, ours / asked);
        bound("fitting a column over asking the font", ours / asked, 0.25);
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    std::vector<int> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty())
        sizes = {1'000, 10'000, 100'000, 1'000'000};
    std::printf("  %-34s %13s %13s\n", "", "tree list", "theirs");
    for (const int rows : sizes) {
        std::printf("%d rows\n", rows);
        const Texts texts(rows);
        const std::vector<int> parents = parentsOf(rows);
        if (rows >= 100'000)
            compareFilling(rows, parents, texts);
        comparePainting(rows, parents, texts);
        if (rows >= 1'000'000)
            reportFinding(rows, parents, texts);
        if (rows == 100'000)
            compareFitting(parents, texts);
    }
    reportGrowth(sizes);
    return isBeyond ? 1 : 0;
}
