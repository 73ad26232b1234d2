// The panel of layers: on, frozen, locked, colour, current, new ones.
#include "contracts/DrawingHost.h"
#include "host/editor/Captions.h"
#include "host/editor/Painter.h"
#include "host/editor/Session.h"
#include "host/editor/UiMessage.h"
#include "host/editor/panels/LayersModel.h"
#include "host/editor/panels/Panel.h"
#include "host/services/Messages.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace velmor {

namespace {

/// A swatch beside the colour's number.
class ColorDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const int side = option->fontMetrics.height() * 3 / 4;
        const bool dark = option->palette.color(QPalette::Base).lightnessF() < 0.5;
        QPixmap swatch(QSize(side, side));
        swatch.fill((dark ? PaintStyle::dark() : PaintStyle::light()).color(index.data().toInt()));
        QPainter painter(&swatch);
        painter.setPen(option->palette.color(QPalette::Text));
        painter.drawRect(0, 0, side - 1, side - 1);
        option->icon = QIcon(swatch);
        option->decorationSize = swatch.size();
        option->features |= QStyleOptionViewItem::HasDecoration;
    }
};

/// The field that a name is typed in says what it is for.
class NameDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
        editor->setAccessibleName(uiString("ui.layers.rename"));
        return editor;
    }
};

class LayersPanel final : public Panel {
public:
    explicit LayersPanel(Session &session)
        : m_session(session), m_model([this](const char *name, const std::function<void(Drawing &)> &work) {
              return changeDrawing(m_session, uiText(name), work);
          })
    {
        m_table = new PanelTable(m_model, "ui.layers.table", this);
        m_table->setItemDelegateForColumn(LayersModel::Color, new ColorDelegate(m_table));
        m_table->setItemDelegateForColumn(LayersModel::Name, new NameDelegate(m_table));
        m_table->setEditTriggers(QAbstractItemView::NoEditTriggers); // by the button; a double click makes current
        m_filter = new QLineEdit(this);
        m_filter->setClearButtonEnabled(true);
        m_new = new QPushButton(this);
        m_rename = new QPushButton(this);
        m_current = new QPushButton(this);
        m_color = new QPushButton(this);
        for (QPushButton *button : {m_new, m_rename, m_current, m_color})
            button->setAutoDefault(false);
        keepCaptioned(this, [this] {
            m_filter->setPlaceholderText(uiString("ui.layers.filter"));
            m_filter->setAccessibleName(uiString("ui.layers.filter"));
            m_new->setText(uiString("ui.layers.new"));
            m_new->setToolTip(uiString("ui.layers.new.tip"));
            m_rename->setText(uiString("ui.layers.rename"));
            m_rename->setToolTip(uiString("ui.layers.rename.tip"));
            m_current->setText(uiString("ui.layers.current"));
            m_color->setText(uiString("ui.layers.color"));
        });
        connect(m_filter, &QLineEdit::textChanged, this,
                [this](const QString &text) { m_table->order().setFilter(text); });
        connect(m_filter, &QLineEdit::returnPressed, this, [this] { m_table->setFocus(); });
        connect(m_new, &QPushButton::clicked, this, [this] { addLayer(); });
        connect(m_rename, &QPushButton::clicked, this, [this] { editName(); });
        connect(&m_model, &LayersModel::refused, this,
                [this](const QString &why) { m_session.status(why.toStdWString()); });
        connect(m_current, &QPushButton::clicked, this, [this] {
            if (const int row = currentRow(); row >= 0)
                m_model.makeCurrent(row);
        });
        connect(m_color, &QPushButton::clicked, this, [this] { chooseColor(currentRow()); });
        connect(m_table, &PanelTable::chosen, this, [this](const QList<int> &rows) {
            if (m_table->currentIndex().column() == LayersModel::Color)
                chooseColor(rows.front());
            else
                m_model.makeCurrent(rows.front());
        });

        auto *buttons = new QGridLayout;
        buttons->addWidget(m_new, 0, 0);
        buttons->addWidget(m_rename, 0, 1);
        buttons->addWidget(m_current, 1, 0);
        buttons->addWidget(m_color, 1, 1);
        auto *column = new QVBoxLayout(this);
        column->addWidget(m_filter);
        column->addWidget(m_table, 1);
        column->addLayout(buttons);
        fitColumns();
    }

    void setDrawing(Drawing *drawing) override { m_model.setDrawing(drawing); }
    void bringUpToDate() override { m_model.bringUpToDate(); }

protected:
    void changeEvent(QEvent *event) override
    {
        Panel::changeEvent(event);
        if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange)
            fitColumns();
    }

private:
    int currentRow() const
    {
        const QModelIndex index = m_table->currentIndex();
        return index.isValid() ? m_table->order().sourceRow(index.row()) : -1;
    }

    /// The text of the filter is the name when it names no layer yet; else a name that is free.
    void addLayer()
    {
        QString name = m_filter->text().trimmed();
        if (name.isEmpty())
            for (int number = 1; name.isEmpty() || m_model.refusalOf(name); ++number)
                name = uiString("ui.layers.newName").arg(number);
        if (const char *refusal = m_model.refusalOf(name)) {
            m_session.status(uiMessage(refusal, {name.toStdWString()}));
            return;
        }
        const int row = m_model.add(name);
        if (row < 0)
            return;
        const QModelIndex shown = m_table->order().mapFromSource(m_model.index(row, LayersModel::Name));
        m_table->setCurrentIndex(shown);
        m_table->scrollTo(shown);
        m_table->setFocus();
    }

    void editName()
    {
        const QModelIndex current = m_table->currentIndex();
        if (!current.isValid())
            return;
        const QModelIndex name = current.siblingAtColumn(LayersModel::Name);
        if (name.flags() & Qt::ItemIsEditable)
            m_table->edit(name);
        else
            m_session.status(uiText("ui.layers.zero"));
    }

    void chooseColor(int row)
    {
        if (row < 0)
            return;
        int color = m_model.layer(row).color;
        if (acedSetColorDialog(color, false, color))
            m_model.setColor(row, color);
    }

    /// The name takes what the narrow columns leave.
    void fitColumns()
    {
        QHeaderView &head = *m_table->horizontalHeader();
        head.setMinimumSectionSize(m_table->fontMetrics().height());
        head.setStretchLastSection(false);
        constexpr int kLettersWide = 34; // the narrow columns and a name of a dozen letters
        m_table->setMinimumWidth(m_table->fontMetrics().averageCharWidth() * kLettersWide);
        const int box = m_table->fontMetrics().height() * 3 / 2; // room for a check box and its symbol
        for (int column = 0; column < LayersModel::ColumnCount; ++column) {
            const bool isBox = LayersModel::isBox(column);
            head.setSectionResizeMode(column, column == LayersModel::Name ? QHeaderView::Stretch
                                              : isBox                     ? QHeaderView::Fixed
                                                                          : QHeaderView::ResizeToContents);
            if (isBox)
                head.resizeSection(column, box);
        }
    }

    Session &m_session;
    LayersModel m_model;
    PanelTable *m_table;
    QLineEdit *m_filter;
    QPushButton *m_new, *m_rename, *m_current, *m_color;
};

const PanelRegistration registration({.name = "layers",
                                      .title = "ui.view.layers",
                                      .key = "Ctrl+1",
                                      .onTheRight = true,
                                      .shown = true,
                                      .make = [](Session &session) -> Panel * { return new LayersPanel(session); }});

} // namespace

} // namespace velmor
