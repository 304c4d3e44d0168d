#pragma once
// Makes whole coded pictures of the packets of a stream, and lets nothing else through: a decoder sees only
// units of the kinds that a call needs, within bounds, of pictures that can be shown. One thread.
#include <QByteArray>
#include <functional>

struct tagRtpHead;

class codedPictures
{
public:
    enum : int {
        MAX_WIDTH = 1920, // pixels, as coded
        MAX_HEIGHT = 1088,
        MAX_PICTURE = 1 << 20 // bytes
    };

    // isKey: nothing before it is needed for it.
    using CodedHandler = std::function<void(const QByteArray& coded, bool isKey)>;
    virtual ~codedPictures() = default;
    codedPictures(const codedPictures&) = delete;
    codedPictures& operator=(const codedPictures&) = delete;

    // The next packet; one that does not follow the one before ends what that had begun. False when something
    // is missing, or was left out.
    bool put(const QByteArray& packet);
    // Its pictures are of a kind that is not shown here, until it announces others.
    bool isRefused() const { return m_bRefused; }

protected:
    explicit codedPictures(CodedHandler onCoded) : m_onCoded(std::move(onCoded)) {}
    virtual void putContent(const tagRtpHead& head, const QByteArray& content) = 0;
    // Packets are missing here.
    virtual void dropParts() = 0;

    void give(const QByteArray& coded, bool isKey) { m_onCoded(coded, isKey); }
    void setRefused(bool refused) { m_bRefused = refused; }
    void leaveOut() { m_bWhole = false; }

private:
    CodedHandler m_onCoded;
    bool m_bRefused = false;
    bool m_bWhole = true; // what is put just now
    bool m_bAny = false;
    quint16 m_nNext = 0; // number of the next packet
};
