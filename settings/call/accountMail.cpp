#include "settings/call/accountMail.h"
#include "support/host/language.h"
#include <QLabel>

void AccountMail::SetMail(unsigned int newCount, unsigned int oldCount)
{
    m_pLabVoiceMail->setText(qTranslate(HX_TR("Voice Mail")) + "(" + QString::number(newCount) + " " +
                             qTranslate(HX_TR("new")) + " " + QString::number(oldCount) + " " +
                             qTranslate(HX_TR("old")) + ")");
}
