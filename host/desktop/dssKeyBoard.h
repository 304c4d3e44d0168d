#pragma once
// What the programmable keys are and do: the keys of the file with the lamps of lines and extensions. It
// reads the file when it is first asked for, and again when somebody says that it changed. User-interface
// thread.
#include "host/managers/dssKeys.h"
#include "host/services/phone/phoneLamps.h"
#include "support/host/message.h"
#include <QElapsedTimer>
#include <QObject>
#include <QSet>

struct tagCall;

// As a key shows it.
struct tagDssKeyLook
{
    tagDssKey::TYPE eType = tagDssKey::FREE;
    QString strLabel; // one line
    bool bLamp = false;
    LAMP_STATE eLamp = LAMP_UNKNOWN;
    bool operator==(const tagDssKeyLook& other) const
    {
        return eType == other.eType && strLabel == other.strLabel && bLamp == other.bLamp &&
               eLamp == other.eLamp;
    }
};

class DssKeyBoard : public QObject, public chMsgProcesser
{
    Q_OBJECT
public:
    // Between two tones of extensions that begin to ring.
    enum : int { TONE_PAUSE_MS = 3000 };

    static DssKeyBoard& instance();
    // index: 0 to DSS_KEYS_MAX - 1; a free key for any other.
    tagDssKeyLook look(int index) const;
    // What the key acts on: a number; empty for none.
    QString numberOf(int index) const;
    int lineOf(int index) const { return key(index).nLine; }
    // Seizes the line, calls, or takes the call that rings there. A key without any of these opens its
    // editor.
    void press(int index);
    // Opens the editor on the key.
    void edit(int index);
    // Looks at lines, lamps and the language anew.
    void refresh();
    int TryThreadMessage(msgObject& msg) override;

signals:
    void changed(int index);

private:
    struct tagSlot
    {
        tagDssKey key;
        tagLampWatch watch; // empty number: none
        tagDssKeyLook look;
    };

    DssKeyBoard();
    tagDssKey key(int index) const;
    void takeKeys();
    void takeWatches();
    void nameMembers();
    void onLamp(const tagLampWatch& watch, LAMP_STATE state);
    void playTone();
    tagDssKeyLook lookOf(const tagSlot& slot) const;
    LAMP_STATE lineLamp(int line) const;
    void callOn(const tagSlot& slot);

    QList<tagSlot> m_slots;
    QSet<tagLampWatch> m_watches;
    QSet<int> m_lists;
    QElapsedTimer m_tone; // since the last one
};
