#include "host/editor/panels/PanelModel.h"

#include "host/editor/Captions.h"
#include "host/services/Icons.h"

#include <QApplication>
#include <QClipboard>
#include <QCollator>
#include <QHeaderView>
#include <QIcon>
#include <QKeyEvent>
#include <QLocale>

#include <algorithm>

namespace velmor {

namespace {

QVariant iconNamed(const char *name)
{
    const std::string text = name;
    const IconFile *file = findIcon(std::wstring(text.begin(), text.end()));
    return file ? QVariant(QIcon(QString::fromStdString(file->path.string()))) : QVariant();
}

} // namespace

int PanelModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows();
}

int PanelModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns();
}

Qt::ItemFlags PanelModel::flags(const QModelIndex &index) const
{
    return QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
}

QVariant PanelModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columns())
        return {};
    if (role == Qt::DisplayRole && !symbol(section))
        return uiString(caption(section));
    if (role == Qt::AccessibleTextRole)
        return uiString(caption(section));
    if (role == Qt::DecorationRole && symbol(section))
        return iconNamed(symbol(section));
    if (role == Qt::ToolTipRole) {
        QStringList lines;
        if (symbol(section))
            lines.append(uiString(caption(section)));
        if (explanation(section))
            lines.append(uiString(explanation(section)));
        return lines.isEmpty() ? QVariant() : QVariant(lines.join(QLatin1Char('\n')));
    }
    if (role == Qt::TextAlignmentRole)
        return QVariant(isNumber(section) ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

QVariant PanelModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return text(index.row(), index.column());
    if (role == Qt::TextAlignmentRole && isNumber(index.column()))
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

void PanelModel::languageChanged()
{
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns() - 1);
    if (rows() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rows() - 1, columns() - 1));
}

PanelOrder::PanelOrder(PanelModel &model, QObject *parent) : QSortFilterProxyModel(parent), m_model(model)
{
    setDynamicSortFilter(true);
    setSourceModel(&model);
}

void PanelOrder::setFilter(const QString &text)
{
    const QString wanted = text.trimmed();
    if (wanted == m_filter)
        return;
    m_filter = wanted;
    invalidateRowsFilter();
}

bool PanelOrder::lessThan(const QModelIndex &a, const QModelIndex &b) const
{
    return m_model.isLess(a.column(), a.row(), b.row());
}

bool PanelOrder::filterAcceptsRow(int row, const QModelIndex &) const
{
    return m_model.isShown(row) && (m_filter.isEmpty() || m_model.matches(row, m_filter));
}

QString asText(const QAbstractItemModel &model, const QList<int> &rows)
{
    QString all;
    const auto addLine = [&](auto &&cell) {
        for (int column = 0; column < model.columnCount(); ++column) {
            QString text = cell(column);
            text.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
            all += (column ? QStringLiteral("\t") : QString()) + text;
        }
        all += QLatin1Char('\n');
    };
    addLine([&](int column) { return model.headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString(); });
    for (const int row : rows)
        addLine([&](int column) {
            const QModelIndex cell = model.index(row, column);
            const QVariant checked = cell.data(Qt::CheckStateRole);
            return checked.isValid() && cell.data().toString().isEmpty() ? QString::number(checked.toInt() / 2)
                                                                         : cell.data().toString();
        });
    return all;
}

int compareNames(const QString &a, const QString &b)
{
    // Without a language of its own (as with the locale "C") a collator does not count.
    static const QCollator collator = [] {
        QCollator made(QLocale().language() == QLocale::C ? QLocale(QLocale::Croatian) : QLocale());
        made.setNumericMode(true);
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator.compare(a, b);
}

QString numberText(double value, int decimals)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(value, 'f', decimals);
}

PanelTable::PanelTable(PanelModel &model, const char *caption, QWidget *parent)
    : QTableView(parent), m_order(new PanelOrder(model, this))
{
    setModel(m_order);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setSortingEnabled(true);
    sortByColumn(-1, Qt::AscendingOrder);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    // A number far from its row's name is hard to read across.
    horizontalHeader()->setStretchLastSection(!model.isNumber(model.columnCount() - 1));
    horizontalHeader()->setHighlightSections(false);
    fitRows();
    keepCaptioned(this, [this, &model, caption] {
        setAccessibleName(uiString(caption));
        model.languageChanged();
        fitHeads();
    });
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (!(index.flags() & Qt::ItemIsUserCheckable)) // there the clicks changed the box
            Q_EMIT chosen({m_order->sourceRow(index.row())});
    });
}

QList<int> PanelTable::selectedRows() const
{
    QList<int> shown;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        shown.append(index.row());
    std::ranges::sort(shown);
    QList<int> rows;
    for (const int row : shown)
        rows.append(m_order->sourceRow(row));
    return rows;
}

void PanelTable::copyRows() const
{
    QList<int> shown;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        shown.append(index.row());
    if (shown.isEmpty())
        for (int row = 0; row < m_order->rowCount(); ++row)
            shown.append(row);
    std::ranges::sort(shown);
    QApplication::clipboard()->setText(asText(*m_order, shown));
}

QSize PanelTable::sizeHint() const
{
    const int line = fontMetrics().height();
    return {line * 24, line * 10};
}

void PanelTable::keyPressEvent(QKeyEvent *event)
{
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->matches(QKeySequence::Copy)) {
        copyRows();
    } else if (enters && state() != EditingState && currentIndex().isValid()) {
        const QList<int> rows = selectedRows();
        Q_EMIT chosen(rows.isEmpty() ? QList<int>{m_order->sourceRow(currentIndex().row())} : rows);
    } else {
        QTableView::keyPressEvent(event);
    }
}

void PanelTable::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitRows();
        fitHeads();
    }
}

void PanelTable::fitHeads()
{
    QHeaderView &head = *horizontalHeader();
    for (int column = 0; column < head.count(); ++column)
        if (!head.isSectionHidden(column))
            head.resizeSection(column, std::max(head.sectionSize(column), head.sectionSizeHint(column)));
}

void PanelTable::fitRows()
{
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + fontMetrics().height() / 3);
}

} // namespace velmor
