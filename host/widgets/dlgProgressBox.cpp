#include "host/widgets/dlgProgressBox.h"
#include "host/look/look.h"
#include "host/screen/windowStack.h"
#include "host/services/system/hostLog.h"
#include "support/host/box.h"
#include <QEventLoop>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <utility>

namespace {

constexpr int kLookMs = 50;
constexpr int kBarHeight = 12;
constexpr int kBarGap = 14; // above it

} // namespace

dlgProgressBox::dlgProgressBox(const QString& title, const QString& text, std::function<int()> percent,
                               QWidget* page)
    : BoxDialog(title, text, HX_THEME("msgbox/mb_info.png"), kBarGap + kBarHeight, page),
      m_percent(std::move(percent)), m_page(page), m_pLook(new QTimer(this))
{
    setObjectName(QStringLiteral("dlgProgressBox"));
    setModal(true);
    connect(addButton("btnCancel", HX_TR("Cancel"), 0), &QPushButton::clicked, this,
            &dlgProgressBox::cancelled);
    connect(m_pLook, &QTimer::timeout, this, &dlgProgressBox::look);
    m_pLook->start(kLookMs);
    if (page)
        page->installEventFilter(this);
    look();
}

QRect dlgProgressBox::bar() const
{
    return belowText().adjusted(0, kBarGap, 0, 0);
}

void dlgProgressBox::look()
{
    const int percent = qBound(0, m_percent(), 100);
    if (percent == m_nShown)
        return;
    m_nShown = percent;
    update(bar());
}

void dlgProgressBox::paintEvent(QPaintEvent* event)
{
    BoxDialog::paintEvent(event);
    QPainter painter(this);
    const QRect all = bar();
    look::paintBox(painter, all, kBarHeight / 2.0, look::kButton);
    painter.setClipRect(QRect(all.topLeft(), QSize(all.width() * m_nShown / 100, all.height())));
    look::paintBox(painter, all, kBarHeight / 2.0, look::kBlue);
}

void dlgProgressBox::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_Back:
    case Qt::Key_F4:
        emit cancelled();
        break;
    default:
        break;
    }
}

// No person does that: whoever comes up over the page takes the boxes away. The work goes on.
void dlgProgressBox::reject()
{
    m_bAway = true;
    hide();
    // It has no caller that would close the window again; by then the stack knows which one it is.
    QMetaObject::invokeMethod(&windowStack::instance(), &windowStack::boxesEnded, Qt::QueuedConnection);
}

bool dlgProgressBox::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_page)
        return BoxDialog::eventFilter(watched, event);
    if (event->type() == QEvent::WindowActivate && m_bAway)
        QMetaObject::invokeMethod(this, &dlgProgressBox::comeBack, Qt::QueuedConnection);
    return false;
}

void dlgProgressBox::comeBack()
{
    if (!m_bAway || !m_page || !m_page->isActiveWindow())
        return;
    m_bAway = false;
    show();
    emit back();
}

struct xProgressBox::Private
{
    QPointer<dlgProgressBox> box;
    QEventLoop loop;
    bool isFinished = false;
    bool isCancelled = false;

    void endUnlessAway()
    {
        if (isFinished && !(box && box->isAway()))
            loop.quit();
    }
};

xProgressBox::xProgressBox(const char* title, const char* text, QWidget* parent, std::function<int()> percent)
    : m_p(new Private)
{
    const QString caption = QString::fromUtf8(title);
    const QString words = QString::fromUtf8(text);
    hostLog("progress", caption + QLatin1Char('|') + words);
    m_p->box = new dlgProgressBox(caption, words, std::move(percent), parent);
    QObject::connect(m_p->box, &dlgProgressBox::cancelled, &m_p->loop, [this] {
        m_p->isCancelled = true;
        m_p->loop.quit();
    });
    QObject::connect(m_p->box, &dlgProgressBox::back, &m_p->loop, [this] { m_p->endUnlessAway(); });
    QObject::connect(m_p->box, &QObject::destroyed, &m_p->loop, &QEventLoop::quit);
}

xProgressBox::~xProgressBox()
{
    delete m_p->box.data();
    delete m_p;
}

int xProgressBox::Exec()
{
    if (m_p->isFinished)
        return 1;
    if (m_p->box) {
        m_p->box->show();
        m_p->loop.exec();
    }
    if (m_p->box)
        m_p->box->hide();
    return m_p->isFinished && !m_p->isCancelled && m_p->box;
}

void xProgressBox::Finish()
{
    m_p->isFinished = true;
    m_p->endUnlessAway();
}
