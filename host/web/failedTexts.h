#pragma once
// Texts whose process had to be ended: they are not given to the engine again for a while, or each turn of a
// layout would cost the phone the same. User-interface thread.
#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QString>

class failedTexts
{
public:
    enum : int { KEPT = 64, FORGET_MS = 10 * 60000 };

    static failedTexts& instance();
    // isSure: it was alone in its process. One of several is held to have failed the second time.
    void add(const QString& html, bool isSure);
    bool hasFailed(const QString& html) const;

private:
    struct Failure
    {
        QByteArray hash;
        QElapsedTimer since;
        bool bSure = false;
    };
    const Failure* find(const QByteArray& hash) const;
    QList<Failure> m_failures; // the latest last
};
