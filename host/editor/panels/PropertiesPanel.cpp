// The panel of what is selected.
#include "host/editor/Captions.h"
#include "host/editor/Selection.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/editor/panels/Panel.h"
#include "host/editor/panels/PropertiesModel.h"
#include "host/services/Messages.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velmor {

namespace {

constexpr int kByLayer = 256;

class PropertiesPanel final : public Panel {
public:
    explicit PropertiesPanel(Session &session)
        : m_session(session), m_model([this](const char *name, const std::function<void(Drawing &)> &work) {
              return changeDrawing(m_session, uiText(name), work);
          })
    {
        m_nothing = new QLabel(this);
        m_nothing->setWordWrap(true);
        m_layer = new QComboBox(this);
        m_layer->setMinimumContentsLength(10);
        m_layer->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_color = new QPushButton(this);
        m_byLayer = new QPushButton(this);
        m_table = new PanelTable(m_model, "ui.property.table", this);
        m_table->setSortingEnabled(false);
        for (QPushButton *button : {m_color, m_byLayer})
            button->setAutoDefault(false);
        keepCaptioned(this, [this] {
            m_nothing->setText(uiString("ui.property.nothing"));
            m_layer->setAccessibleName(uiString("ui.property.layer"));
            m_layer->setToolTip(uiString("ui.property.layer.tip"));
            m_color->setText(uiString("ui.property.chooseColor"));
            m_byLayer->setText(uiString("ui.property.byLayer"));
            m_byLayer->setToolTip(uiString("ui.property.byLayer.tip"));
            m_shown = {};
            if (isVisible())
                bringUpToDate();
        });
        connect(m_layer, &QComboBox::activated, this, [this](int index) {
            m_model.setLayer(m_layer->itemData(index).toULongLong());
            bringUpToDate();
        });
        connect(&m_model, &PropertiesModel::leftOut, this, [this](std::size_t count) {
            m_session.status(uiMessage("ui.property.locked", {std::to_wstring(count)}));
        });
        connect(m_color, &QPushButton::clicked, this, [this] { chooseColor(); });
        connect(m_byLayer, &QPushButton::clicked, this, [this] {
            m_model.setColor(kByLayer);
            bringUpToDate();
        });
        connect(m_table, &PanelTable::chosen, this, [this](const QList<int> &rows) {
            if (rows.front() == m_model.colorRow())
                chooseColor();
            else if (rows.front() == m_model.layerRow())
                m_layer->showPopup();
        });

        auto *row = new QHBoxLayout;
        row->addWidget(m_layer, 1);
        row->addWidget(m_color);
        row->addWidget(m_byLayer);
        auto *column = new QVBoxLayout(this);
        column->addWidget(m_nothing);
        column->addLayout(row);
        column->addWidget(m_table, 1);
    }

    void setDrawing(Drawing *drawing) override
    {
        m_drawing = drawing;
        m_listener.reset();
        m_shown = {};
        m_model.show(nullptr, {});
        if (drawing)
            m_listener = drawing->component<Selection>().onChange([this] {
                if (isVisible())
                    bringUpToDate();
            });
    }

    void bringUpToDate() override
    {
        if (!m_drawing)
            return;
        const auto &selection = m_drawing->component<Selection>();
        const Shown now{m_drawing, selection.revision(), m_drawing->revision()};
        if (now == m_shown)
            return;
        m_shown = now;
        m_model.show(m_drawing, selection.members());
        const bool any = m_model.count() > 0;
        m_nothing->setVisible(!any);
        for (QWidget *widget : {static_cast<QWidget *>(m_layer), static_cast<QWidget *>(m_color),
                                static_cast<QWidget *>(m_byLayer), static_cast<QWidget *>(m_table)})
            widget->setEnabled(any);
        m_table->resizeColumnToContents(PropertiesModel::Property);
        listLayers();
    }

private:
    struct Shown {
        const Drawing *drawing = nullptr;
        std::uint64_t selection = 0, revision = 0;
        bool operator==(const Shown &) const = default;
    };

    void listLayers()
    {
        m_layer->clear();
        const auto layers = m_drawing->layers();
        for (std::size_t i = 0; i < layers.size(); ++i)
            if (!layers[i].erased)
                m_layer->addItem(QString::fromStdWString(layers[i].name), static_cast<qulonglong>(i));
        const auto common = m_model.commonLayer();
        m_layer->setCurrentIndex(common ? m_layer->findData(static_cast<qulonglong>(*common)) : -1);
    }

    void chooseColor()
    {
        if (m_model.count() == 0)
            return;
        int color = m_model.commonColor().value_or(kByLayer);
        const auto layer = m_model.commonLayer();
        const int layerColor = layer ? m_drawing->layer(*layer).color : 7;
        if (acedSetColorDialog(color, true, layerColor))
            m_model.setColor(color);
        bringUpToDate();
    }

    Session &m_session;
    PropertiesModel m_model;
    Drawing *m_drawing = nullptr;
    std::shared_ptr<void> m_listener;
    Shown m_shown;
    QLabel *m_nothing;
    QComboBox *m_layer;
    QPushButton *m_color, *m_byLayer;
    PanelTable *m_table;
};

const PanelRegistration
    registration({.name = "properties",
                  .title = "ui.view.properties",
                  .key = "Ctrl+2",
                  .onTheRight = true,
                  .shown = true,
                  .make = [](Session &session) -> Panel * { return new PropertiesPanel(session); }});

} // namespace

} // namespace velmor
