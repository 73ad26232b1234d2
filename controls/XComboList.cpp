#include "controls/XComboList.h"

#include "controls/WideText.h"
#include "controls/XListCtrl.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int kBarWidth = 11;
constexpr int kEdges = 4; // pixels that the popup is higher than its rows

constexpr auto kKeys = std::to_array<std::pair<int, ComboKey>>({
    {Qt::Key_Return, ComboKey::Enter},
    {Qt::Key_Enter, ComboKey::Enter},
    {Qt::Key_Escape, ComboKey::Escape},
    {Qt::Key_PageUp, ComboKey::PageUp},
    {Qt::Key_PageDown, ComboKey::PageDown},
    {Qt::Key_Home, ComboKey::Home},
    {Qt::Key_End, ComboKey::End},
    {Qt::Key_Up, ComboKey::Up},
    {Qt::Key_Down, ComboKey::Down},
});

/// True for an event of the left mouse button.
bool IsLeft(const QEvent &event)
{
    return static_cast<const QMouseEvent &>(event).button() == Qt::LeftButton;
}

/// A list box that a letter takes to the next choice that begins with it.
class ChoiceBox : public QListWidget {
public:
    ChoiceBox(const CComboKeys &keys, QWidget *parent) : QListWidget(parent), m_keys(keys) {}
    void keyboardSearch(const QString &typed) override
    {
        if (typed.isEmpty())
            return;
        if (const auto next = m_keys.NextWith(ToWide(typed).back(), currentRow()))
            setCurrentRow(*next);
    }

private:
    const CComboKeys &m_keys;
};

} // namespace

CXComboList::CXComboList(CXListCtrl &owner)
    : QFrame(&owner, Qt::Popup | Qt::FramelessWindowHint), m_owner(owner), m_keys(m_choices),
      m_list(new ChoiceBox(m_keys, this)), m_bar(new QScrollBar(Qt::Vertical, this))
{
    setFrameShape(QFrame::Box);
    setLineWidth(1);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_list->setUniformItemSizes(true);
    m_list->setTextElideMode(Qt::ElideRight);
    m_list->installEventFilter(this);
    m_list->viewport()->installEventFilter(this);
    setFocusProxy(m_list);
    connect(m_bar, &QScrollBar::valueChanged, this, [this](int value) {
        m_keys.SetPosition(value);
        if (m_bar->isSliderDown() || m_bar->underMouse())
            m_list->verticalScrollBar()->setValue(value);
    });
}

void CXComboList::SetChoices(std::vector<std::wstring> choices, int selected)
{
    m_choices = std::move(choices);
    m_list->clear();
    for (const std::wstring &choice : m_choices) {
        auto *item = new QListWidgetItem(ToQString(choice), m_list);
        item->setToolTip(item->text());
    }
    m_list->setCurrentRow(selected);
}

std::optional<std::wstring> CXComboList::GetSelected() const
{
    const int row = m_list->currentRow();
    if (row < 0 || row >= static_cast<int>(m_choices.size()))
        return std::nullopt;
    return m_choices[static_cast<std::size_t>(row)];
}

int CXComboList::RowHeight() const
{
    return m_list->count() > 0 ? m_list->sizeHintForRow(0) : m_list->fontMetrics().height();
}

void CXComboList::ShowAt(const QRect &cell, int rows)
{
    const int wanted = rows * cell.height() - 2;
    QRect place(cell.left(), cell.bottom(), cell.width() - 1, std::max(wanted, RowHeight() + kEdges));
    const QRect free = m_owner.screen()->availableGeometry();
    m_bAbove = place.bottom() > free.bottom() && cell.top() - place.height() >= free.top();
    if (m_bAbove)
        place.moveBottom(cell.top());
    setGeometry(place);
    show();
    Activate();
}

