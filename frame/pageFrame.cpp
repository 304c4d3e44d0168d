#include "frame/pageFrame.h"
#include "frame/pageTexts.h"
#include "support/host/text.h"
#include "support/host/ui.h"
#include <QDialog>
#include <QFrame>

namespace {

const QRect kTopBar(QPoint(0, 0), QPoint(799, 39));
const QRect kLeftBar(QPoint(0, 40), QPoint(151, 439));
const QRect kSoftKeys(QPoint(0, 440), QPoint(799, 479));

struct tagSharedKey
{
    int nKey;
    const char* szName;
    const char* szSlot;
};

// In the order of their indexes. A finger finds them in the same place on every page.
const tagSharedKey kSharedKeys[SOFT_KEY_COUNT] = {
    {KEY_SAVE, HX_TR("Save"), SLOT(on_click_Save())},
    {KEY_IME, HX_TR("IME"), SLOT(on_click_IME())},
    {KEY_DELETE, HX_TR("Delete"), SLOT(on_click_Delete())},
    {KEY_BACK, HX_TR("Back"), SLOT(on_click_Back())},
};

qLeftBar* makeLeftBar(QDialog* page)
{
    qLeftBar* bar = new qLeftBar(page);
    bar->setGeometry(kLeftBar);
    bar->setIconGeometry(bar->rect());
    bar->setTextGeometry(bar->rect());
    bar->setTitle(QString());
    bar->setIcon(QString());
    return bar;
}

} // namespace

void PageFrame::Build(QDialog* page, LeftBarOperation* leftBar, QFrame* background, const char* title,
                      int keys)
{
    m_pPage = page;
    m_nKeys = keys;
    page->setFixedSize(kSoftKeys.right() + 1, kSoftKeys.bottom() + 1);
    page->move(0, 0);
    SetBackgroundToFrame(background, HX_THEME("general/gen_setting_bg.jpg"));

    m_pTopBar = new qTopBar(page);
    m_pTopBar->setGeometry(kTopBar);
    m_pTopBar->setAttribute(Qt::WA_DeleteOnClose);
    m_strTitle = title;

    m_pLeftBar = leftBar;
    if (leftBar) {
        leftBar->m_pLeftBar = makeLeftBar(page);
        leftBar->setLeftBar();
    }

    m_pSoftKeyBar = new qSoftKeyBar(page);
    m_pSoftKeyBar->setGeometry(kSoftKeys);
    m_pSoftKeyBar->setAttribute(Qt::WA_DeleteOnClose);
    for (int i = 0; i < SOFT_KEY_COUNT; ++i) {
        if (keys & kSharedKeys[i].nKey)
            SetSoftKey(i, kSharedKeys[i].szName, kSharedKeys[i].szName, kSharedKeys[i].szSlot);
    }
    showTexts();
    qFollowLanguage(page, [this] { followLanguage(); });
}

void PageFrame::SetSoftKey(int index, const char* name, const char* label, const char* slot)
{
    if (index < 0 || index >= SOFT_KEY_COUNT)
        return;
    m_astrLabels[index] = label;
    m_pSoftKeyBar->SetButton(index, name, ::Translate(label), m_pPage, slot);
}

QString PageFrame::SoftKeyLabel(int index) const
{
    return qTranslate(m_astrLabels[index].GetText());
}

void PageFrame::SetLeftBar(const char* icon, const char* title)
{
    m_strLeftIcon = icon;
    m_strLeftTitle = title;
    showLeftBar();
}

void PageFrame::showLeftBar()
{
    if (!m_pLeftBar || m_strLeftTitle.IsEmpty())
        return;
    m_pLeftBar->m_pLeftBar->setIcon(toQString(m_strLeftIcon));
    m_pLeftBar->m_pLeftBar->setTitle(qTranslate(m_strLeftTitle.GetText()));
}

void PageFrame::SetTitle(const char* title)
{
    m_strTitle = title;
    m_pTopBar->setTitle(qTranslate(title));
}

// A record stays on show when it is taken away, and may be gone while the page is on view.
void PageFrame::Translate()
{
    if (const tagLeftBarInfo* info = m_pLeftBar ? m_pLeftBar->m_pLeftBarInfo : nullptr) {
        m_strLeftIcon = fromQString(info->strIcon);
        m_strLeftTitle = fromQString(info->strTitle);
    }
    showLeftBar();
}

void PageFrame::followLanguage()
{
    showLeftBar();
    for (int i = 0; i < SOFT_KEY_COUNT; ++i) {
        // One that is blank does nothing just now, in whatever language.
        if (!m_astrLabels[i].IsEmpty() && !m_pSoftKeyBar->GetButtonTitle(i).isEmpty())
            m_pSoftKeyBar->SetButtonTitle(i, SoftKeyLabel(i));
    }
    showTexts();
}

void PageFrame::showTexts()
{
    m_pTopBar->setTitle(qTranslate(m_strTitle.GetText()));
    translateTexts(m_pPage);
}
