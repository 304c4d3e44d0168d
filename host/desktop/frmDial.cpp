#include "host/desktop/frmDial.h"
#include "host/desktop/callTexts.h"
#include "host/desktop/dialList.h"
#include "host/desktop/hostPage.h"
#include "host/look/look.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/phoneService.h"
#include "support/host/api.h"
#include "support/host/box.h"
#include "support/host/ime.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include "ui_frmDial.h"
#include <QKeyEvent>

namespace {

constexpr int kNumberSize = 26;
constexpr int kKeepWeight = -1;
constexpr int kKeyCall = 0;
constexpr int kKeyIme = 1;
constexpr int kListBottom = 424; // without the lines
constexpr int kMsInSecond = 1000;

QString titleOf(DIAL_FOR purpose)
{
    switch (purpose) {
    case DIAL_TRANSFER:
        return qTranslate(HX_TR("Transfer"));
    case DIAL_FORWARD:
        return qTranslate(HX_TR_NOTE("Forward", "a call that rings"), "a call that rings");
    default:
        return qTranslate(HX_TR("Dial"));
    }
}

QString wordOf(DIAL_FOR purpose)
{
    return purpose == DIAL_CALL ? qTranslate(HX_TR("Call")) : titleOf(purpose);
}

bool isThere(int id)
{
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nId == id)
            return true;
    }
    return false;
}

frmDial& dialScreen()
{
    static frmDial* screen = nullptr;
    if (!screen) {
        screen = new frmDial;
        phoneService::instance().addCallListener([](const tagCall& call) { screen->onCall(call); });
    }
    return *screen;
}

} // namespace

void dialScreenOpen(const QString& typed, int line)
{
    dialScreen().openToCall(typed, line);
}

void dialScreenOpenFor(DIAL_FOR purpose, int call)
{
    dialScreen().openForCall(purpose, call);
}

frmDial::frmDial()
    : QDialog(nullptr, Qt::FramelessWindowHint), m_ui(new Ui_frmDial), m_pPage(new hostPage),
      m_pDirectory(new dialDirectory([this] { renewEntries(); }))
{
    m_ui->setupUi(this);
    m_pPage->build(this, m_ui->frmBackground, HX_TR("Dial"));
    m_pPage->setSoftKey(kKeyCall, "Call", HX_TR("Call"), SLOT(on_click_Call()));
    m_pPage->setSoftKey(kKeyIme, "IME", HX_TR("IME"), SLOT(on_click_IME()));
    m_pPage->setSoftKeyTitle(kKeyCall, [this] { return wordOf(m_eFor); });
    m_pPage->setSoftKeyTitle(kKeyIme, [this] { return qGetCurrentIME(m_ui->editNumber); });
    m_pPage->setSoftKey(2, "Delete", HX_TR("Delete"), SLOT(on_click_Delete()));
    m_pPage->setSoftKey(3, "Back", HX_TR("Back"), SLOT(on_click_Back()));
    setFontStyle(kNumberSize, kKeepWeight, m_ui->editNumber, true);
    m_ui->editNumber->setMaxLength(CALL_NUMBER_MAX);
    qInstallIME(m_ui->editNumber, "123,2aB,ABC,abc");
    // After the input methods, so that it hears of a key before they do.
    m_ui->editNumber->installEventFilter(this);
    m_ui->wgtLines->installEventFilter(this);
    m_hotline.setSingleShot(true);
    m_hotline.setTimerType(Qt::PreciseTimer);
    connect(&m_hotline, &QTimer::timeout, this, &frmDial::callHotline);
    connect(m_ui->editNumber, &QLineEdit::textChanged, this, &frmDial::cleanNumber);
    connect(m_ui->wgtPad, &dialPad::typed, this, &frmDial::typeSign);
    connect(m_ui->btnCall, &dialCall::clicked, this, &frmDial::on_click_Call);
    connect(m_ui->lstEntries, &dialList::opened, this, &frmDial::on_click_Call);
    connect(m_ui->lstEntries, &dialList::currentChanged, &m_hotline, &QTimer::stop);
    qFollowLanguage(this, [this] {
        showPurpose();
        renewEntries();
    });
}

frmDial::~frmDial() = default;

void frmDial::openToCall(const QString& typed, int line)
{
    begin(DIAL_CALL, 0, typed);
    m_ui->wgtLines->refresh();
    m_ui->wgtLines->setLine(line);
    if (typed.isEmpty() && phoneService::instance().calls().isEmpty())
        startHotline();
}

void frmDial::openForCall(DIAL_FOR purpose, int call)
{
    begin(purpose, call, QString());
}

