#include "host/editor/panels/NetworkModels.h"

#include "host/editor/Captions.h"
#include "host/network/NetworkEntities.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace velmor {

namespace {

constexpr int kLengthDecimals = 2, kPlaceDecimals = 2;

QString textOf(const std::wstring &text)
{
    return QString::fromStdWString(text);
}

int compareNumbers(double a, double b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}

} // namespace

// --- What changed ---------------------------------------------------------------------------------------------------

void NetworkWatch::setDrawing(Drawing *drawing)
{
    if (m_drawing)
        m_drawing->removeObserver(*this);
    m_drawing = drawing;
    if (m_drawing)
        m_drawing->addObserver(*this);
    noteMore();
}

void NetworkWatch::noteMore()
{
    m_lastWhole = ++m_revision;
    m_single.clear();
    m_shapeBefore = nullptr;
    m_dataBefore.reset();
}

bool NetworkWatch::carriesNetwork(const AcDbEntity &entity) const
{
    return m_drawing->data(entity, kSectionKey) || m_drawing->data(entity, kNodeKey);
}

void NetworkWatch::entityAppended(AcDbEntity &entity)
{
    if (carriesNetwork(entity))
        noteMore();
}

void NetworkWatch::dataChanging(AcDbObject &object, const std::string &key)
{
    if (key == kSectionKey || key == kNodeKey)
        m_dataBefore = DataBefore{&object, m_drawing->data(object, kSectionKey), m_drawing->data(object, kNodeKey)};
}

void NetworkWatch::entityModified(AcDbEntity &entity)
{
    const auto before = std::exchange(m_dataBefore, std::nullopt);
    const bool wasShape = std::exchange(m_shapeBefore, nullptr) == &entity;
    if (before) {
        const auto links = [](const std::optional<DataItems> &items) {
            auto data = items ? sectionDataOf(*items) : std::nullopt;
            return data ? std::optional(std::tuple(data->guid, data->startNode, data->endNode)) : std::nullopt;
        };
        const auto now = links(m_drawing->data(entity, kSectionKey));
        if (before->object != &entity || before->node || !now || now != links(before->section))
            return noteMore();
    } else if (!carriesNetwork(entity)) {
        return;
    } else if (!wasShape) {
        return noteMore(); // whatever it was
    }
    constexpr std::size_t kMostSingle = 200;
    if (m_single.size() == kMostSingle)
        return noteMore();
    ++m_revision;
    m_single.push_back(&entity);
}

std::optional<std::vector<AcDbEntity *>> NetworkWatch::changedSince(std::uint64_t revision) const
{
    if (revision < m_lastWhole)
        return std::nullopt;
    const auto known = static_cast<std::ptrdiff_t>(revision - m_lastWhole);
    return std::vector(m_single.begin() + known, m_single.end());
}

NetworkModel::NetworkModel(const NetworkWatch &watch, QObject *parent) : PanelModel(parent), m_watch(watch) {}

void NetworkModel::reset()
{
    beginResetModel();
    clear();
    endResetModel();
    m_taken = 0;
}

void NetworkModel::bringUpToDate()
{
    if (m_taken == m_watch.revision() || !m_watch.drawing())
        return;
    const auto single = m_watch.changedSince(m_taken);
    m_taken = m_watch.revision();
    Drawing &drawing = *m_watch.drawing();
    if (!single || !std::ranges::all_of(*single, [&](AcDbEntity *entity) { return takeOne(drawing, *entity); }))
        take(drawing);
}

Extents NetworkModel::extentsOf(const QList<int> &rows) const
{
    Extents all;
    for (const int row : rows) {
        AcDbEntity *entity = nullptr;
        if (acdbOpenAcDbEntity(entity, entityOf(row), AcDb::kForRead) != Acad::eOk)
            continue;
        all.add(velmor::extentsOf(*entity));
        entity->close();
    }
    return all;
}

// --- Sections -------------------------------------------------------------------------------------------------------

