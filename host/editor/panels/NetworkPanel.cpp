// The panel of the network: import, tables of sections and nodes with search and zoom, checks.
#include "host/editor/Captions.h"
#include "host/editor/Session.h"
#include "host/editor/panels/NetworkModels.h"
#include "host/editor/panels/Panel.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace velmor {

namespace {

class NetworkPanel final : public Panel {
public:
    explicit NetworkPanel(Session &session)
        : m_session(session), m_sections(m_watch), m_nodes(m_watch), m_checks(m_watch)
    {
        m_import = new QPushButton(this);
        m_fromLayers = new QPushButton(this);
        m_zoom = new QPushButton(this);
        m_search = new QLineEdit(this);
        m_search->setClearButtonEnabled(true);
        m_shown = new QComboBox(this);
        m_shown->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        m_counts = new QLabel(this);
        m_tabs = new QTabWidget(this);
        m_tabs->setDocumentMode(true);
        m_tables = {new PanelTable(m_sections, "ui.network.sections", this),
                    new PanelTable(m_nodes, "ui.network.nodes", this),
                    new PanelTable(m_checks, "ui.network.checks", this)};
        m_tabs->addTab(m_tables[0], QString());
        m_tabs->addTab(m_tables[1], QString());
        auto *checks = new QWidget(this);
        auto *checksColumn = new QVBoxLayout(checks);
        checksColumn->setContentsMargins(0, 0, 0, 0);
        checksColumn->addWidget(m_shown, 0, Qt::AlignLeft);
        checksColumn->addWidget(m_tables[2], 1);
        m_tabs->addTab(checks, QString());

        auto *row = new QHBoxLayout;
        row->addWidget(m_search, 1);
        row->addWidget(m_zoom);
        row->addWidget(m_import);
        row->addWidget(m_fromLayers);
        auto *column = new QVBoxLayout(this);
        column->addLayout(row);
        column->addWidget(m_tabs, 1);
        column->addWidget(m_counts);

        keepCaptioned(this, [this] { setCaptions(); });
        connect(m_import, &QPushButton::clicked, this, [this] { import(); });
        connect(m_fromLayers, &QPushButton::clicked, this, [this] { startCommand(m_session, L"SECTIONS"); });
        connect(m_zoom, &QPushButton::clicked, this, [this] {
            PanelTable *table = m_tables[static_cast<std::size_t>(m_tabs->currentIndex())];
            zoomTo(*table, table->selectedRows());
        });
        connect(m_search, &QLineEdit::textChanged, this, [this](const QString &text) {
            for (PanelTable *table : m_tables)
                table->order().setFilter(text);
        });
        connect(m_search, &QLineEdit::returnPressed, this, [this] { m_tabs->currentWidget()->setFocus(); });
        connect(m_shown, &QComboBox::currentIndexChanged, this, [this](int index) {
            m_checks.setShown(index > 0 ? std::optional(static_cast<NetworkTrouble>(index - 1)) : std::nullopt);
            m_tables[2]->order().filterAgain();
        });
        connect(m_tabs, &QTabWidget::currentChanged, this, [this] { bringUpToDate(); });
        for (PanelTable *table : m_tables)
            connect(table, &PanelTable::chosen, this, [this, table](const QList<int> &rows) { zoomTo(*table, rows); });
    }

    void setDrawing(Drawing *drawing) override
    {
        for (NetworkModel *model : models())
            model->reset();
        m_watch.setDrawing(drawing);
    }

    void bringUpToDate() override
    {
        const bool first = m_sections.rowCount() == 0;
        for (NetworkModel *model : models())
            model->bringUpToDate();
        if (first && m_sections.rowCount() > 0)
            for (PanelTable *table : m_tables)
                table->resizeColumnsToContents();
        setCounts();
    }

private:
    std::array<NetworkModel *, 3> models() { return {&m_sections, &m_nodes, &m_checks}; }

