#include "frame/linesPage.h"
#include "frame/noteBox.h"
#include "support/host/phone.h"
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>

namespace {
const char* const kTabs[PHONE_ACCOUNT_COUNT] = {HX_TR("Line 1"), HX_TR("Line 2"), HX_TR("Line 3"),
                                                HX_TR("Line 4")};
} // namespace

LinesPage::LinesPage(QWidget* parent, tagLeftBarInfo* info) : ConfigPage(parent, info) {}

void LinesPage::BuildLines(QWidget* placeholder)
{
    m_pLinePages = qReplaceLinePages(placeholder);
    for (const char* tab : kTabs)
        m_pLinePages->m_pTabs->addTab(new QWidget, qTranslate(tab));
    qFollowLanguage(this, [this] { showTabs(); });
    addBody();
    QTimer::singleShot(0, this, SLOT(AddOtherPage()));
}

void LinesPage::addBody()
{
    LineBody* body = MakeBody();
    body->setFocusPolicy(Qt::NoFocus);
    m_pLinePages->m_pPages->addWidget(body);
}

void LinesPage::AddOtherPage()
{
    while (m_pLinePages->GetLinePageCount() < PHONE_ACCOUNT_COUNT)
        addBody();
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line)
        Body(line)->LoadLineInfo(line);
}

LineBody* LinesPage::Body(int line) const
{
    return qobject_cast<LineBody*>(m_pLinePages->GetLinePage(line));
}

void LinesPage::showTabs()
{
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line)
        m_pLinePages->m_pTabs->setTabText(line, qTranslate(kTabs[line]));
}

void LinesPage::RefreshData()
{
    for (int line = 0; line < m_pLinePages->GetLinePageCount(); ++line)
        Body(line)->LoadLineInfo(line);
    m_pLinePages->ResetCurrentWgtPage(0);
}

QWidget* LinesPage::FirstFocus()
{
    return Body(0)->FirstFocus();
}

int LinesPage::checkLines()
{
    for (int line = 0; line < m_pLinePages->GetLinePageCount(); ++line) {
        QString message;
        if (QWidget* bad = Body(line)->GetInvalidInput(message)) {
            noteBox(message.toUtf8().constData(), this);
            m_pLinePages->ResetCurrentWgtPage(line);
            bad->setFocus();
            return 0;
        }
    }
    return 1;
}

// Every line is written, also after one that failed: each has a file of its own.
int LinesPage::storeLines()
{
    int failed = -1;
    for (int line = 0; line < m_pLinePages->GetLinePageCount(); ++line) {
        Body(line)->SaveLineInfo();
        if (failed < 0 && !Body(line)->IsStored())
            failed = line;
    }
    if (failed >= 0)
        m_pLinePages->ResetCurrentWgtPage(failed);
    return failed < 0;
}

void LinesPage::on_click_Save()
{
    if (checkLines() && noteUnlessSaved(storeLines(), this))
        accept();
}
