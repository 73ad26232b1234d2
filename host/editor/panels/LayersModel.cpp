#include "host/editor/panels/LayersModel.h"

#include "host/drawing/ChangeLog.h"
#include "host/editor/Captions.h"
#include "host/editor/LayerNames.h"
#include "host/editor/UiMessage.h"

#include <algorithm>
#include <utility>

namespace velmor {

// --- Counts ---------------------------------------------------------------------------------------------------------

LayerCounts::LayerCounts(Drawing &drawing) : m_drawing(drawing), m_log(drawing.component<ChangeLog>())
{
    m_drawing.addObserver(*this);
}

LayerCounts::~LayerCounts()
{
    m_drawing.removeObserver(*this);
}

std::size_t LayerCounts::of(std::size_t layer)
{
    if (m_stale)
        count();
    return layer < m_counts.size() ? m_counts[layer] : 0;
}

void LayerCounts::count()
{
    m_stale = false;
    m_counts.assign(m_drawing.layers().size(), 0);
    for (const auto &block : m_drawing.blocks())
        for (const AcDbEntity *entity : block->entities())
            if (!entity->isErased())
                ++at(layerIndexOf(*entity));
}

std::size_t &LayerCounts::at(std::size_t layer)
{
    if (layer >= m_counts.size())
        m_counts.resize(layer + 1);
    return m_counts[layer];
}

void LayerCounts::entityAppended(AcDbEntity &entity)
{
    if (!m_stale)
        ++at(layerIndexOf(entity));
}

void LayerCounts::note(const AcDbEntity &entity)
{
    m_before = &entity;
    m_layerBefore = layerIndexOf(entity);
}

void LayerCounts::dataChanging(AcDbObject &object, const std::string &)
{
    if (object.isKindOf(AcDbEntity::desc()))
        note(static_cast<AcDbEntity &>(object));
}

void LayerCounts::entityModified(AcDbEntity &entity)
{
    // A change of shape or data, told before it came, that left the entity on its layer.
    if (std::exchange(m_before, nullptr) != &entity || layerIndexOf(entity) != m_layerBefore)
        m_stale = true;
}

void LayerCounts::entityErased(AcDbEntity &entity, bool erased)
{
    if (m_log.exchangesLooks())
        m_stale = true;
    else if (!m_stale)
        at(layerIndexOf(entity)) += erased ? static_cast<std::size_t>(-1) : 1;
}

// --- Model ----------------------------------------------------------------------------------------------------------

LayersModel::LayersModel(Change change, QObject *parent) : PanelModel(parent), m_change(std::move(change)) {}

void LayersModel::setDrawing(Drawing *drawing)
{
    beginResetModel();
    m_drawing = drawing;
    m_revision = drawing ? drawing->revision() : 0;
    m_rows = read();
    endResetModel();
}

std::vector<LayersModel::Row> LayersModel::read() const
{
    std::vector<Row> rows;
    if (!m_drawing)
        return rows;
    auto &counts = m_drawing->component<LayerCounts>();
    const auto layers = m_drawing->layers();
    for (std::size_t i = 0; i < layers.size(); ++i)
        if (!layers[i].erased)
            rows.push_back({i, layers[i], i == m_drawing->currentLayer(), counts.of(i)});
    return rows;
}

void LayersModel::bringUpToDate()
{
    if (!m_drawing || m_drawing->revision() == m_revision)
        return;
    m_revision = m_drawing->revision();
    takeRows(m_rows, read(), [](const Row &a, const Row &b) { return a.index == b.index; });
}

int LayersModel::rowOf(std::size_t layer) const
{
    const auto found = std::ranges::find(m_rows, layer, &Row::index);
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

bool LayersModel::changeLayer(int row, const char *name, const std::function<void(Layer &)> &change)
{
    const std::size_t layerIndex = layerOf(row);
    const bool done = m_change(name, [&](Drawing &drawing) {
        Layer changed = drawing.layer(layerIndex);
        change(changed);
        drawing.setLayer(layerIndex, changed);
    });
    bringUpToDate();
    return done;
}

bool LayersModel::makeCurrent(int row)
{
    const std::size_t layerIndex = layerOf(row);
    const bool done =
        m_change("ui.layers.step.current", [&](Drawing &drawing) { drawing.setCurrentLayer(layerIndex); });
    bringUpToDate();
    return done;
}

bool LayersModel::setColor(int row, int color)
{
    return color >= 1 && color <= 255 &&
           changeLayer(row, "ui.layers.step.color", [&](Layer &changed) { changed.color = color; });
}

const char *LayersModel::refusalOf(const QString &name) const
{
    const std::wstring wideName = name.trimmed().toStdWString();
    if (wideName.empty() || !std::ranges::all_of(wideName, isNameCharacter))
        return "ui.layer.badName";
    return m_drawing && m_drawing->findLayer(wideName) ? "ui.layers.taken" : nullptr;
}

int LayersModel::add(const QString &name)
{
    if (!m_drawing || refusalOf(name))
        return -1;
    const std::wstring wideName = name.trimmed().toStdWString();
    std::size_t layerIndex = 0;
    if (!m_change("ui.layers.step.new", [&](Drawing &drawing) { layerIndex = drawing.ensureLayer(wideName); }))
        return -1;
    bringUpToDate();
    return rowOf(layerIndex);
}

bool LayersModel::rename(int row, const QString &name)
{
    const std::wstring wanted = name.trimmed().toStdWString();
    const std::size_t layerIndex = layerOf(row);
    if (wanted == layer(row).name)
        return false;
    if (const char *refusal = velmor::refusalOf(canRenameLayer(*m_drawing, layerIndex, wanted))) {
        Q_EMIT refused(QString::fromStdWString(uiMessage(refusal, {wanted})));
        return false;
    }
    const bool done = m_change("ui.layers.step.rename",
                               [&](Drawing &drawing) { renameLayerEverywhere(drawing, layerIndex, wanted); });
    bringUpToDate();
    return done;
}

bool LayersModel::isLess(int column, int a, int b) const
{
    const Row &left = m_rows[static_cast<std::size_t>(a)], &right = m_rows[static_cast<std::size_t>(b)];
    switch (column) {
    case Current:
        return left.current > right.current;
    case On:
        return left.layer.on > right.layer.on;
    case Frozen:
        return left.layer.frozen > right.layer.frozen;
    case Locked:
        return left.layer.locked > right.layer.locked;
    case Color:
        return left.layer.color < right.layer.color;
    case Entities:
        return left.entities < right.entities;
    default:
        return compareNames(QString::fromStdWString(left.layer.name), QString::fromStdWString(right.layer.name)) < 0;
    }
}

bool LayersModel::matches(int row, const QString &text) const
{
    return QString::fromStdWString(layer(row).name).contains(text, Qt::CaseInsensitive);
}

const char *LayersModel::caption(int column) const
{
    constexpr const char *kCaptions[ColumnCount] = {
        "ui.layers.head.current", "ui.layers.head.name",  "ui.layers.head.on",      "ui.layers.head.frozen",
        "ui.layers.head.locked",  "ui.layers.head.color", "ui.layers.head.entities"};
    return kCaptions[column];
}

const char *LayersModel::explanation(int column) const
{
    constexpr const char *kTips[ColumnCount] = {"ui.layers.tip.current", nullptr,
                                                "ui.layers.tip.on",      "ui.layers.tip.frozen",
                                                "ui.layers.tip.locked",  "ui.layers.tip.color",
                                                "ui.layers.tip.entities"};
    return kTips[column];
}

const char *LayersModel::symbol(int column) const
{
    constexpr const char *kSymbols[ColumnCount] = {"LAYER_CURRENT", nullptr,       "LAYER_ON",   "LAYER_FROZEN",
                                                   "LAYER_LOCKED",  "LAYER_COLOR", "LAYER_COUNT"};
    return kSymbols[column];
}

Qt::ItemFlags LayersModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = PanelModel::flags(index);
    if (index.column() == Name && layer(index.row()).name != L"0")
        flags |= Qt::ItemIsEditable;
    if (isBox(index.column()))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QString LayersModel::text(int row, int column) const
{
    switch (column) {
    case Name:
        return QString::fromStdWString(layer(row).name);
    case Color:
        return QString::number(layer(row).color);
    case Entities:
        return QString::number(m_rows[static_cast<std::size_t>(row)].entities);
    default:
        return {};
    }
}

QVariant LayersModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::CheckStateRole) {
        const auto state = [](bool on) { return QVariant(on ? Qt::Checked : Qt::Unchecked); };
        switch (index.column()) {
        case Current:
            return state(row.current);
        case On:
            return state(row.layer.on);
        case Frozen:
            return state(row.layer.frozen);
        case Locked:
            return state(row.layer.locked);
        default:
            return {};
        }
    }
    if (role == Qt::EditRole && index.column() == Name)
        return text(index.row(), Name);
    if (role == Qt::AccessibleTextRole) // a lone check box or swatch says what it is of
        return uiString(caption(index.column())) + QStringLiteral(": ") +
               (index.column() == Name ? QString() : QString::fromStdWString(row.layer.name) + QLatin1Char(' ')) +
               text(index.row(), index.column());
    return PanelModel::data(index, role);
}

bool LayersModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    if (role == Qt::EditRole && index.column() == Name)
        return rename(index.row(), value.toString());
    if (role != Qt::CheckStateRole)
        return false;
    const bool on = value.toInt() == Qt::Checked;
    switch (index.column()) {
    case Current: // one layer is always current: the mark can only be set
        return on && makeCurrent(index.row());
    case On:
        return changeLayer(index.row(), "ui.layers.step.on", [&](Layer &layer) { layer.on = on; });
    case Frozen: // what is drawn would vanish at once
        if (on && isCurrent(index.row()))
            return false;
        return changeLayer(index.row(), "ui.layers.step.frozen", [&](Layer &layer) { layer.frozen = on; });
    case Locked:
        return changeLayer(index.row(), "ui.layers.step.locked", [&](Layer &layer) { layer.locked = on; });
    default:
        return false;
    }
}

} // namespace velmor
