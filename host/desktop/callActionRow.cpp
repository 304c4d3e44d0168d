#include "host/desktop/callActionRow.h"
#include "host/desktop/callAction.h"
#include "support/host/api.h"
#include "support/host/image.h"
#include <algorithm>

namespace {

constexpr QSize kAction(104, 76); // its words stay clear of the soft keys
constexpr int kTop = 360;
constexpr int kStep = 110;

struct tagMade
{
    const char* name;
    const char* glyph;
};
const tagMade kMade[CALL_ACTION_COUNT] = {
    {"actMute", HX_THEME("icon/talk_mute.png")},         {"actHold", HX_THEME("icon/talk_hold.png")},
    {"actVideo", HX_THEME("icon/talk_video.png")},       {"actKeys", HX_THEME("icon/talk_keys.png")},
    {"actTransfer", HX_THEME("icon/talk_transfer.png")}, {"actAdd", HX_THEME("icon/talk_add.png")},
    {"actJoin", HX_THEME("icon/talk_join.png")},         {"actSwap", HX_THEME("icon/talk_swap.png")}};

} // namespace

callActionRow::callActionRow(QWidget* screen) : m_pScreen(screen)
{
    for (int i = 0; i < CALL_ACTION_COUNT; ++i) {
        m_actions[i] = new callAction(screen);
        m_actions[i]->setObjectName(kMade[i].name);
        m_actions[i]->setGlyph(kMade[i].glyph);
        m_actions[i]->setFixedSize(kAction);
    }
}

void callActionRow::set(CALL_ACTION action, const QString& word, bool on, bool shown)
{
    m_actions[action]->setText(word);
    m_actions[action]->setOn(on);
    m_actions[action]->setVisible(shown);
    m_shown[action] = shown;
}

void callActionRow::layOut()
{
    const int count = int(std::count(m_shown.begin(), m_shown.end(), true));
    const int step = count > 0 ? std::min(kStep, m_pScreen->width() / count) : kStep;
    const QSize size(std::min(kAction.width(), step), kAction.height());
    int x = (m_pScreen->width() - count * step) / 2 + (step - size.width()) / 2;
    for (int i = 0; i < CALL_ACTION_COUNT; ++i) {
        if (!m_shown[i])
            continue;
        m_actions[i]->setFixedSize(size);
        m_actions[i]->move(x, kTop);
        x += step;
    }
    showChosen();
}

void callActionRow::choose(int step)
{
    if (std::count(m_shown.begin(), m_shown.end(), true) == 0)
        return;
    int at = m_nChosen < 0 && step < 0 ? int(CALL_ACTION_COUNT) : m_nChosen;
    do {
        at = (at + step + CALL_ACTION_COUNT) % CALL_ACTION_COUNT;
    } while (!m_shown[at]);
    m_nChosen = at;
    showChosen();
}

void callActionRow::chooseNone()
{
    m_nChosen = -1;
    showChosen();
}

void callActionRow::showChosen()
{
    for (int i = 0; i < CALL_ACTION_COUNT; ++i)
        m_actions[i]->setChosen(i == m_nChosen);
}

bool callActionRow::press()
{
    const bool can = m_nChosen >= 0 && m_shown[m_nChosen];
    if (can)
        m_actions[m_nChosen]->click();
    return can;
}
