#pragma once
// What the monkey does next: one action is one or more commands of the control socket, all of them drawn from
// one seed.
#include <QStringList>
#include <QVector>
#include <random>

class MonkeyHand
{
public:
    using Action = QVector<QStringList>;

    // names: of pages; menus: files.
    MonkeyHand(quint64 seed, const QStringList& names, const QStringList& menus);
    Action next();

private:
    int below(int limit) { return int(m_random() % quint64(limit)); }
    const QString& oneOf(const QStringList& list) { return list[below(int(list.size()))]; }
    QString number(int from, int to) { return QString::number(from + below(to - from + 1)); }

    Action touch();
    Action drag();
    Action key();
    Action text();
    Action entry();
    Action world();
    Action line();
    Action net();

    std::mt19937_64 m_random;
    const QStringList m_names;
    const QStringList m_menus;
};

// Every page and menu that there is, from the page table and the menu files: a new page is covered by being
// there.
QStringList monkeyPageNames();
QStringList monkeyMenuFiles();
