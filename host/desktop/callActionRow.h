#pragma once
// What can be done in a call, as round buttons in a row about the middle of the call screen, by finger and by
// keys. User-interface thread.
#include <array>

class QString;
class QWidget;
class callAction;

// From left to right.
enum CALL_ACTION {
    CALL_ACTION_MUTE,
    CALL_ACTION_HOLD,
    CALL_ACTION_VIDEO,
    CALL_ACTION_KEYS,
    CALL_ACTION_TRANSFER,
    CALL_ACTION_ADD,
    CALL_ACTION_JOIN,
    CALL_ACTION_SWAP,
    CALL_ACTION_COUNT
};

class callActionRow
{
public:
    // The buttons are the screen's.
    explicit callActionRow(QWidget* screen);
    callAction* operator[](CALL_ACTION action) const { return m_actions[action]; }
    // What is not shown has no place in the row.
    void set(CALL_ACTION action, const QString& word, bool on, bool shown);
    void layOut();
    // To the next one that is shown, and round.
    void choose(int step);
    void chooseNone();
    // False when none is chosen.
    bool press();

private:
    void showChosen();

    QWidget* m_pScreen;
    std::array<callAction*, CALL_ACTION_COUNT> m_actions{};
    std::array<bool, CALL_ACTION_COUNT> m_shown{};
    int m_nChosen = -1; // by keys; -1: none
};
