#include "frame/dlgIconviewForm.h"
#include "frame/dateTimeFormat.h"
#include "support/container/chList.h"
#include "support/host/bars.h"
#include "support/host/button.h"
#include "support/host/iconview.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "ui_dlgIconviewForm.h"
#include <QLabel>
#include <QTimer>

namespace {

enum { CLOCK_MS = 3000, MENU_COLUMNS = 4, MENU_ROWS = 2, KEY_NEXT_PAGE = 0, KEY_BACK = 3 };
const char kApplicationMenu[] = "/phone/resource/ui-config/application.xml";

// One entry for each show since the home button was pressed last; null where the form is gone.
chObjList_dynamic<dlgIconviewForm*, 16> s_lstShown;

void forgetShown(const dlgIconviewForm* form)
{
    if (!s_lstShown.empty())
        s_lstShown.pop_back();
    for (dlgIconviewForm*& shown : s_lstShown) {
        if (shown == form)
            shown = nullptr;
    }
}

} // namespace

dlgIconviewForm* g_pDlgIconviewForm = nullptr;

dlgIconviewForm::dlgIconviewForm(QWidget* parent)
    : QDialog(parent, Qt::FramelessWindowHint), ui(new Ui_dlgIconviewForm)
{
    ui->setupUi(this);
    g_pDlgIconviewForm = this;
    move(0, 0);
    setFixedSize(geometry().size());
    QPalette brushes = palette();
    brushes.setBrush(QPalette::Window,
                     QBrush(GetImageManager()->GetImage(HX_THEME("general/gen_setting_bg.jpg"))));
    setPalette(brushes);
    replacePlaceholders();
    makeClock();
    makeHomeButton();
    on_update_dateTime();
    m_pTimerDate = new QTimer(this);
    connect(m_pTimerDate, SIGNAL(timeout()), this, SLOT(on_update_dateTime()));
    m_pTimerDate->start(CLOCK_MS);
    qFollowLanguage(this, [this] {
        showTexts();
        on_update_dateTime();
    });
}

dlgIconviewForm::~dlgIconviewForm()
{
    forgetShown(this);
    delete ui;
    m_pTimerDate->stop();
    delete m_pTimerDate;
    g_pDlgIconviewForm = nullptr;
}

void dlgIconviewForm::replacePlaceholders()
{
    m_pTopBar = qReplaceTopBar(ui->labTopBar, "");
    m_pLeftBar = qReplaceLeftBar(ui->labLeftBar, "", "");
    m_pLeftBar->setFlow(qLeftBar::TopToBottom);
    m_pSoftKeyBar = qReplaceSoftKeyBar(ui->labSoftKeyBar);
    m_pSoftKeyBar->SetButton(KEY_BACK, "Back", Translate("Back"), this, SLOT(on_click_Back()));
    m_pIconView = qReplaceIconView(ui->lstWgtIcons);
    SetQListWidgetTransparent(m_pIconView);
    m_pIconView->setFocusPolicy(Qt::NoFocus);
    m_pIconView->setFrameShape(QFrame::WinPanel);
}

void dlgIconviewForm::makeClock()
{
    m_pLabDateTime = qCreateLineLabel(this);
    QPalette colours = m_pLabDateTime->palette();
    colours.setColor(QPalette::WindowText, Qt::white);
    m_pLabDateTime->setPalette(colours);
    m_pLabDateTime->setGeometry(QRect(QPoint(600, 0), QPoint(799, 39)));
    m_pLabDateTime->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void dlgIconviewForm::makeHomeButton()
{
    m_pHomeBtn = CreateUIPushButton(QRect(10, 5, 44, 39), "btnHome", this);
    // The keys belong to the grid.
    m_pHomeBtn->setFocusPolicy(Qt::NoFocus);
    SetButtonNoLine(m_pHomeBtn);
    SetButton3StatusImage(m_pHomeBtn, HX_THEME("button/btn_home_fg01.png"),
                          HX_THEME("button/btn_home_fg02.png"), HX_THEME("button/btn_home_fg03.png"));
    connect(m_pHomeBtn, SIGNAL(clicked()), this, SLOT(on_click_m_phome()));
}

int dlgIconviewForm::LoadFile(const chString& path)
{
    m_pIconView->LoadMenuFile(path.GetText());
    menuLoaded();
    return 1;
}

int dlgIconviewForm::LoadFileEx(const chString& name)
{
    if (!m_pIconView->LoadMenuFileEx(name.GetText()))
        return 0;
    menuLoaded();
    nuxTrace(TRACE_DETAIL, "_______________m_pIconView->m_strTitleName = %s",
             m_pIconView->m_strTitleName.toUtf8().constData());
    return 1;
}

void dlgIconviewForm::menuLoaded()
{
    m_pIconView->SetMartrixGrix(MENU_COLUMNS, MENU_ROWS);
    m_pLeftBar->setIcon(m_pIconView->m_strIconPath);
    showTexts();
}

void dlgIconviewForm::showTexts()
{
    m_pLeftBar->setTitle(qTranslate(m_pIconView->m_strTitleName.toUtf8().constData()));
    m_pSoftKeyBar->SetButton(KEY_BACK, "Back", Translate("Back"), this, SLOT(on_click_Back()));
    if (m_pIconView->GetPageCount() < 2)
        m_pSoftKeyBar->SetButton(KEY_NEXT_PAGE, "", "", nullptr, nullptr);
    else
        m_pSoftKeyBar->SetButton(KEY_NEXT_PAGE, "NextPage", Translate("More"), this,
                                 SLOT(on_click_NextPage()));
}

void dlgIconviewForm::showEvent(QShowEvent* event)
{
    s_lstShown.append(this);
    m_pIconView->SetCurrentPage(0);
    if (m_pIconView->m_strTitleName == QLatin1String("Application"))
        LoadFile(kApplicationMenu);
    QDialog::showEvent(event);
}

void dlgIconviewForm::on_click_NextPage()
{
    m_pIconView->PageDown();
}

void dlgIconviewForm::on_click_Back()
{
    reject();
}

// A form that is closed is only hidden; it is shown again when its menu is opened.
void dlgIconviewForm::on_click_m_phome()
{
    while (!s_lstShown.empty()) {
        dlgIconviewForm* form = s_lstShown.back();
        if (form)
            form->close();
        s_lstShown.pop_back();
    }
}

void dlgIconviewForm::on_update_dateTime()
{
    m_pLabDateTime->setText(toQString(GetDateTime()));
}
