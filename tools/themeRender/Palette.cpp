#include "tools/themeRender/Palette.h"
#include <QJsonArray>

namespace {

QColor Mix(const QColor& from, const QColor& to, double share)
{
    auto part = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return QColor(part(from.red(), to.red()), part(from.green(), to.green()), part(from.blue(), to.blue()));
}

QColor InState(const QColor& colour, ButtonState state)
{
    switch (state) {
    case ButtonState::Pressed:
        return Mix(colour, Qt::black, 0.18);
    case ButtonState::Disabled:
        return Mix(colour, QColor(0xc4, 0xcf, 0xda), 0.72);
    case ButtonState::Normal:
        break;
    }
    return colour;
}

} // namespace

int Palette::Load(const QJsonObject& families)
{
    for (auto it = families.begin(); it != families.end(); ++it) {
        QVector<QColor> colours;
        for (const QJsonValue& text : it.value().toArray())
            colours.append(QColor(text.toString()));
        if (colours.size() == 2)
            colours.insert(1, Mix(colours[0], colours[1], 0.5));
        bool good = colours.size() == 3;
        for (const QColor& colour : colours)
            good = good && colour.isValid();
        if (!good)
            return 0;
        m_families[it.key()] = colours;
    }
    return 1;
}

QVector<QColor> Palette::Family(const QString& name, ButtonState state) const
{
    QVector<QColor> colours = m_families.value(name);
    for (QColor& colour : colours)
        colour = InState(colour, state);
    return colours;
}
