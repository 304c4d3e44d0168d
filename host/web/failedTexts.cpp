#include "host/web/failedTexts.h"
#include <QCryptographicHash>
#include <algorithm>

namespace {

QByteArray hashOf(const QString& html)
{
    return QCryptographicHash::hash(html.toUtf8(), QCryptographicHash::Sha256);
}

} // namespace

failedTexts& failedTexts::instance()
{
    static failedTexts texts;
    return texts;
}

const failedTexts::Failure* failedTexts::find(const QByteArray& hash) const
{
    const auto found = std::find_if(m_failures.begin(), m_failures.end(), [&](const Failure& failure) {
        return failure.hash == hash && !failure.since.hasExpired(FORGET_MS);
    });
    return found == m_failures.end() ? nullptr : &*found;
}

void failedTexts::add(const QString& html, bool isSure)
{
    Failure failure;
    failure.hash = hashOf(html);
    failure.bSure = isSure || find(failure.hash);
    failure.since.start();
    m_failures.removeIf([&](const Failure& other) { return other.hash == failure.hash; });
    m_failures.append(failure);
    if (m_failures.size() > KEPT)
        m_failures.removeFirst();
}

bool failedTexts::hasFailed(const QString& html) const
{
    if (m_failures.isEmpty())
        return false;
    const Failure* failure = find(hashOf(html));
    return failure && failure->bSure;
}
