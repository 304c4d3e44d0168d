#pragma once
// The calls at "app_hxMedia": what the phone wants of them, what is agreed with the other sides, and how they
// fare. One thread; the sounds have theirs.
#include "players/callDesk.h"
#include "players/deviceSound.h"
#include "players/filmElements.h"
#include "players/mappedPorts.h"
#include "players/pictureScreen.h"
#include "players/pictureSession.h"
#include "support/host/message.h"
#include "support/host/player.h"
#include <QTimer>
#include <optional>

class callService : public chMsgProcesser
{
public:
    enum : int { MAX_CALLS = 8, LOOK_MS = 1000 };

    // screen outlives the service.
    explicit callService(pictureScreen& screen);
    // Takes the calls' messages, and hears of the volume, which is the sessions' too: to be made before them.
    int TryThreadMessage(msgObject& msg) override;

private:
    // Pictures of one call, on the screen.
    struct tagEnd : public pictureEnd
    {
        // news: pictures of the other side have begun, or ended; on any thread.
        tagEnd(pictureScreen& on, int of, std::function<void()> news)
            : screen(on), call(of), changed(std::move(news))
        {
        }
        void showOther(const GstVideoFrame& frame) override
        {
            screen.showCall(call, frame);
            if (!bSeen.exchange(true))
                changed();
        }
        void showOwn(const GstVideoFrame& frame) override { screen.showOwn(call, frame); }
        void endOther() override
        {
            screen.endCall(call);
            if (bSeen.exchange(false))
                changed();
        }
        void endOwn() override { screen.endOwn(call); }

        pictureScreen& screen;
        int call;
        std::function<void()> changed;
        std::atomic<bool> bSeen{false};
    };
    // A description that the phone has asked for.
    struct tagQuestion
    {
        unsigned int nNumber = 0; // of the request
        bool bAnswer = false;
        CALL_WISH wish = {};
        QByteArray offer;  // that is answered
        bool bNew = false; // of the call
    };
    struct tagCallEntry
    {
        std::unique_ptr<callNegotiation> negotiation;
        std::unique_ptr<mappedPorts> soundPorts; // until it is known where they are seen
        std::unique_ptr<mappedPorts> picturePorts;
        std::optional<tagQuestion> waiting; // for that
        bool bMuted = false;                // meanwhile
        bool bStill = false;
        std::unique_ptr<tagEnd> end;
        std::unique_ptr<pictureSession> pictures; // null: none were ever wanted; ends before its end
        bool bPicturesAgreed = false;             // as below, for the pictures
        bool bAgreed = false;                     // a new agreement that the streams do not know yet
        bool bPreview = false;                    // nothing goes out, and no sound is taken
        CALL_STREAMS told = {};
    };
    using Calls = std::map<int, tagCallEntry>;

    // Each is false for a message of another kind: what a call's streams are to be, and what is to be done.
    bool takeDescription(const msgObject& msg);
    bool takeOrder(const msgObject& msg);
    void describe(const msgObject& msg);
    static void judge(const msgObject& msg);
    void reply(int call, tagCallEntry& entry, const tagQuestion& question);
    void stepPorts();
    bool stepPorts(int call, tagCallEntry& entry);
    void addSession(int call, std::unique_ptr<callSockets> sockets);
    void beginPictures(int call, tagCallEntry& entry, std::unique_ptr<callSockets> sockets);
    void agree(const msgObject& msg);
    void setMuted(const msgObject& msg);
    void setStill(const msgObject& msg);
    void sendTone(const msgObject& msg);
    void begin(int call);
    void end(int call);
    void takeOwnPlace(const msgObject& msg);
    bool openPictures(int call, tagCallEntry& entry, const CALL_WISH& wish);
    tagCallEntry* entryFor(int call, const CALL_WISH& wish);
    static void tellDescription(int call, unsigned int number, const QByteArray& description);

    // The streams are built when the parts are there.
    void apply();
    void applyPictures();
    void giveCamera();
    void look();
    void tellAll();
    // measures: how well it is received, since it was measured before.
    void tell(int call, tagCallEntry& entry, bool measures = false);

    pictureScreen& m_screen;
    deviceSound m_sound;
    callDesk m_desk; // ends before the sound does
    QTimer m_open;
    QTimer m_look; // outlives the calls, which tell it of pictures
    Calls m_calls;
    filmElements m_elements;
    filmElements m_pictureElements;
    QTimer m_ports;           // runs while a question waits for where they are seen
    QList<int> m_cameraCalls; // that want the camera; the last one has it
};
