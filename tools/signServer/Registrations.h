#pragma once
// The displays that have registered, kept in registered.ini. Whoever registers while the file is being
// written waits for the next writing, which keeps all of them: a building full of phones costs a few. Any
// thread.
#include "tools/signServer/FileMark.h"
#include "tools/signServer/SignFolder.h"
#include <QThreadPool>
#include <functional>

class Registrations
{
public:
    // Called once on any thread, after the file is written. False when it could not be.
    using Done = std::function<void(bool)>;

    explicit Registrations(const SignFolder& folder);
    ~Registrations() { Settle(); }
    // Waits for what is being written, and until whoever waits for it has been told.
    void Settle() { m_saver.waitForDone(); }

    // Null for a phone that has not registered.
    QByteArray NameOf(const QByteArray& hardwareKey);
    // The names, by hardware key.
    QHash<QByteArray, QByteArray> All();
    // There is room for this phone.
    bool HasRoomFor(const QByteArray& hardwareKey);
    void Remember(const QByteArray& hardwareKey, const QByteArray& name, const Done& done);

private:
    struct Wish
    {
        QByteArray hardwareKey, name;
        Done done;
    };

    void FollowFile();
    void SaveAll();
    bool Save(const QHash<QByteArray, QByteArray>& names);

    const QByteArray m_path;
    QMutex m_lock;
    QHash<QByteArray, QByteArray> m_names; // by hardware key, as the file has them
    FileMark m_mark;                       // of the file that they were read from or written to
    QList<Wish> m_wishes;
    bool m_bSaving = false;
    QThreadPool m_saver;
};
