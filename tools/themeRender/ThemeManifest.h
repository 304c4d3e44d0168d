#pragma once
// The list of the theme's pictures: one row of theme.json is one picture, or the two or three states of one.
#include "tools/themeRender/Palette.h"
#include <QJsonObject>
#include <QSize>
#include <QString>
#include <QVector>

struct ThemePicture
{
    QString devicePath; // "/phone/resource/..."
    QString templateName;
    QSize size;
    ButtonState state = ButtonState::Normal;
    QJsonObject row; // colour, glyph, glyphSize, ink, ...
};

class ThemeManifest
{
public:
    // 0 with a line in Error() when the file is not there or a row is not complete.
    int Load(const QString& file);
    const QVector<ThemePicture>& Pictures() const { return m_pictures; }
    const Palette& Colours() const { return m_palette; }
    const QString& Error() const { return m_error; }

private:
    int AddRow(const QString& folder, const QJsonObject& row);
    int Fail(const QString& error);

    QVector<ThemePicture> m_pictures;
    Palette m_palette;
    QString m_error;
};

// "a{1,2}.png" gives "a1.png" and "a2.png"; a path without braces gives itself.
QStringList ExpandBraces(const QString& path);