    /// The menu's item asks for the file in a dialog; where there is no menu, the command asks.
    void import()
    {
        for (QWidget *around = this; around != nullptr; around = around->parentWidget())
            if (qobject_cast<QMainWindow *>(around) != nullptr)
                if (auto *item = around->findChild<QAction *>(QStringLiteral("IMPORT")))
                    return item->trigger();
        startCommand(m_session, L"IMPORT");
    }

    void setCaptions()
    {
        m_import->setText(uiString("ui.network.import"));
        m_import->setToolTip(uiString("ui.network.import.tip"));
        m_fromLayers->setText(uiString("ui.network.fromLayers"));
        m_fromLayers->setToolTip(uiString("ui.network.fromLayers.tip"));
        m_zoom->setText(uiString("ui.network.zoom"));
        m_zoom->setToolTip(uiString("ui.network.zoom.tip"));
        m_search->setPlaceholderText(uiString("ui.network.search"));
        m_search->setAccessibleName(uiString("ui.network.search"));
        m_shown->setAccessibleName(uiString("ui.network.shown"));
        m_tabs->setAccessibleName(uiString("ui.network.tables"));
        m_tabs->setTabText(0, uiString("ui.network.sections"));
        m_tabs->setTabText(1, uiString("ui.network.nodes"));
        m_counted = {};
        setCounts();
    }

    /// Counts of the tables, and of each kind of trouble in the list of kinds.
    void setCounts()
    {
        const std::array<std::size_t, 6> now = {static_cast<std::size_t>(m_sections.rowCount()),
                                                static_cast<std::size_t>(m_nodes.rowCount()),
                                                m_checks.count(),
                                                m_checks.count(NetworkTrouble::LooseEnd),
                                                m_checks.count(NetworkTrouble::UnnamedNode),
                                                m_checks.count(NetworkTrouble::NoLength)};
        if (m_counted == std::optional(now))
            return;
        m_counted = now;
        m_counts->setText(uiString("ui.network.counts").arg(now[0]).arg(now[1]));
        m_tabs->setTabText(2, uiString("ui.network.checks") + QStringLiteral(" (%1)").arg(now[2]));
        const auto entry = [](const char *name, std::size_t count) {
            return uiString(name) + QStringLiteral(" (%1)").arg(count);
        };
        if (m_shown->count() == 0)
            for (std::size_t i = 0; i <= ChecksModel::kTroubles; ++i)
                m_shown->addItem(QString());
        m_shown->setItemText(0, entry("ui.network.all", now[2]));
        for (std::size_t i = 0; i < ChecksModel::kTroubles; ++i)
            m_shown->setItemText(static_cast<int>(i) + 1,
                                 entry(ChecksModel::nameOf(static_cast<NetworkTrouble>(i)), now[3 + i]));
    }

    void zoomTo(const PanelTable &table, const QList<int> &rows)
    {
        if (rows.isEmpty())
            return;
        const auto &model = static_cast<const NetworkModel &>(table.order().model());
        AcDbObjectIdArray ids;
        for (const int row : rows)
            ids.push_back(model.entityOf(row));
        selectAndShow(m_session, ids, model.extentsOf(rows));
    }

    Session &m_session;
    NetworkWatch m_watch;
    SectionsModel m_sections;
    NodesModel m_nodes;
    ChecksModel m_checks;
    QPushButton *m_import, *m_fromLayers, *m_zoom;
    QLineEdit *m_search;
    QComboBox *m_shown;
    QLabel *m_counts;
    QTabWidget *m_tabs;
    std::array<PanelTable *, 3> m_tables;
    std::optional<std::array<std::size_t, 6>> m_counted;
};

const PanelRegistration registration({.name = "network",
                                      .title = "ui.view.network",
                                      .key = "Ctrl+3",
                                      .onTheRight = false,
                                      .shown = false,
                                      .make = [](Session &session) -> Panel * { return new NetworkPanel(session); }});

} // namespace

} // namespace velmor
