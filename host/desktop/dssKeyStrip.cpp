#include "host/desktop/dssKeyStrip.h"
#include "host/desktop/dssKeyButton.h"
#include "host/desktop/pagerButton.h"
#include "support/host/language.h"

namespace {

constexpr int kLeft = 22;
constexpr int kColumnWidth = 128;
constexpr int kTop = 324;
constexpr int kWidth = 116;
constexpr int kHeight = 44;
constexpr int kPages = (DSS_KEYS_MAX + dssKeyStrip::KEYS - 1) / dssKeyStrip::KEYS;

QRect placeOf(int column)
{
    return QRect(kLeft + column * kColumnWidth, kTop, kWidth, kHeight);
}

} // namespace

dssKeyStrip::dssKeyStrip(QWidget* home) : QObject(home), m_pHome(home)
{
    for (int column = 0; column < KEYS; ++column) {
        dssKeyButton* key = new dssKeyButton(home);
        key->setObjectName(QString("dssKey%1").arg(column + 1));
        key->setGeometry(placeOf(column));
        connect(key, &QAbstractButton::clicked, this,
                [this, column] { DssKeyBoard::instance().press(indexOf(column)); });
        connect(key, &homeButton::held, this,
                [this, column] { DssKeyBoard::instance().edit(indexOf(column)); });
        m_keys[column] = key;
    }
    m_pPager = new pagerButton(home);
    m_pPager->setObjectName("dssKeyPager");
    m_pPager->setGeometry(placeOf(KEYS));
    connect(m_pPager, &QAbstractButton::clicked, this, &dssKeyStrip::turn);
    connect(&DssKeyBoard::instance(), &DssKeyBoard::changed, this, &dssKeyStrip::onChanged);
    qFollowLanguage(home, [] { DssKeyBoard::instance().refresh(); });
    showPage();
    for (int column = 0; column < COLUMNS; ++column)
        button(column)->show();
}

QAbstractButton* dssKeyStrip::button(int column) const
{
    return column < KEYS ? static_cast<QAbstractButton*>(m_keys[column]) : m_pPager;
}

void dssKeyStrip::turn()
{
    m_nPage = (m_nPage + 1) % kPages;
    showPage();
}

void dssKeyStrip::showPage()
{
    m_bStale = false;
    for (int column = 0; column < KEYS; ++column)
        m_keys[column]->setLook(DssKeyBoard::instance().look(indexOf(column)));
    m_pPager->setPage(m_nPage, kPages);
}

void dssKeyStrip::refresh()
{
    if (m_bStale)
        showPage();
}

void dssKeyStrip::onChanged(int index)
{
    const int column = index - m_nPage * KEYS;
    if (column < 0 || column >= KEYS)
        return;
    if (m_pHome->isActiveWindow())
        m_keys[column]->setLook(DssKeyBoard::instance().look(index));
    else
        m_bStale = true;
}
