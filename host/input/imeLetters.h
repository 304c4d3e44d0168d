#pragma once
// What the digit keys of the phone give in each input method.
#include <QString>

// "2aB", "ABC", "abc", "123" or "123_IP".
bool imeIsMethod(const QString& method);
// The letters that a key ('0' to '9', '*', '#') gives one after the other; empty: the key gives none.
// atStart: the letter begins the text or follows a blank, where "2aB" writes upper case.
QString imeLetters(const QString& method, QChar key, bool atStart);
