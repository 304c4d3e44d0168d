#include "host/desktop/dialDirectory.h"
#include "host/desktop/callRecords.h"
#include "host/desktop/contactBook.h"
#include "host/services/phone/callNumber.h"
#include "support/host/api.h"
#include <QSet>
#include <algorithm>

namespace {

constexpr int kEntriesMax = 5000;
const char* const kKeysOfLetters = "22233344455566677778889999"; // of a to z

QChar keyOf(QChar letter)
{
    const QChar plain = letter.decomposition().isEmpty() ? letter : letter.decomposition().at(0);
    const QChar low = plain.toLower();
    if (low >= 'a' && low <= 'z')
        return QLatin1Char(kKeysOfLetters[low.unicode() - 'a']);
    return low.isDigit() ? low : QChar(' ');
}

QString keysOf(const QString& name)
{
    QString keys(' ');
    for (const QChar letter : name)
        keys += keyOf(letter);
    return keys;
}

// Digits alone, of a number as people write it.
QString bareNumber(const QString& number)
{
    const QString bare = callNumberOf(number);
    return bare.isEmpty() ? number.trimmed() : bare;
}

tagDialEntry entryOf(const QString& name, const QString& number, int line)
{
    tagDialEntry entry;
    entry.strName = callTextOf(name);
    entry.strNumber = callNumberOf(number);
    entry.nLine = line;
    entry.strLower = entry.strName.toLower();
    entry.strKeys = keysOf(entry.strName);
    return entry;
}

class ReadAction : public taskAction
{
public:
    int exec() override
    {
        const QList<tagContact> book = contactsRead();
        for (const tagContact& contact : book.mid(0, kEntriesMax)) {
            tagDialEntry entry = entryOf(contact.strName, contact.strNumber, contact.nLine);
            entry.strDetail = entry.strNumber;
            entry.strPicture = HX_THEME("icon/dial_contact.png");
            if (!entry.strNumber.isEmpty())
                contacts.append(entry);
        }
        for (const tagCallRecord& call : callRecordsRead())
            addCall(call, book);
        return 1;
    }
    QList<tagDialEntry> contacts;
    QList<tagDialEntry> calls;
    QList<tagCallRecord> records; // of the calls

private:
    void addCall(const tagCallRecord& call, const QList<tagContact>& book)
    {
        if (call.strNumber.isEmpty())
            return; // whose name is a text of another thread
        const QString name = callRecordName(call, book);
        tagDialEntry entry = entryOf(name == call.strNumber ? QString() : name, call.strNumber, call.nLine);
        if (entry.strNumber.isEmpty() || m_numbers.contains(entry.strNumber))
            return;
        m_numbers.insert(entry.strNumber);
        entry.strPicture = callRecordPicture(call);
        calls.append(entry);
        records.append(call);
    }
    QSet<QString> m_numbers;
};

bool isDigits(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar letter) { return letter.isDigit(); });
}

bool matches(const tagDialEntry& entry, const QString& lower, const QString& bare, bool digits)
{
    if (entry.strNumber.startsWith(bare, Qt::CaseInsensitive))
        return true;
    if (digits)
        return entry.strKeys.contains(' ' + bare);
    return entry.strLower.contains(lower);
}

} // namespace

void dialDirectory::load()
{
    auto* action = new ReadAction;
    action->AddRef();
    action->SetCreatFlag(1);
    action->SetCallback(this);
    PostAction(*action);
    action->DestroyObject();
}

void dialDirectory::OnCallback(taskAction* action)
{
    auto* read = static_cast<ReadAction*>(action);
    m_contacts = read->contacts;
    m_calls = read->calls;
    // In the present language, whose texts are of this thread.
    for (int i = 0; i < m_calls.size(); ++i)
        m_calls[i].strDetail = callRecordTime(read->records[i]);
    m_read();
}

QList<tagDialEntry> dialDirectory::find(const QString& typed) const
{
    const QString lower = typed.trimmed().toLower();
    if (lower.isEmpty())
        return m_calls.mid(0, ROWS_MAX);
    const QString bare = bareNumber(typed);
    const bool digits = isDigits(bare);
    QList<tagDialEntry> found;
    QSet<QString> numbers;
    for (const QList<tagDialEntry>* list : {&m_contacts, &m_calls}) {
        for (const tagDialEntry& entry : *list) {
            if (found.size() >= ROWS_MAX)
                return found;
            if (!matches(entry, lower, bare, digits) ||
                (list == &m_calls && numbers.contains(entry.strNumber)))
                continue;
            numbers.insert(entry.strNumber);
            found.append(entry);
        }
    }
    return found;
}