void SectionsModel::take(Drawing &drawing)
{
    const auto &network = drawing.component<Network>();
    std::vector<Row> now;
    now.reserve(network.sections().size());
    const auto nodeName = [&](const std::wstring &guid) {
        const Network::NodePtr node = network.nodeByGuid(guid);
        return node ? textOf(node->GetName()) : QString();
    };
    for (const Network::SectionPtr &section : network.sections()) {
        const SectionData &data = static_cast<const SectionEntity &>(*section).data();
        now.push_back({section->GetObjectId(), textOf(data.name), nodeName(data.startNode), nodeName(data.endNode),
                       section->GetLength2D()});
    }
    takeRows(m_rows, std::move(now), [](const Row &a, const Row &b) { return a.entity == b.entity; });
}

bool SectionsModel::takeOne(Drawing &drawing, AcDbEntity &entity)
{
    const auto section = drawing.component<Network>().GetSectionById(idOf(entity));
    if (!section)
        return true; // a node: sections show its name alone
    const auto row = std::ranges::find(m_rows, idOf(entity), &Row::entity);
    if (row == m_rows.end())
        return false;
    row->name = textOf(section->GetName());
    row->length = section->GetLength2D();
    rowChanged(static_cast<int>(row - m_rows.begin()));
    return true;
}

bool SectionsModel::isLess(int column, int a, int b) const
{
    switch (column) {
    case From:
        return compareNames(at(a).from, at(b).from) < 0;
    case To:
        return compareNames(at(a).to, at(b).to) < 0;
    case Length:
        return at(a).length < at(b).length;
    default:
        return compareNames(at(a).name, at(b).name) < 0;
    }
}

bool SectionsModel::matches(int row, const QString &text) const
{
    return at(row).name.contains(text, Qt::CaseInsensitive) || at(row).from.contains(text, Qt::CaseInsensitive) ||
           at(row).to.contains(text, Qt::CaseInsensitive);
}

const char *SectionsModel::caption(int column) const
{
    constexpr const char *kCaptions[ColumnCount] = {"ui.network.head.section", "ui.network.head.from",
                                                    "ui.network.head.to", "ui.network.head.length"};
    return kCaptions[column];
}

QString SectionsModel::text(int row, int column) const
{
    switch (column) {
    case Name:
        return at(row).name;
    case From:
        return at(row).from;
    case To:
        return at(row).to;
    default:
        return at(row).length > 0.0 ? numberText(at(row).length, kLengthDecimals) : QString(QChar(0x2013));
    }
}

// --- Nodes ----------------------------------------------------------------------------------------------------------

void NodesModel::take(Drawing &drawing)
{
    const auto &network = drawing.component<Network>();
    std::unordered_map<std::wstring, std::pair<int, int>> ends; // by the node's GUID: sections that end, that begin
    for (const Network::SectionPtr &section : network.sections()) {
        const SectionData &data = static_cast<const SectionEntity &>(*section).data();
        ++ends[data.endNode].first;
        ++ends[data.startNode].second;
    }
    std::vector<Row> now;
    now.reserve(network.nodes().size());
    for (const Network::NodePtr &node : network.nodes()) {
        const auto &entity = static_cast<const NodeEntity &>(*node);
        const auto [in, out] = ends[entity.data().guid];
        const AcGePoint3d place = positionOf(entity.entity()).value_or(AcGePoint3d());
        now.push_back({node->GetObjectId(), textOf(entity.data().name), in, out, place.x, place.y});
    }
    takeRows(m_rows, std::move(now), [](const Row &a, const Row &b) { return a.entity == b.entity; });
}

bool NodesModel::takeOne(Drawing &, AcDbEntity &entity)
{
    const auto row = std::ranges::find(m_rows, idOf(entity), &Row::entity);
    if (row == m_rows.end())
        return true; // a section that begins and ends where it did
    const AcGePoint3d place = positionOf(entity).value_or(AcGePoint3d());
    row->x = place.x;
    row->y = place.y;
    rowChanged(static_cast<int>(row - m_rows.begin()));
    return true;
}

bool NodesModel::isLess(int column, int a, int b) const
{
    switch (column) {
    case In:
        return at(a).in < at(b).in;
    case Out:
        return at(a).out < at(b).out;
    case X:
        return at(a).x < at(b).x;
    case Y:
        return at(a).y < at(b).y;
    default:
        return compareNames(at(a).name, at(b).name) < 0;
    }
}

