#include "host/menu/iconAction.h"
#include "host/widgets/IconGrid.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/iconview.h"
#include "support/host/language.h"
#include "support/host/ui.h"
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QTimer>

namespace {

constexpr int kSwipePixels = 60;
constexpr int kHoldMs = 800;
constexpr int kSlipPixels = 24; // a finger that moved further is not about to tap

// Where the widget uses arrows and OK itself.
bool usesKeys(const QWidget* widget)
{
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractItemView*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QAbstractSlider*>(widget) || qobject_cast<const QTextEdit*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget);
}

// The icon that an arrow leads to: rows and columns go on over the edge of a page, and from the last
// icon to the first.
int neighbour(int row, int key, int count, int columns)
{
    if (key == Qt::Key_Left)
        return (row + count - 1) % count;
    if (key == Qt::Key_Right)
        return (row + 1) % count;
    const int lines = (count + columns - 1) / columns;
    const int line = (row / columns + (key == Qt::Key_Up ? lines - 1 : 1)) % lines;
    return qMin(line * columns + row % columns, count - 1);
}

bool isArrow(int key)
{
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

} // namespace

struct qIconView::Private
{
    explicit Private(qIconView* view) : q(view) {}

    void Show(const IconMenu& loaded, bool keep);
    void Retranslate();
    int RowToKeep(const IconMenuItem& selected, int row) const;
    int PageStart() const { return page * grid.IconsOnPage(); }
    int RowAt(const QPoint& point) const;
    void Select(int row);
    void Open(int row);
    void Release(const QPoint& point);
    void Hold();
    bool TakesKeys(const QObject* receiver) const;
    bool OnKey(const QKeyEvent* key);
    void ListenToKeys(bool listen);

    qIconView* q;
    IconMenu menu;
    IconGrid grid;
    QString source; // path of the menu, empty: the directory
    int page = 0;
    int pressed = -1; // row under the finger since the press
    bool pressShown = false;
    bool fingerDown = false;
    QPoint pressPoint;
    QTimer hold;
};

// A selected icon is found again by its title; where that is gone, the icon in its place is selected.
int qIconView::Private::RowToKeep(const IconMenuItem& selected, int row) const
{
    const int count = int(menu.items.size());
    if (row < count && menu.items.at(row).strTitle == selected.strTitle)
        return row;
    for (int i = 0; i < count; ++i) {
        if (menu.items.at(i).strTitle == selected.strTitle)
            return i;
    }
    return qMin(row, count - 1);
}

void qIconView::Private::Show(const IconMenu& loaded, bool keep)
{
    const int row = q->currentRow();
    const IconMenuItem selected = keep ? menu.items.value(row) : IconMenuItem();
    menu = loaded;
    q->m_strTitleName = menu.strTitle;
    q->m_strIconPath = menu.strIcon;
    pressed = -1;
    q->clear();
    for (const IconMenuItem& item : menu.items)
        q->addItem(item.caption());
    Select(menu.items.isEmpty() ? -1 : keep && row >= 0 ? RowToKeep(selected, row) : 0);
}

void qIconView::Private::Retranslate()
{
    for (int row = 0; row < q->count(); ++row)
        q->item(row)->setText(menu.items.at(row).caption());
    q->viewport()->update();
}

int qIconView::Private::RowAt(const QPoint& point) const
{
    const int place = grid.PlaceAt(point);
    const int row = PageStart() + place;
    return place >= 0 && row < q->count() ? row : -1;
}

void qIconView::Private::Select(int row)
{
    q->setCurrentRow(row);
    page = qMax(row, 0) / grid.IconsOnPage();
    q->viewport()->update();
}

void qIconView::Private::Open(int row)
{
    const IconMenuItem item = menu.items.at(row); // what opens may load the menu again
    Select(row);
    openIconMenuItem(item, q->window());
}

// A finger that stays long enough has done what it came for.
void qIconView::Private::Hold()
{
    if (!fingerDown || !pressShown)
        return;
    const int row = pressed;
    const IconMenuItem item = menu.items.at(row);
    if (!canHoldIconMenuItem(item))
        return;
    fingerDown = false;
    pressed = -1;
    Select(row);
    holdIconMenuItem(item, q->window());
}

void qIconView::Private::Release(const QPoint& point)
{
    hold.stop();
    const QPoint way = point - pressPoint;
    const int row = pressShown ? pressed : -1;
    fingerDown = false;
    pressed = -1;
    q->viewport()->update();
    if (qAbs(way.x()) >= kSwipePixels && qAbs(way.x()) > 2 * qAbs(way.y()) && q->GetPageCount() > 1)
        way.x() < 0 ? q->PageDown() : q->PageUp();
    else if (row >= 0 && row == RowAt(point))
        Open(row);
}

bool qIconView::Private::TakesKeys(const QObject* receiver) const
{
    if (!receiver->isWidgetType() || q->count() == 0 || !q->isVisible() || QApplication::activePopupWidget())
        return false;
    const QWidget* focus = q->window()->focusWidget();
    return static_cast<const QWidget*>(receiver)->window() == q->window() &&
           (focus == q || focus == q->viewport() || !usesKeys(focus));
}

