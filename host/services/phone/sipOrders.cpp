#include "host/services/phone/sipOrders.h"

bool sipOrders::fits(const QByteArray& target)
{
    return !target.isEmpty() && target.size() < SIP_TARGET_SIZE;
}

void sipOrders::dial(uint32_t call, const tagDial& dial)
{
    auto record = sipWire::make<tagSipDial>(SIP_DIAL, call);
    record.nLine = uint32_t(dial.nLine);
    record.bAnonymous = dial.bAnonymous;
    record.nReferrer = dial.nReferrer;
    for (const QByteArray& by : dial.forwardedBy) {
        if (fits(by) && record.nForwards < SIP_FORWARDS_MAX)
            sipWire::setText(record.szForwardedBy[record.nForwards++], by.toStdString());
    }
    sipWire::setText(record.szTarget, dial.target.toStdString());
    sipWire::setText(record.szSdp, dial.offer.toStdString());
    m_link.tell(record);
}

void sipOrders::pickUp(uint32_t call, const tagDial& dial)
{
    auto record = sipWire::make<tagSipPickUp>(SIP_PICK_UP, call);
    record.nLine = uint32_t(dial.nLine);
    record.bAnonymous = dial.bAnonymous;
    sipWire::setText(record.szNumber, dial.target.toStdString());
    sipWire::setText(record.szSdp, dial.offer.toStdString());
    m_link.tell(record);
}

void sipOrders::media(SIP_RECORD kind, uint32_t call, const QByteArray& sdp)
{
    auto record = sipWire::make<tagSipMedia>(kind, call);
    sipWire::setText(record.szSdp, sdp.toStdString());
    m_link.tell(record);
}

void sipOrders::status(SIP_RECORD kind, uint32_t call, uint32_t status, uint32_t warning)
{
    auto record = sipWire::make<tagSipStatus>(kind, call);
    record.nStatus = status;
    record.nWarning = warning;
    if (call)
        m_link.tell(record);
}

bool sipOrders::target(SIP_RECORD kind, uint32_t call, const QByteArray& target)
{
    if (!fits(target))
        return false;
    auto record = sipWire::make<tagSipTarget>(kind, call);
    sipWire::setText(record.szTarget, target.toStdString());
    m_link.tell(record);
    return true;
}

void sipOrders::connect(uint32_t call, uint32_t other)
{
    auto record = sipWire::make<tagSipConnect>(SIP_CONNECT, call);
    record.nOther = other;
    m_link.tell(record);
}

void sipOrders::tone(uint32_t call, QChar tone, int ms)
{
    auto record = sipWire::make<tagSipTone>(SIP_TONE, call);
    record.nTone = tone.unicode();
    record.nMs = uint32_t(ms);
    m_link.tell(record);
}

void sipOrders::noMedia(uint32_t call)
{
    m_link.tell(sipWire::make<tagSipHead>(SIP_NO_MEDIA, call));
}
