#pragma once
// Where a server may send a transfer on to: never to less safety, nor from elsewhere into this machine, whose
// services trust those who are on it. Any thread with an event loop.
#include <QObject>
#include <QUrl>
#include <functional>

namespace redirectRule {

// answer: called once, on context's thread, unless context goes before; names are looked up meanwhile.
void ask(const QUrl& from, const QUrl& to, QObject* context, std::function<void(bool allowed)> answer);

} // namespace redirectRule
