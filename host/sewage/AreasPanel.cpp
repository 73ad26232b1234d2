// The panel of catchment areas, and what the panel of properties tells about an area.
#include "host/editor/Captions.h"
#include "host/editor/Session.h"
#include "host/editor/panels/Panel.h"
#include "host/editor/panels/PropertiesModel.h"
#include "host/services/Messages.h"
#include "host/sewage/AreaDialogs.h"
#include "host/sewage/AreasModel.h"
#include "host/sewage/CatchmentStore.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmor {

namespace {

constexpr int kHectareDecimals = 4;
constexpr char kSharesName[] = "ui.areas.shares";

class AreasPanel final : public Panel {
public:
    explicit AreasPanel(Session &session) : m_session(session)
    {
        m_filter = new QLineEdit(this);
        m_filter->setClearButtonEnabled(true);
        m_zoom = new QPushButton(this);
        m_copy = new QPushButton(this);
        m_shares = new QPushButton(this);
        m_editShares = new QAction(this);
        m_editShares->setShortcut(Qt::ALT | Qt::Key_Return);
        m_editShares->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(m_editShares);
        m_sums = new QLabel(this);
        m_sums->setWordWrap(true);
        m_table = new PanelTable(m_model, "ui.areas.table", this);
        auto *row = new QHBoxLayout;
        row->addWidget(m_filter, 1);
        row->addWidget(m_zoom);
        row->addWidget(m_copy);
        row->addWidget(m_shares);
        auto *column = new QVBoxLayout(this);
        column->addLayout(row);
        column->addWidget(m_table, 1);
        column->addWidget(m_sums);

        keepCaptioned(this, [this] {
            m_filter->setPlaceholderText(uiString("ui.areas.filter"));
            m_filter->setAccessibleName(uiString("ui.areas.filter"));
            m_zoom->setText(uiString("ui.areas.zoom"));
            m_zoom->setToolTip(uiString("ui.areas.zoom.tip"));
            m_copy->setText(uiString("ui.areas.copy"));
            m_copy->setToolTip(uiString("ui.areas.copy.tip"));
            m_editShares->setText(uiString(kSharesName));
            m_shares->setText(uiString(kSharesName));
            m_shares->setToolTip(uiString("ui.areas.shares.tip"));
            setSums();
        });
        connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
            m_table->order().setFilter(text);
            setSums();
        });
        connect(m_filter, &QLineEdit::returnPressed, this, [this] { m_table->setFocus(); });
        connect(m_zoom, &QPushButton::clicked, this, [this] { zoomTo(m_table->selectedRows()); });
        connect(m_copy, &QPushButton::clicked, this, [this] { m_table->copyRows(); });
        connect(m_shares, &QPushButton::clicked, m_editShares, &QAction::trigger);
        connect(m_editShares, &QAction::triggered, this, [this] { editShares(); });
        connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { offerShares(); });
        m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
        m_table->addAction(m_editShares);
        offerShares();
        connect(m_table, &PanelTable::chosen, this, [this](const QList<int> &rows) { zoomTo(rows); });
    }

    void setDrawing(Drawing *drawing) override
    {
        m_model.setDrawing(drawing);
        setSums();
    }

    void bringUpToDate() override
    {
        offerShares();
        const bool first = m_model.rowCount() == 0;
        if (!m_model.bringUpToDate())
            return;
        if (first && m_model.rowCount() > 0)
            m_table->resizeColumnsToContents();
        setSums();
    }

