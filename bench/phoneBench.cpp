#include "bench/phoneBench.h"
#include <cstdio>
#include <random>

void RatioTable::add(const QString& what, double measured, double limit, const QString& unit)
{
    m_rows.push_back({what, measured, limit, unit});
}

bool RatioTable::print() const
{
    bool isWithin = true;
    for (const Row& row : m_rows) {
        const bool ok = row.measured <= row.limit;
        isWithin = isWithin && ok;
        printf("%-62s %9.3f %-4s of %9.3f   ratio %.3f  %s\n", qPrintable(row.what), row.measured,
               qPrintable(row.unit), row.limit, row.limit > 0 ? row.measured / row.limit : row.measured,
               ok ? "ok" : "over");
    }
    return isWithin;
}

QStringList benchParts(int argc, char** argv, const QStringList& all)
{
    QStringList parts;
    for (int i = 1; i < argc; ++i)
        parts.append(argv[i]);
    return parts.isEmpty() ? all : parts;
}

unsigned benchSeed()
{
    const unsigned seed = qEnvironmentVariableIsSet("HX_CALLS_SEED") ? qgetenv("HX_CALLS_SEED").toUInt()
                                                                     : std::random_device()();
    printf("HX_CALLS_SEED=%u\n", seed);
    return seed;
}