void CXComboList::Activate()
{
    m_list->setFocus(Qt::PopupFocusReason);
    if (!std::exchange(m_bFirstActivation, false))
        return;
    const int rowHeight = std::max(RowHeight(), 1);
    const int rows = std::max((height() - kEdges) / rowHeight, 1);
    const int cut = height() - (rows * rowHeight + kEdges);
    setGeometry(x(), m_bAbove ? y() + cut : y(), width(), height() - cut);
    LayOut();
    m_keys.Start(rows, m_list->currentRow());
    m_bar->setRange(0, m_keys.GetScroll().maximum);
    m_bar->setPageStep(m_keys.GetScroll().page);
    m_bar->setValue(m_keys.GetScroll().position);
    m_list->verticalScrollBar()->setValue(CComboKeys::TopAtStart(m_list->currentRow()));
    // The two losses that an opening brings with it on the platform: here the focus only comes.
    m_keys.LoseFocus();
    m_keys.LoseFocus();
}

void CXComboList::LayOut()
{
    const QRect inner = contentsRect();
    const int edge = (kEdges - 2) / 2;
    m_list->setGeometry(inner.left(), inner.top() + edge, inner.width() - kBarWidth, inner.height() - 2 * edge);
    m_bar->setGeometry(inner.right() + 1 - kBarWidth, inner.top(), kBarWidth, inner.height());
}

void CXComboList::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    LayOut();
}

void CXComboList::Close()
{
    m_bClosing = true;
    hide();
}

void CXComboList::hideEvent(QHideEvent *event)
{
    QFrame::hideEvent(event);
    // The toolkit hides a popup when the person clicks elsewhere.
    if (!std::exchange(m_bClosing, true))
        Tell(ComboNotice::Escape);
}

void CXComboList::Tell(ComboNotice notice)
{
    switch (notice) {
    case ComboNotice::Return:
        m_owner.OnPopupMessage(ReturnMessage());
        break;
    case ComboNotice::Escape:
        m_owner.OnPopupMessage(EscapeMessage());
        break;
    case ComboNotice::KeyDown:
        m_owner.OnPopupMessage(KeyDownMessage());
        break;
    case ComboNotice::ButtonUp:
        m_owner.OnPopupMessage(ButtonUpMessage());
        break;
    case ComboNotice::None:
        break;
    }
}

bool CXComboList::FilterKey(QKeyEvent &event)
{
    ComboKey key = ComboKey::Other;
    wchar_t letter = 0;
    const bool alone = (event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) == Qt::NoModifier;
    if (const auto *row = std::ranges::find(kKeys, event.key(), &std::pair<int, ComboKey>::first); row != kKeys.end())
        key = row->second;
    else if (alone && event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z) {
        key = ComboKey::Letter;
        letter = static_cast<wchar_t>(event.key());
    }
    const ComboNotice notice = m_keys.PressKey(key, letter, m_list->currentRow());
    Tell(notice);
    if (notice == ComboNotice::KeyDown)
        m_bar->setValue(m_keys.GetScroll().position);
    return notice == ComboNotice::Return || notice == ComboNotice::Escape;
}

bool CXComboList::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return watched == m_list && FilterKey(*static_cast<QKeyEvent *>(event));
    case QEvent::FocusOut:
        if (watched == m_list && !m_bClosing)
            Tell(m_keys.LoseFocus());
        return false;
    case QEvent::MouseButtonPress:
        m_bPressed = watched == m_list->viewport() && IsLeft(*event);
        return false;
    case QEvent::MouseMove:
        // Drawn with the button down from the arrow to a choice.
        if (watched == m_list->viewport() && static_cast<QMouseEvent *>(event)->buttons() & Qt::LeftButton)
            m_bPressed = true;
        return false;
    case QEvent::MouseButtonRelease:
        if (watched != m_list->viewport() || !IsLeft(*event))
            return false;
        if (std::exchange(m_bPressed, false))
            Tell(ComboNotice::ButtonUp);
        else
            m_owner.OnButtonUpOverPopup();
        return true;
    default:
        return QFrame::eventFilter(watched, event);
    }
}

void CXComboList::mousePressEvent(QMouseEvent *event)
{
    if (!rect().contains(event->position().toPoint()))
        QFrame::mousePressEvent(event); // closes it
    else if (IsLeft(*event))
        Tell(ComboNotice::ButtonUp);
}

void CXComboList::mouseReleaseEvent(QMouseEvent *event)
{
    if (IsLeft(*event))
        m_owner.OnButtonUpOverPopup();
}

#include "moc_XComboList.cpp"
