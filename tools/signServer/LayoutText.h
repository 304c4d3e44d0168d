#pragma once
// A layout file taken apart: the files that it needs, and what in it no phone shows. Any thread.
#include <QByteArray>
#include <QStringList>
#include <QVector>

class QXmlStreamReader;

enum class MediaKind { Picture, Film, Unknown };

class LayoutText
{
public:
    struct Use
    {
        QString name;
        MediaKind kind;
    };

    explicit LayoutText(const QByteArray& xml);

    // Empty for a well-formed one; with the line.
    const QString& Error() const { return m_error; }
    // In their order; a file that is used twice stands there twice.
    const QVector<Use>& Uses() const { return m_uses; }
    // What a phone leaves out of it, a line each.
    const QStringList& Faults() const { return m_faults; }

private:
    struct Region
    {
        int number = 0, media = 0;
        int left = 0, top = 0, width = 0, height = 0;
    };

    void Begin(QXmlStreamReader& xml);
    void BeginRegion(const QXmlStreamReader& xml);
    void TakeMedia(QXmlStreamReader& xml);
    void CheckText(QXmlStreamReader& xml);
    void CheckFilm();
    void Fault(const QString& text);

    QString m_error;
    QVector<Use> m_uses;
    QStringList m_faults;
    Region m_region; // the one that is read
    int m_regions = 0;
};
