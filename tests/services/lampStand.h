#pragma once
// Whoever watches lamps, and hears what they are told.
#include "host/services/phone/lampBook.h"
#include "host/services/phone/phoneService.h"
#include "tests/kit/phoneTest.h"
#include <utility>

class LampStand : public PhoneTest
{
protected:
    const tagLampWatch kAnna{0, "8001"};
    const tagLampWatch kBen{1, "8002"};

    LampStand()
    {
        phoneService::instance().setBackend(nullptr);
        m_nListener =
            book().addListener({[this](const tagLampWatch& watch, LAMP_STATE state) {
                                    m_told.append(watch.strNumber + "@" + QString::number(watch.nLine) + " " +
                                                  QString::number(state));
                                },
                                [this](int line) { m_told.append("list " + QString::number(line)); }});
    }
    ~LampStand() override { book().removeListener(m_nListener); }
    static lampBook& book() { return lampBook::instance(); }
    // Since it was asked before.
    QStringList heard() { return std::exchange(m_told, {}); }
    static QStringList members(int line)
    {
        QStringList all;
        for (const tagLampMember& member : book().list(line))
            all.append(member.strNumber + "=" + member.strName);
        return all;
    }

private:
    QStringList m_told;
    int m_nListener;
};
