#include "host/desktop/dlgBrowser.h"
#include "host/desktop/webPage.h"
#include "support/host/api.h"
#include "support/host/language.h"
#include "support/host/screen.h"
#include "ui_dlgBrowser.h"
#include <QKeyEvent>
#include <QScrollBar>

namespace {

constexpr size_t kPageBytes = 2 << 20;
constexpr qsizetype kPagesKept = 50;
const char* const kFile = "/rundata/run/browser.page";

// "www.example.com/page" is understood as well.
QUrl addressOf(const QString& text)
{
    const QString address = text.trimmed();
    return QUrl(address.contains("://") ? address : "http://" + address, QUrl::TolerantMode);
}

} // namespace

dlgBrowser::dlgBrowser(QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint), m_ui(new Ui_dlgBrowser),
      m_fetch(kFile, kPageBytes, [this](bool good, const QByteArray& content) { arrived(good, content); })
{
    m_ui->setupUi(this);
    m_page.build(this, m_ui->frmBackground, HX_TR("Browser"));
    m_page.setSoftKey(0, "Reload", HX_TR("Reload"), SLOT(on_click_Reload()));
    m_page.setSoftKey(1, "Previous", HX_TR("Previous"), SLOT(on_click_Previous()));
    m_page.setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    m_ui->labNotice->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_ui->txtPage->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_ui->txtPage->setLineWrapMode(QTextEdit::WidgetWidth);
    m_ui->txtPage->setContextMenuPolicy(Qt::NoContextMenu);
    m_ui->txtPage->installEventFilter(this);
    connect(m_ui->txtPage, &QTextBrowser::anchorClicked, this, &dlgBrowser::go);
    qFollowLanguage(this, [this] { showNotice(m_szNotice); });
}

dlgBrowser::~dlgBrowser() = default;

void dlgBrowser::openPage(const QString& address)
{
    m_addresses.clear();
    m_addresses.append(addressOf(address));
    screenBringUp(this);
    load();
}

void dlgBrowser::go(const QUrl& address)
{
    const QUrl whole = m_addresses.isEmpty() ? address : m_addresses.last().resolved(address);
    if (!m_addresses.isEmpty() && whole.hasFragment() &&
        whole.matches(m_addresses.last(), QUrl::RemoveFragment)) {
        m_ui->txtPage->scrollToAnchor(whole.fragment());
        return;
    }
    m_addresses.append(whole);
    if (m_addresses.size() > kPagesKept)
        m_addresses.removeFirst();
    load();
}

void dlgBrowser::load()
{
    const QUrl& address = m_addresses.last();
    m_fetch.stop();
    m_ui->txtPage->clear();
    m_page.setOwnTitle(address.host());
    if (!webPage::isAllowed(address)) {
        showNotice(HX_TR("This address cannot be opened."));
        return;
    }
    showNotice(HX_TR("Loading..."));
    m_fetch.start(address.toEncoded(QUrl::RemoveFragment).constData());
}

void dlgBrowser::arrived(bool good, const QByteArray& content)
{
    if (good && webPage::isText(content))
        showPage(content);
    else
        showNotice(good ? HX_TR("This page cannot be shown.") : HX_TR("The page cannot be loaded."));
}

void dlgBrowser::showPage(const QByteArray& content)
{
    showNotice("");
    m_ui->txtPage->setPageText(webPage::textOf(content));
    const QString title = m_ui->txtPage->documentTitle().simplified();
    if (!title.isEmpty())
        m_page.setOwnTitle(title);
    if (m_addresses.last().hasFragment())
        m_ui->txtPage->scrollToAnchor(m_addresses.last().fragment());
}

void dlgBrowser::showNotice(const char* notice)
{
    m_szNotice = notice;
    m_ui->labNotice->setText(qTranslate(notice));
    m_ui->labNotice->setVisible(*notice);
}

bool dlgBrowser::event(QEvent* event)
{
    if (event->type() == QEvent::Show) {
        m_ui->txtPage->setFocus(Qt::OtherFocusReason);
    } else if (event->type() == QEvent::Hide) {
        m_fetch.stop();
    }
    return QDialog::event(event);
}

bool dlgBrowser::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress)
        return pressKey(static_cast<QKeyEvent*>(event)->key());
    return QDialog::eventFilter(watched, event);
}

// Up and down move the page, left and right go from link to link.
bool dlgBrowser::pressKey(int key)
{
    QScrollBar* bar = m_ui->txtPage->verticalScrollBar();
    switch (key) {
    case Qt::Key_Up:
        bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
        return true;
    case Qt::Key_Down:
        bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        return true;
    case Qt::Key_Left:
        m_ui->txtPage->stepLink(false);
        return true;
    case Qt::Key_Right:
        m_ui->txtPage->stepLink(true);
        return true;
    default:
        return false;
    }
}

void dlgBrowser::on_click_Reload()
{
    load();
}

void dlgBrowser::on_click_Previous()
{
    if (m_addresses.size() < 2)
        return;
    m_addresses.removeLast();
    load();
}

void dlgBrowser::on_click_Back()
{
    reject();
}
