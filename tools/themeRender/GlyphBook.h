#pragma once
// The line drawings of the theme, each on a grid of 24 by 24.
#include <QMap>
#include <QString>

class GlyphBook
{
public:
    explicit GlyphBook(const QString& folder) : m_folder(folder) {}
    // What stands inside the glyph's <svg> element; null when there is no such glyph.
    QString Markup(const QString& name);

private:
    QString m_folder;
    QMap<QString, QString> m_known;
};
