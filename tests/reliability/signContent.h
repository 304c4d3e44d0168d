#pragma once
// What the server of a test serves: many files of mixed sizes and some layouts that need them. Each file has
// three contents and goes from one to another, back to an old one too. The same seed gives the same story.
#include "tests/kit/plain/signServer.h"
#include "tests/reliability/deckFolder.h"
#include <QColor>
#include <random>

class SignContent
{
public:
    enum : int { MEDIA_COUNT = 60, LAYOUT_COUNT = 4 };

    SignContent(SignServer& server, unsigned seed);
    // Some files get another content, every other time the layouts too, and a layout comes or goes.
    void change();
    // The last change: all layouts are there, and show the picture for a second each.
    void settle();

    const KnownVersions& known() const { return m_known; }
    // What the schedule names now.
    WantedFiles wanted() const;
    // Of the picture that each layout shows.
    QString colour() const { return pictureColour(m_versions[kPicture]).name(); }

private:
    static const QString kPicture;
    static QColor pictureColour(int version);
    static QString mediaName(int index);
    static QString layoutName(int index) { return QString("show%1.xml").arg(index); }
    QByteArray mediaContent(int index, int version) const;
    void putMedia(int index, int version);
    void putLayout(int index, int seconds);
    int below(int end) { return int(m_random() % unsigned(end)); }

    SignServer& m_server;
    std::mt19937 m_random;
    KnownVersions m_known;
    QMap<QString, int> m_versions;
    WantedFiles m_now; // MD5 of all files
    QSet<int> m_shown; // layouts in the schedule
    int m_nRound = 0;
};
