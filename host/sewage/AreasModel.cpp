#include "host/sewage/AreasModel.h"

#include "host/editor/Captions.h"
#include "host/network/NetworkData.h"
#include "host/sewage/AreaRecord.h"

namespace velmor {

namespace {

constexpr int kHectareDecimals = 4, kValueDecimals = 2, kShareDecimals = 1;
constexpr const char *kTypeNames[] = {"ui.area.catchment", "ui.area.house", "ui.area.industrial"};

QString textOf(const std::wstring &text)
{
    return QString::fromStdWString(text);
}

const char *kindName(const AreaRow &row)
{
    return row.hidden ? "ui.areas.kind.hidden" : row.island ? "ui.areas.kind.island" : "ui.areas.kind.main";
}

QString sectionWords(const AreaRow &row)
{
    QStringList words;
    for (const AreaRow::Section &section : row.sections) {
        const QString share = section.share == ZEMGis::Topology::kUnknownValue
                                  ? QStringLiteral("?")
                                  : numberText(section.share * 100.0, kShareDecimals) + QLatin1Char('%');
        words.append(textOf(section.name) + QLatin1Char(' ') + share);
    }
    return words.join(QStringLiteral(", "));
}

} // namespace

QString areaTypeWords(int type)
{
    QStringList words;
    for (int bit = 0; bit < 3; ++bit)
        if (type & 1 << bit)
            words.append(uiString(kTypeNames[bit]));
    return words.join(QStringLiteral(", "));
}

void AreasModel::setDrawing(Drawing *drawing)
{
    if (m_drawing)
        m_drawing->removeObserver(*this);
    beginResetModel();
    m_drawing = drawing;
    m_rows.clear();
    m_stale = drawing != nullptr;
    endResetModel();
    if (m_drawing)
        m_drawing->addObserver(*this);
}

void AreasModel::look(const AcDbEntity &entity)
{
    m_stale = m_stale || m_drawing->data(entity, kAreaDataKey) || m_drawing->data(entity, kSectionKey);
}

void AreasModel::dataChanging(AcDbObject &, const std::string &key)
{
    m_stale = m_stale || key == kAreaDataKey || key == kSectionKey;
}

bool AreasModel::bringUpToDate()
{
    if (!m_stale || !m_drawing)
        return false;
    m_stale = false;
    takeRows(m_rows, areaTable(*m_drawing), [](const AreaRow &a, const AreaRow &b) { return a.guid == b.guid; });
    return true;
}

AreaSums AreasModel::sumsOf(const QList<int> &rows) const
{
    AreaSums sums;
    const auto add = [](TypeSum &sum, const AreaRow &row) {
        ++sum.areas;
        sum.gross += row.areaHectares;
        sum.net += row.netAreaHectares;
    };
    for (const int index : rows) {
        const AreaRow &row = area(index);
        add(sums.all, row);
        for (std::size_t bit = 0; bit < sums.byType.size(); ++bit)
            if (row.type & 1 << bit)
                add(sums.byType[bit], row);
    }
    return sums;
}

bool AreasModel::isLess(int column, int a, int b) const
{
    const AreaRow &left = area(a), &right = area(b);
    switch (column) {
    case Type:
        return left.type < right.type;
    case Kind:
        return compareNames(uiString(kindName(left)), uiString(kindName(right))) < 0;
    case Gross:
        return left.areaHectares < right.areaHectares;
    case Net:
        return left.netAreaHectares < right.netAreaHectares;
    case Coefficient:
        return left.coefficient < right.coefficient;
    case Density:
        return left.population < right.population;
    case Sections:
        return compareNames(left.sections.empty() ? QString() : textOf(left.sections.front().name),
                            right.sections.empty() ? QString() : textOf(right.sections.front().name)) < 0;
    default:
        return compareNames(textOf(left.name), textOf(right.name)) < 0;
    }
}

bool AreasModel::matches(int row, const QString &wanted) const
{
    const AreaRow &line = area(row);
    return textOf(line.name).contains(wanted, Qt::CaseInsensitive) ||
           areaTypeWords(line.type).contains(wanted, Qt::CaseInsensitive) ||
           std::ranges::any_of(line.sections, [&](const AreaRow::Section &section) {
               return textOf(section.name).contains(wanted, Qt::CaseInsensitive);
           });
}

const char *AreasModel::caption(int column) const
{
    constexpr const char *kCaptions[ColumnCount] = {
        "ui.areas.head.name", "ui.areas.head.type",        "ui.areas.head.kind",    "ui.areas.head.gross",
        "ui.areas.head.net",  "ui.areas.head.coefficient", "ui.areas.head.density", "ui.areas.head.sections"};
    return kCaptions[column];
}

const char *AreasModel::explanation(int column) const
{
    return column == Net ? "ui.area.net" : column == Density ? "ui.area.density" : nullptr;
}

QString AreasModel::text(int row, int column) const
{
    const AreaRow &line = area(row);
    switch (column) {
    case Name:
        return textOf(line.name);
    case Type:
        return areaTypeWords(line.type);
    case Kind:
        return uiString(kindName(line));
    case Gross:
        return numberText(line.areaHectares, kHectareDecimals);
    case Net:
        return numberText(line.netAreaHectares, kHectareDecimals);
    case Coefficient:
        return numberText(line.coefficient, kValueDecimals);
    case Density:
        return numberText(line.population, kValueDecimals);
    default:
        return sectionWords(line);
    }
}

} // namespace velmor
