#include "frame/lineBody.h"
#include "frame/pageTexts.h"

LineBody::LineBody(QWidget* parent) : qLineBodyWidget(parent) {}

void LineBody::LoadLineInfo(int line)
{
    if (line != m_iLine) {
        m_iLine = line;
        Unbind();
        BindLine(line);
    }
    translateTexts(this);
    ResetConfigsToRegistry();
    RefreshData();
    SetInputMethods();
}

QWidget* LineBody::GetInvalidInput(QString& message)
{
    m_pRefused = nullptr;
    if (save())
        return nullptr;
    message = QString::fromUtf8(m_szRefusal);
    return m_pRefused;
}

bool LineBody::SaveLineInfo()
{
    const int changed = SaveConfigsToRegistry();
    if (changed)
        BroadcastChange();
    return changed != 0;
}

int LineBody::Refuse(QWidget* widget, const char* message)
{
    m_pRefused = widget;
    m_szRefusal = message;
    return 0;
}
