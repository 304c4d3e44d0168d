#pragma once
// Makes a display's schedule from schedule.xml, the layouts and the media of the folder:
//
//   <schedule>
//     <layout file="welcome.xml" fromdt="2026-01-01 08:00:00" todt="2026-12-31 18:00:00"
//     displays="Lobby,Hall"/>
//   </schedule>
//
// Without times a layout shows always, without "displays" on all. "eventType" and "applet" go to the phone as
// they stand. Sizes and sums are the server's to find.
#include "tools/signServer/LayoutText.h"
#include "tools/signServer/ScheduledFiles.h"
#include "tools/signServer/SignFolder.h"
#include <QPair>
#include <QSet>

class QXmlStreamWriter;

class ScheduleReply
{
public:
    explicit ScheduleReply(const SignFolder& folder) : m_folder(folder) {}

    QByteArray For(const QByteArray& display);
    // Looks at the layouts of all displays, for Complaints and Uses.
    void ForAll();
    // What the last call had to leave out, and why; a line each.
    const QStringList& Complaints() const { return m_complaints; }
    // The files of the last answer.
    ScheduledFilesPtr Files() const;
    // The media of the last call that are there, each kind of use once.
    const QVector<LayoutText::Use>& Uses() const { return m_uses; }

private:
    struct Layout
    {
        QString file, fromdt, todt, eventType, applet;
    };
    struct File
    {
        QString type, path;
        QByteArray sum;
        qint64 size;
    };

    void Clear();
    // display: empty for all.
    int ReadSchedule(const QString& display);
    void TakeLayout(const Layout& layout);
    OpenFilePtr OpenSent(const char* type, const QString& name, qint64 most);
    void TakeMedia(const LayoutText::Use& use);
    void Write(QXmlStreamWriter& xml) const;
    void Complain(const QString& text);

    const SignFolder& m_folder;
    QVector<Layout> m_layouts;
    QVector<File> m_files; // layouts first, each file once
    QVector<LayoutText::Use> m_uses;
    QStringList m_complaints;
    // Of what stands above, so that nothing is looked for in thousands.
    QSet<QString> m_layoutFiles, m_mediaFiles, m_complained;
    QSet<QPair<QString, int>> m_used;
};
