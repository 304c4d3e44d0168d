#pragma once
// The named colour families of the theme, and how a family looks in each state of a button.
#include <QColor>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

enum class ButtonState { Normal, Pressed, Disabled };

class Palette
{
public:
    // families: name -> list of two or three colours from top to bottom. 0 when one is not a colour.
    int Load(const QJsonObject& families);
    // Top, middle and bottom of a family; empty for a name that is not there.
    QVector<QColor> Family(const QString& name, ButtonState state) const;

private:
    QMap<QString, QVector<QColor>> m_families;
};
