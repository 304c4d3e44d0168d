#include "support/host/text.h"

QString toQString(const chString& text)
{
    return QString::fromUtf8(text.GetText(), text.GetLength());
}

chString fromQString(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return chString(bytes.constData(), static_cast<int>(bytes.size()));
}
