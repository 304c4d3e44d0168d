#include "media/dlgImagePreview.h"
#include "media/storageTools.h"
#include <QLabel>

dlgImagePreview::dlgImagePreview(const char* file, const QPixmap& picture) : m_pLabel(new QLabel(this))
{
    setObjectName("dlgImagePreview");
    m_pLabel->setGeometry(rect());
    m_pLabel->setScaledContents(true);
    if (picture.isNull())
        SetLabelImage(m_pLabel, file);
    else
        m_pLabel->setPixmap(picture);
}

void dlgImagePreview::OnKeyDown(int key)
{
    if (key == Qt::Key_Return)
        close();
}

void dlgImagePreview::OnKeyUp(int key)
{
    if (key != Qt::Key_Return && key != Qt::Key_F12)
        close();
}