bool qIconView::Private::OnKey(const QKeyEvent* key)
{
    const int row = qMax(q->currentRow(), 0);
    if (isArrow(key->key()))
        Select(neighbour(row, key->key(), q->count(), grid.Columns()));
    else if (key->key() == Qt::Key_Asterisk)
        return holdIconMenuItem(menu.items.at(row), q->window());
    else if (!qIsOkKey(key->key()))
        return false;
    else if (!key->isAutoRepeat())
        Open(row);
    return true;
}

// The menus give the grid no focus: while its window is active it takes its keys from all over the
// window, also from a button that has the focus.
void qIconView::Private::ListenToKeys(bool listen)
{
    if (listen)
        qApp->installEventFilter(q);
    else
        qApp->removeEventFilter(q);
}

qIconView::qIconView(QWidget* parent) : QListWidget(parent), m_p(new Private(this))
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setUniformItemSizes(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_p->hold.setSingleShot(true);
    m_p->hold.setInterval(kHoldMs);
    connect(&m_p->hold, &QTimer::timeout, this, [this] { m_p->Hold(); });
    viewport()->setAutoFillBackground(false);
    qFollowLanguage(this, [this] { m_p->Retranslate(); });
}

qIconView::~qIconView()
{
    m_p->ListenToKeys(false);
    delete m_p;
}

int qIconView::LoadMenuFile(const char* path)
{
    const QString source = QString::fromUtf8(path);
    const bool again = source == m_p->source;
    IconMenu menu;
    const int loaded = loadIconMenu(path, menu);
    m_p->source = source;
    m_p->Show(menu, again);
    return loaded;
}

int qIconView::LoadMenuFileEx(const char* name)
{
    if (qstrcmp(name, "Directory") != 0)
        return 0;
    const bool again = m_p->source.isEmpty();
    IconMenu menu;
    makeDirectoryMenu(menu);
    m_p->source.clear();
    m_p->Show(menu, again);
    return 1;
}

void qIconView::SetMartrixGrix(int columns, int rows)
{
    m_p->grid.SetMatrix(columns, rows);
    m_p->Select(currentRow());
}

int qIconView::GetPageCount() const
{
    const int icons = m_p->grid.IconsOnPage();
    return (count() + icons - 1) / icons;
}

int qIconView::GetCurrentPage() const
{
    return m_p->page;
}

void qIconView::SetCurrentPage(int page)
{
    if (count() > 0)
        m_p->Select(qBound(0, page, GetPageCount() - 1) * m_p->grid.IconsOnPage());
}

void qIconView::PageDown()
{
    SetCurrentPage(m_p->page + 1 < GetPageCount() ? m_p->page + 1 : 0);
}

void qIconView::PageUp()
{
    SetCurrentPage(m_p->page > 0 ? m_p->page - 1 : GetPageCount() - 1);
}

void qIconView::refreshIconView()
{
    if (m_p->source.isEmpty())
        LoadMenuFileEx("Directory");
    else
        LoadMenuFile(m_p->source.toUtf8().constData());
}

int qIconView::currentIconCount() const
{
    return count();
}

void qIconView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(-viewport()->pos());
    m_p->grid.SetArea(rect());
    const int end = qMin(m_p->PageStart() + m_p->grid.IconsOnPage(), count());
    for (int row = m_p->PageStart(); row < end; ++row) {
        const bool isPressed = m_p->pressShown && row == m_p->pressed;
        const IconGrid::State state = isPressed             ? IconGrid::Pressed
                                      : row == currentRow() ? IconGrid::Selected
                                                            : IconGrid::Normal;
        m_p->grid.PaintIcon(painter, row - m_p->PageStart(), m_p->menu.items.at(row).strIcon,
                            item(row)->text(), state);
    }
    m_p->grid.PaintPageDots(painter, GetPageCount(), m_p->page);
}

void qIconView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_p->grid.SetArea(rect());
    m_p->fingerDown = true;
    m_p->pressPoint = event->pos() + viewport()->pos();
    m_p->pressed = m_p->RowAt(m_p->pressPoint);
    m_p->pressShown = m_p->pressed >= 0;
    m_p->hold.start();
    viewport()->update();
}

void qIconView::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_p->fingerDown)
        return;
    const QPoint point = event->pos() + viewport()->pos();
    const bool slips = GetPageCount() > 1 && qAbs(point.x() - m_p->pressPoint.x()) > kSlipPixels;
    m_p->pressShown = m_p->pressed >= 0 && !slips && m_p->RowAt(point) == m_p->pressed;
    viewport()->update();
}

void qIconView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && m_p->fingerDown)
        m_p->Release(event->pos() + viewport()->pos());
}

bool qIconView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && m_p->TakesKeys(watched) &&
        m_p->OnKey(static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return watched == viewport() && QListWidget::eventFilter(watched, event);
}

bool qIconView::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        m_p->ListenToKeys(true);
        break;
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        m_p->ListenToKeys(false);
        m_p->pressed = -1;
        m_p->fingerDown = false;
        break;
    case QEvent::Show:
        m_p->ListenToKeys(isActiveWindow());
        break;
    default:
        break;
    }
    return QListWidget::event(event);
}

qIconView* qReplaceIconView(QWidget* placeholder)
{
    return replacePlaceholder<qIconView>(placeholder);
}
