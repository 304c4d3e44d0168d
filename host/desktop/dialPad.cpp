#include "host/desktop/dialPad.h"
#include "host/desktop/dialKey.h"

namespace {

constexpr int kColumns = 3;
constexpr int kRows = 4;
constexpr int kGap = 10;

struct tagKey
{
    char sign;
    const char* letters;
};

const tagKey kKeys[kColumns * kRows] = {{'1', ""},     {'2', "ABC"}, {'3', "DEF"},  {'4', "GHI"},
                                        {'5', "JKL"},  {'6', "MNO"}, {'7', "PQRS"}, {'8', "TUV"},
                                        {'9', "WXYZ"}, {'*', ""},    {'0', "+"},    {'#', ""}};

} // namespace

dialPad::dialPad(QWidget* parent) : QWidget(parent)
{
    for (const tagKey& key : kKeys) {
        auto* made = new dialKey(QLatin1Char(key.sign), QLatin1String(key.letters), this);
        connect(made, &dialKey::pressed, this, [this, made] {
            m_bHeld = false;
            if (made->sign() == '0')
                m_hold.start();
        });
        connect(made, &dialKey::released, &m_hold, &QTimer::stop);
        connect(made, &dialKey::clicked, this, [this, made] {
            if (!m_bHeld)
                emit typed(made->sign());
        });
    }
    m_hold.setSingleShot(true);
    m_hold.setInterval(HOLD_MS);
    connect(&m_hold, &QTimer::timeout, this, [this] {
        m_bHeld = true;
        emit typed('+');
    });
}

void dialPad::resizeEvent(QResizeEvent*)
{
    const QList<dialKey*> keys = findChildren<dialKey*>();
    const QSize key((width() - (kColumns - 1) * kGap) / kColumns, (height() - (kRows - 1) * kGap) / kRows);
    for (int i = 0; i < keys.size(); ++i)
        keys[i]->setGeometry((i % kColumns) * (key.width() + kGap), (i / kColumns) * (key.height() + kGap),
                             key.width(), key.height());
}
