#include "tools/themeRender/GlyphBook.h"
#include <QFile>

QString GlyphBook::Markup(const QString& name)
{
    auto known = m_known.constFind(name);
    if (known != m_known.constEnd())
        return *known;

    QFile file(m_folder + "/" + name + ".svg");
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QString text = QString::fromUtf8(file.readAll());
    const qsizetype begin = text.indexOf('>', text.indexOf("<svg")) + 1;
    const qsizetype end = text.lastIndexOf("</svg>");
    if (begin <= 0 || end < begin)
        return QString();
    return m_known[name] = text.mid(begin, end - begin).trimmed();
}