private:
    /// Sums of what is shown, a line for each type that is there.
    void setSums()
    {
        QList<int> rows;
        for (int row = 0; row < m_table->order().rowCount(); ++row)
            rows.append(m_table->order().sourceRow(row));
        const AreaSums sums = m_model.sumsOf(rows);
        const auto line = [](const QString &name, const TypeSum &sum) {
            return uiString("ui.areas.sum")
                .arg(name)
                .arg(sum.areas)
                .arg(numberText(sum.gross, kHectareDecimals), numberText(sum.net, kHectareDecimals));
        };
        QStringList lines;
        for (std::size_t bit = 0; bit < sums.byType.size(); ++bit)
            if (sums.byType[bit].areas > 0)
                lines.append(line(areaTypeWords(1 << bit), sums.byType[bit]));
        lines.append(line(uiString("ui.areas.total"), sums.all));
        m_sums->setText(lines.join(QLatin1Char('\n')));
    }

    /// The dialog is there while its module is; it is about one area.
    void offerShares()
    {
        const bool offered = sectionSharesDialog() != nullptr && m_table->selectedRows().size() == 1;
        m_editShares->setEnabled(offered);
        m_shares->setEnabled(offered);
    }

    void editShares()
    {
        const QList<int> rows = m_table->selectedRows();
        const ZEMGis::Sewage::AreaDialog dialog = sectionSharesDialog();
        if (!dialog || rows.size() != 1)
            return;
        const std::wstring guid = m_model.area(rows.front()).guid;
        changeDrawing(m_session, uiText(kSharesName), [&](Drawing &drawing) {
            if (const CatchmentStore::AreaPtr area = drawing.component<CatchmentStore>().byGuid(guid))
                dialog(area);
        });
    }

    void zoomTo(const QList<int> &rows)
    {
        Drawing *drawing = m_session.drawing();
        if (!drawing)
            return;
        auto &store = drawing->component<CatchmentStore>();
        AcDbObjectIdArray ids;
        Extents extents;
        for (const int row : rows)
            if (const CatchmentStore::AreaPtr area = store.byGuid(m_model.area(row).guid); area && area->entity()) {
                ids.push_back(area->GetObjectId());
                extents.add(extentsOf(*area->entity()));
            }
        selectAndShow(m_session, ids, extents);
    }

    Session &m_session;
    AreasModel m_model;
    PanelTable *m_table;
    QLineEdit *m_filter;
    QPushButton *m_zoom, *m_copy, *m_shares;
    QAction *m_editShares;
    QLabel *m_sums;
};

const PanelRegistration registration({.name = "areas",
                                      .title = "ui.view.areas",
                                      .key = "Ctrl+4",
                                      .onTheRight = false,
                                      .shown = false,
                                      .make = [](Session &session) -> Panel * { return new AreasPanel(session); }});

/// An area's outline, and a section with the areas that drain to it.
void addAreaRows(Drawing &drawing, AcDbEntity &entity, PropertyRows &rows)
{
    auto &store = drawing.component<CatchmentStore>();
    const bool isOfArea = drawing.data(entity, kAreaDataKey) || drawing.data(entity, kLabelDataKey);
    if (const CatchmentStore::AreaPtr area = isOfArea ? store.areaOfEntity(idOf(entity)) : nullptr) {
        const auto number = [](double value, int decimals) { return numberText(value, decimals); };
        rows.push_back({"ui.property.catchment", QString::fromStdWString(area->GetName())});
        rows.push_back({"ui.areas.head.type", areaTypeWords(area->GetType())});
        rows.push_back({"ui.areas.head.gross", number(area->GetArea(), kHectareDecimals)});
        rows.push_back({"ui.areas.head.net", number(store.netHectares(*area), kHectareDecimals)});
        rows.push_back({"ui.area.coefficient", number(area->GetFlowCoeff(), 2)});
        rows.push_back({"ui.area.density", number(area->GetPopulation(), 2)});
        ZEMGis::Sewage::SectionShares sections;
        area->GetConnectedSections(sections);
        QStringList words;
        for (const auto &[section, share] : sections)
            words.append(QString::fromStdWString(section->GetName()) + QLatin1Char(' ') + number(share * 100.0, 1) +
                         QLatin1Char('%'));
        rows.push_back({"ui.area.sections", words.join(QStringLiteral(", "))});
        return;
    }
    const auto section = drawing.component<Network>().GetSectionById(idOf(entity));
    if (!section)
        return;
    CatchmentStore::Areas areas;
    store.collectBySection(section->GetGuid(), areas, ZEMGis::Sewage::kTypeAll);
    QStringList names;
    for (const auto &area : areas)
        names.append(QString::fromStdWString(area->GetName()));
    if (!names.isEmpty())
        rows.push_back({"ui.section.areas", names.join(QStringLiteral(", "))});
}

const PropertySourceRegistration areaSource(addAreaRows);

} // namespace

} // namespace velmor
