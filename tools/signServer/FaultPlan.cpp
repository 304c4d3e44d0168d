#include "tools/signServer/FaultPlan.h"
#include <QMap>
#include <cstdio>

namespace {

const QMap<QByteArray, FaultKind>& Kinds()
{
    static const QMap<QByteArray, FaultKind> kinds = {
        {"refuse", FaultKind::Refuse},   {"stall", FaultKind::Stall},
        {"drip", FaultKind::Drip},       {"cut", FaultKind::Cut},
        {"corrupt", FaultKind::Corrupt}, {"redirect", FaultKind::Redirect},
        {"longer", FaultKind::Longer},   {"shorter", FaultKind::Shorter},
        {"garbage", FaultKind::Garbage}, {"broken-xml", FaultKind::BrokenXml},
    };
    return kinds;
}

QList<QByteArray> Words(const QByteArray& line)
{
    QList<QByteArray> words = line.simplified().split(' ');
    words.removeAll(QByteArray());
    return words;
}

} // namespace

int FitsPattern(const QByteArray& text, const QByteArray& pattern)
{
    qsizetype t = 0, p = 0, star = -1, mark = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            mark = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++mark;
        } else {
            return 0;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

int FaultPlan::SetValue(const QByteArray& name, const QByteArray& value, Rule& rule)
{
    Fault& fault = rule.fault;
    bool good = true;
    if (name == "status")
        good = (fault.status = value.toInt()) >= 400 && fault.status <= 599;
    else if (name == "after")
        good = (fault.after = value.toLongLong(&good)) >= 0 && good;
    else if (name == "by")
        good = (fault.by = value.toLongLong()) > 0;
    else if (name == "bytes")
        good = (fault.bytes = value.toInt()) > 0;
    else if (name == "pause")
        good = (fault.pause = value.toInt(&good)) >= 0 && good;
    else if (name == "seconds")
        good = (fault.seconds = value.toInt()) > 0;
    else if (name == "chunked")
        fault.chunked = value == "1";
    else if (name == "to")
        fault.to = value;
    else if (name == "probability")
        good = (rule.probability = value.toDouble(&good)) >= 0 && rule.probability <= 1 && good;
    else if (name == "times")
        good = (rule.times = value.toInt(&good)) >= 0 && good;
    else
        return 0;
    return good ? 1 : 0;
}

QByteArray FaultPlan::ParseRule(const QByteArray& line, unsigned seed, Rule& rule)
{
    const QList<QByteArray> words = Words(line);
    const auto kind = Kinds().find(words[0]);
    if (kind == Kinds().end())
        return "no such fault: " + words[0];
    if (words.size() < 2)
        return "a pattern is missing: " + line;
    rule.fault.kind = *kind;
    rule.fault.name = words[0];
    rule.fault.seed = seed;
    rule.pattern = words[1];
    rule.line = line.simplified();
    rule.dice.seed(seed);
    for (const QByteArray& word : words.mid(2)) {
        const qsizetype equals = word.indexOf('=');
        if (equals < 1 || !SetValue(word.left(equals), word.mid(equals + 1), rule))
            return "not understood: " + word;
    }
    return QByteArray();
}

QByteArray FaultPlan::Parse(const QByteArray& text, Rules& rules)
{
    unsigned seed = 1;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line[0] == '#')
            continue;
        if (line.startsWith("seed ")) {
            seed = line.mid(5).trimmed().toUInt();
            continue;
        }
        Rule rule;
        const QByteArray error = ParseRule(line, seed, rule);
        if (!error.isEmpty())
            return error;
        rules.append(rule);
    }
    return QByteArray();
}

void FaultPlan::FollowFile()
{
    const QByteArray text = m_folder.Content("faults.txt");
    if (m_replaced || text == m_text)
        return;
    m_text = text;
    Rules rules;
    const QByteArray error = Parse(text, rules);
    if (!error.isEmpty())
        std::fprintf(stderr, "hxSignServer: faults.txt: %s\n", error.constData());
    m_rules = error.isEmpty() ? rules : Rules();
}

Fault FaultPlan::Choose(const QByteArray& target)
{
    QMutexLocker locker(&m_lock);
    FollowFile();
    for (Rule& rule : m_rules) {
        if (!FitsPattern(target, rule.pattern) || (rule.times >= 0 && rule.struck >= rule.times))
            continue;
        ++rule.fitted;
        // The draw is the generator's own number: the same everywhere for one seed.
        if (rule.dice() >= rule.probability * 4294967296.0)
            continue;
        ++rule.struck;
        Fault fault = rule.fault;
        fault.seed = rule.dice();
        return fault;
    }
    return Fault();
}

QByteArray FaultPlan::Replace(const QByteArray& text)
{
    Rules rules;
    const QByteArray error = Parse(text, rules);
    if (!error.isEmpty())
        return error;
    QMutexLocker locker(&m_lock);
    m_rules = rules;
    m_replaced = true;
    return QByteArray();
}

void FaultPlan::Restore()
{
    QMutexLocker locker(&m_lock);
    m_replaced = false;
    m_rules.clear();
    m_text.clear();
}

QByteArray FaultPlan::Report()
{
    QMutexLocker locker(&m_lock);
    FollowFile();
    QByteArray report;
    for (const Rule& rule : m_rules)
        report += rule.line + " # fitted " + QByteArray::number(rule.fitted) + ", struck " +
                  QByteArray::number(rule.struck) + "\n";
    return report;
}
