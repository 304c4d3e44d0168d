#pragma once
// Makes one picture: fills the row's values into its SVG template and draws the result.
#include "tools/themeRender/GlyphBook.h"
#include "tools/themeRender/ThemeManifest.h"
#include <QImage>
#include <QMap>

class PictureMaker
{
public:
    // themeFolder holds templates/ and glyphs/.
    PictureMaker(const QString& themeFolder, const Palette& palette);
    // 0 with a line in Error() when a template, glyph or colour is missing or the file cannot be written.
    int Make(const ThemePicture& picture, const QString& file);
    const QString& Error() const { return m_error; }

private:
    using Values = QMap<QString, QString>;

    int Fail(const QString& error);
    int CollectValues(const ThemePicture& picture, Values& values);
    int AddColours(const ThemePicture& picture, Values& values);
    int AddGlyph(const ThemePicture& picture, Values& values);
    int FillTemplate(const QString& name, const Values& values, QByteArray& svg);
    int Draw(const QByteArray& svg, QImage& image);
    int Write(const QImage& image, const QString& file);

    QString m_folder;
    const Palette& m_palette;
    GlyphBook m_glyphs;
    QMap<QString, QString> m_templates;
    QString m_error;
};