bool NodesModel::matches(int row, const QString &text) const
{
    return at(row).name.contains(text, Qt::CaseInsensitive);
}

const char *NodesModel::caption(int column) const
{
    constexpr const char *kCaptions[ColumnCount] = {"ui.network.head.node", "ui.network.head.in", "ui.network.head.out",
                                                    "ui.network.head.x", "ui.network.head.y"};
    return kCaptions[column];
}

const char *NodesModel::explanation(int column) const
{
    return column == In ? "ui.network.tip.in" : column == Out ? "ui.network.tip.out" : nullptr;
}

QString NodesModel::text(int row, int column) const
{
    switch (column) {
    case Name:
        return at(row).name;
    case In:
        return QString::number(at(row).in);
    case Out:
        return QString::number(at(row).out);
    case X:
        return numberText(at(row).x, kPlaceDecimals);
    default:
        return numberText(at(row).y, kPlaceDecimals);
    }
}

// --- Checks ---------------------------------------------------------------------------------------------------------

void ChecksModel::clear()
{
    m_rows.clear();
    m_counts = {};
}

void ChecksModel::take(Drawing &drawing)
{
    std::vector<NetworkFinding> now = checkNetwork(drawing);
    m_counts = {};
    for (const NetworkFinding &finding : now)
        ++m_counts[static_cast<std::size_t>(finding.trouble)];
    takeRows(m_rows, std::move(now), [](const NetworkFinding &a, const NetworkFinding &b) {
        return a.entity == b.entity && a.trouble == b.trouble;
    });
}

bool ChecksModel::takeOne(Drawing &drawing, AcDbEntity &entity)
{
    const std::vector<NetworkFinding> now = checkEntity(drawing, entity);
    const auto first = std::ranges::find(m_rows, idOf(entity), &NetworkFinding::entity);
    std::size_t known = 0;
    for (auto row = first; row != m_rows.end() && row->entity == idOf(entity); ++row, ++known)
        if (known >= now.size() || row->trouble != now[known].trouble)
            return false;
    if (known != now.size())
        return false;
    for (std::size_t i = 0; i < known; ++i) {
        first[static_cast<std::ptrdiff_t>(i)] = now[i];
        rowChanged(static_cast<int>(first - m_rows.begin()) + static_cast<int>(i));
    }
    return true;
}

Extents ChecksModel::extentsOf(const QList<int> &rows) const
{
    Extents all;
    for (const int row : rows)
        all.add(at(row).place.x, at(row).place.y);
    return all;
}

const char *ChecksModel::nameOf(NetworkTrouble trouble)
{
    constexpr const char *kNames[kTroubles] = {"ui.network.loose", "ui.network.unnamed", "ui.network.noLength"};
    return kNames[static_cast<std::size_t>(trouble)];
}

bool ChecksModel::isLess(int column, int a, int b) const
{
    if (column == Trouble)
        return at(a).trouble < at(b).trouble;
    if (column == Place) {
        const int x = compareNumbers(at(a).place.x, at(b).place.x);
        return x < 0 || (x == 0 && at(a).place.y < at(b).place.y);
    }
    return compareNames(textOf(at(a).name), textOf(at(b).name)) < 0;
}

bool ChecksModel::matches(int row, const QString &text) const
{
    return textOf(at(row).name).contains(text, Qt::CaseInsensitive);
}

const char *ChecksModel::caption(int column) const
{
    constexpr const char *kCaptions[ColumnCount] = {"ui.network.head.trouble", "ui.network.head.name",
                                                    "ui.network.head.place"};
    return kCaptions[column];
}

QString ChecksModel::text(int row, int column) const
{
    switch (column) {
    case Trouble:
        return uiString(nameOf(at(row).trouble));
    case Name:
        return textOf(at(row).name);
    default:
        return numberText(at(row).place.x, kPlaceDecimals) + QStringLiteral("; ") +
               numberText(at(row).place.y, kPlaceDecimals);
    }
}

} // namespace velmor
