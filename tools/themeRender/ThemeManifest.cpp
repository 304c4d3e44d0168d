#include "tools/themeRender/ThemeManifest.h"
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

QStringList ExpandBraces(const QString& path)
{
    const qsizetype open = path.indexOf('{');
    const qsizetype close = path.indexOf('}', open);
    if (open < 0 || close < 0)
        return {path};
    QStringList paths;
    for (const QString& choice : path.mid(open + 1, close - open - 1).split(','))
        paths.append(path.left(open) + choice + path.mid(close + 1));
    return paths;
}

int ThemeManifest::Fail(const QString& error)
{
    m_error = error;
    return 0;
}

int ThemeManifest::Load(const QString& file)
{
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly))
        return Fail(file + ": " + input.errorString());
    QJsonParseError parse;
    const QJsonObject root = QJsonDocument::fromJson(input.readAll(), &parse).object();
    if (parse.error != QJsonParseError::NoError)
        return Fail(QString("%1: %2 at byte %3").arg(file, parse.errorString()).arg(parse.offset));
    if (!m_palette.Load(root["colours"].toObject()))
        return Fail(file + ": a colour family needs two or three colours");

    const QJsonObject folders = root["pictures"].toObject();
    for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
        for (const QJsonValue& row : folder.value().toArray()) {
            if (!AddRow(folder.key(), row.toObject()))
                return Fail(file + ": " + m_error);
        }
    }
    return 1;
}

int ThemeManifest::AddRow(const QString& folder, const QJsonObject& row)
{
    const QString name = row["path"].toString();
    const QStringList sides = row["size"].toString().split('x');
    const QSize size(sides.value(0).toInt(), sides.value(1).toInt());
    if (name.isEmpty() || size.isEmpty() || !row.contains("template"))
        return Fail("a picture needs path, template and size: " + name);

    const QStringList paths = ExpandBraces(name);
    if (paths.size() > 3)
        return Fail("a picture has at most three states: " + name);
    for (int state = 0; state < paths.size(); ++state) {
        m_pictures.append({folder + "/" + paths[state], row["template"].toString(), size,
                           static_cast<ButtonState>(state), row});
    }
    return 1;
}