void frmDial::begin(DIAL_FOR purpose, int call, const QString& typed)
{
    m_hotline.stop();
    m_eFor = purpose;
    m_nCall = call;
    m_names.clear();
    m_ui->editNumber->setText(typed);
    qSetCurrentIME(m_ui->editNumber, "123");
    m_pDirectory->load();
    showEntries();
    screenBringUp(this);
    m_ui->editNumber->setFocus(Qt::OtherFocusReason);
    // A dialog that comes up selects what stands there, and the next digit would take its place.
    m_ui->editNumber->end(false);
    showPurpose();
}

void frmDial::showPurpose()
{
    const bool calls = m_eFor == DIAL_CALL;
    m_pPage->setOwnTitle(titleOf(m_eFor));
    m_pPage->softKeys()->SetButtonTitle(kKeyCall, wordOf(m_eFor));
    m_pPage->softKeys()->SetButtonTitle(kKeyIme, qGetCurrentIME(m_ui->editNumber));
    m_ui->btnCall->setText(wordOf(m_eFor));
    m_ui->wgtLines->setVisible(calls);
    const QRect list = m_ui->lstEntries->geometry();
    const int bottom = calls ? m_ui->wgtLines->y() - 13 : kListBottom;
    m_ui->lstEntries->setGeometry(list.left(), list.top(), list.width(), bottom - list.top());
}

void frmDial::showEntries()
{
    m_ui->lstEntries->setRows(callsToConnect() + m_pDirectory->find(m_ui->editNumber->text()));
}

// First of all, whoever is in another call already; with something typed who has it in his number or name.
QList<tagDialEntry> frmDial::callsToConnect()
{
    QList<tagDialEntry> others;
    const QString typed = m_ui->editNumber->text().trimmed();
    for (const tagCall& call : phoneService::instance().calls()) {
        if (m_eFor != DIAL_TRANSFER || call.nId == m_nCall || call.eState != CALL_TALKING)
            continue;
        tagDialEntry entry;
        if (!m_names.contains(call.nId))
            m_names[call.nId] = callNameOf(call, contactOfNumber(contactsRead(), callReached(call)));
        entry.strName = m_names[call.nId];
        entry.strNumber = callReached(call);
        entry.strDetail = callStateText(call);
        entry.strPicture = HX_THEME("icon/dial_talk.png");
        entry.nCall = call.nId;
        if (entry.strNumber.contains(typed) || entry.strName.contains(typed, Qt::CaseInsensitive))
            others.append(entry);
    }
    return others;
}

// The files were read, or calls went: who was chosen meanwhile stays chosen.
void frmDial::renewEntries()
{
    dialList* list = m_ui->lstEntries;
    const tagDialEntry chosen = list->rows().value(list->currentRow());
    showEntries();
    for (int row = 0; !chosen.strNumber.isEmpty() && row < list->rows().size(); ++row) {
        const tagDialEntry& entry = list->rows()[row];
        if (entry.strNumber == chosen.strNumber && entry.strName == chosen.strName &&
            entry.nCall == chosen.nCall)
            return list->setCurrentRow(row);
    }
}

// What is pasted may hold anything.
void frmDial::cleanNumber()
{
    const QString typed = m_ui->editNumber->text();
    const QString clean = callTextOf(typed);
    if (clean != typed) {
        m_ui->editNumber->setText(clean);
        return;
    }
    if (!typed.isEmpty())
        m_hotline.stop();
    showEntries();
}

bool frmDial::endsNumber(const QString& sign) const
{
    const QChar key = phoneService::instance().rules().settings().sendKey();
    return !key.isNull() && sign == key && !m_ui->editNumber->text().trimmed().isEmpty() &&
           qGetCurrentIME(m_ui->editNumber) == "123";
}

void frmDial::typeSign(QChar sign)
{
    phone_PlayDTMF(sign.toLatin1());
    if (endsNumber(sign)) {
        on_click_Call();
        return;
    }
    qReturnLineEdit(m_ui->editNumber);
    m_ui->editNumber->setFocus(Qt::OtherFocusReason);
    m_ui->editNumber->insert(sign);
}

void frmDial::startHotline()
{
    const tagHotline hotline = callSettings::hotline();
    m_strHotline = hotline.strNumber.trimmed();
    if (!m_strHotline.isEmpty())
        m_hotline.start(hotline.nDelay * kMsInSecond);
}

void frmDial::callHotline()
{
    if (isVisible() && m_ui->editNumber->text().isEmpty() && m_eFor == DIAL_CALL)
        useNumber(m_strHotline, m_ui->wgtLines->line());
}

