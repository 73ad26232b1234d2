// Filling the extended list against filling a QTableWidget with the same texts and check boxes, both shown on the
// screen as they are filled, and painting both. Run in turns in one process; the figures are the best of several rounds
// (emptying: of one) in time of the processor, the ratios are of ours to theirs.
#include "controls/XListCtrl.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <limits>

namespace {

constexpr int kRounds = 5;

double now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double once(const std::function<void()> &run)
{
    const double start = now();
    run();
    return now() - start;
}

double best(const std::function<void()> &prepare, const std::function<void()> &run)
{
    double seconds = std::numeric_limits<double>::max();
    for (int round = 0; round < kRounds; ++round) {
        prepare();
        seconds = std::min(seconds, once(run));
    }
    return seconds;
}

void tell(const char *what, int rows, double ours, double theirs)
{
    std::printf("%-28s %7d rows %9.2f ms %9.2f ms   ratio %.2f\n", what, rows, ours * 1e3, theirs * 1e3, ours / theirs);
}

void compare(int rows)
{
    CXListCtrl list;
    list.InsertColumn(0, L"Name", 120);
    list.InsertColumn(1, L"Share", 80, kFormatRight);
    list.InsertColumn(2, L"On", 40);
    list.SetHeaderCheckedState(2, 0);
    QTableWidget table(0, 3);
    for (QTableView *view : {static_cast<QTableView *>(&list), static_cast<QTableView *>(&table)}) {
        view->resize(400, 600);
        view->show();
    }
    QCoreApplication::processEvents();

    const double ours = best([&] { list.DeleteAllItems(); },
                             [&] {
                                 for (int row = 0; row < rows; ++row) {
                                     list.InsertItem(row, L"Section S-104");
                                     list.SetItemText(row, 1, L"12.5000");
                                     list.SetCellNumeric(row, 1);
                                     list.SetCheckbox(row, 2, row % 2, false);
                                     list.SetItemData(row, 1);
                                 }
                                 QCoreApplication::processEvents();
                             });
    const double theirs = best([&] { table.setRowCount(0); },
                               [&] {
                                   for (int row = 0; row < rows; ++row) {
                                       table.insertRow(row);
                                       table.setItem(row, 0, new QTableWidgetItem(QStringLiteral("Section S-104")));
                                       table.setItem(row, 1, new QTableWidgetItem(QStringLiteral("12.5000")));
                                       auto *on = new QTableWidgetItem;
                                       on->setCheckState(row % 2 == 0 ? Qt::Unchecked : Qt::Checked);
                                       table.setItem(row, 2, on);
                                       table.item(row, 0)->setData(Qt::UserRole, 1);
                                   }
                                   QCoreApplication::processEvents();
                               });
    tell("Filling", rows, ours, theirs);
    const auto paint = [](QTableView &view) { return [&view] { view.viewport()->repaint(); }; };
    tell("Painting", rows, best([] {}, paint(list)), best([] {}, paint(table)));
    tell("Emptying", rows, once([&] { list.DeleteAllItems(); }), once([&] { table.setRowCount(0); }));
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    std::printf("%-28s %12s %12s %12s\n", "", "", "extended", "QTableWidget");
    for (const int rows : {1000, 20000, 100000})
        compare(rows);
}
