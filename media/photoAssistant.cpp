#include "media/photoAssistant.h"
#include "media/storageTools.h"
#include <QLabel>

namespace {

const QRect kScreen(0, 0, 800, 480);

} // namespace

photoAssistant::photoAssistant(QWidget* dialog) : m_pLabel(new QLabel(dialog))
{
    m_pLabel->setGeometry(kScreen);
    m_pLabel->setScaledContents(true);
}

bool photoAssistant::LoadFileList(const FileList& list)
{
    if (list.empty())
        return false;
    m_files = list;
    m_nRefused = 0;
    ShowFirstImage();
    return true;
}

void photoAssistant::Show()
{
    if (m_files.empty())
        return;
    SetLabelImage(m_pLabel, *m_pCurrent, [this](bool isShown) { OnShown(isShown); });
    FileList::iterator next = m_pCurrent;
    if (++next == m_files.end())
        next = m_files.begin();
    PrepareLabelImage(m_pLabel, *next);
}

bool photoAssistant::IsNothingShown() const
{
    return m_nRefused >= m_files.size() && m_pLabel->pixmap().isNull();
}

void photoAssistant::OnShown(bool isShown)
{
    m_nRefused = isShown ? 0 : m_nRefused + 1;
    if (IsNothingShown() && m_nothingTold)
        m_nothingTold();
}

void photoAssistant::ShowFirstImage()
{
    m_pCurrent = m_files.begin();
    Show();
}

void photoAssistant::PlayNext()
{
    if (m_files.empty())
        return;
    if (++m_pCurrent == m_files.end())
        m_pCurrent = m_files.begin();
    Show();
}

void photoAssistant::PlayLast()
{
    if (m_files.empty())
        return;
    if (m_pCurrent == m_files.begin())
        m_pCurrent = m_files.end();
    --m_pCurrent;
    Show();
}