// Whoever is chosen in the list, or what is typed; with neither the list's first is chosen.
void frmDial::on_click_Call()
{
    m_hotline.stop();
    const QString typed = qReturnLineEdit(m_ui->editNumber).trimmed();
    const int row = m_ui->lstEntries->currentRow();
    const int line = m_ui->wgtLines->line();
    if (row >= 0) {
        const tagDialEntry entry = m_ui->lstEntries->rows()[row];
        if (entry.nCall)
            connectWith(entry.nCall);
        else
            useNumber(entry.strNumber, line == -1 ? entry.nLine : line);
    } else if (!typed.isEmpty()) {
        useNumber(typed, line);
    } else if (!m_ui->lstEntries->rows().isEmpty()) {
        m_ui->lstEntries->setCurrentRow(0);
    }
}

// What could not be done stays, to be put right; why is told by the call screen, or here.
void frmDial::useNumber(const QString& number, int line)
{
    callRules& rules = phoneService::instance().rules();
    bool done = false;
    if (m_eFor == DIAL_CALL)
        done = phone_CallNumber(fromQString(number), line, 0) != 0;
    else
        done = m_eFor == DIAL_TRANSFER ? rules.transfer(m_nCall, number) : rules.forward(m_nCall, number);
    if (done)
        hide();
    else if (m_eFor != DIAL_CALL && isThere(m_nCall))
        xMessageBox(Translate("Note"), Translate(HX_TR("This cannot be dialled")), BOX_NOTE, this, -1);
}

void frmDial::connectWith(int call)
{
    if (phoneService::instance().rules().connect(m_nCall, call))
        hide();
    else if (isThere(m_nCall))
        xMessageBox(Translate("Note"), Translate(HX_TR("These calls cannot be connected")), BOX_NOTE, this,
                    -1);
}

void frmDial::onCall(const tagCall& call)
{
    if (!isVisible() || m_eFor == DIAL_CALL)
        return;
    if (call.nId == m_nCall && !isThere(m_nCall))
        hide();
    else if (m_eFor == DIAL_TRANSFER)
        renewEntries();
}

void frmDial::on_click_IME()
{
    qOnIMEButtonClicked(this, m_pPage->softKeys());
}

void frmDial::on_click_Delete()
{
    m_ui->editNumber->setFocus(Qt::OtherFocusReason);
    qOnBackspaceClicked(this);
}

void frmDial::on_click_Back()
{
    reject();
}

// A call that comes meanwhile has the user's attention: nothing is dialled behind it.
bool frmDial::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide)
        m_hotline.stop();
    return QDialog::event(event);
}

bool frmDial::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && pressKey(watched, static_cast<QKeyEvent*>(event)))
        return true;
    return QDialog::eventFilter(watched, event);
}

bool frmDial::pressKey(QObject* watched, const QKeyEvent* key)
{
    const bool isSign = key->text().size() == 1 && QStringLiteral("0123456789*#+").contains(key->text());
    if (qIsOkKey(key->key()) || key->key() == Qt::Key_Call || endsNumber(key->text())) {
        on_click_Call();
        return true;
    }
    switch (key->key()) {
    case Qt::Key_Up:
        return stepUp();
    case Qt::Key_Down:
        return stepDown();
    case Qt::Key_Back:
    case Qt::Key_Hangup:
        on_click_Back();
        return true;
    default:
        if (isSign && watched == m_ui->wgtLines)
            typeSign(key->text()[0]);
        else if (isSign && qGetCurrentIME(m_ui->editNumber) == "123")
            phone_PlayDTMF(key->text()[0].toLatin1());
        return isSign && watched == m_ui->wgtLines;
    }
}

// From the number through the rows to the lines, and round.
bool frmDial::stepDown()
{
    dialList* list = m_ui->lstEntries;
    if (m_ui->wgtLines->hasFocus() ||
        (m_eFor != DIAL_CALL && list->currentRow() == list->rows().size() - 1)) {
        m_ui->editNumber->setFocus(Qt::OtherFocusReason);
        list->setCurrentRow(-1);
    } else if (list->currentRow() < list->rows().size() - 1) {
        list->setCurrentRow(list->currentRow() + 1);
    } else {
        list->setCurrentRow(-1);
        m_ui->wgtLines->setFocus(Qt::OtherFocusReason);
    }
    return true;
}

bool frmDial::stepUp()
{
    dialList* list = m_ui->lstEntries;
    const int last = int(list->rows().size()) - 1;
    if (m_ui->wgtLines->hasFocus()) {
        m_ui->editNumber->setFocus(Qt::OtherFocusReason);
        list->setCurrentRow(last);
    } else if (list->currentRow() >= 0) {
        list->setCurrentRow(list->currentRow() - 1);
    } else if (m_eFor == DIAL_CALL) {
        m_ui->wgtLines->setFocus(Qt::OtherFocusReason);
    } else {
        list->setCurrentRow(last);
    }
    return true;
}
