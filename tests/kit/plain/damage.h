#pragma once
// XML texts as a bad line, a bad disk or a bad server leaves them, all of them drawn from one seed.
//   HX_DAMAGE_SEED   of the run to repeat
//   HX_LONG          fifty times as many
#include <QByteArray>
#include <QList>
#include <QString>
#include <random>

namespace kit {

enum class Harm {
    Cut,      // its end is missing
    Flipped,  // some bytes are others
    Missing,  // an element is not there
    Doubled,  // a part stands there again, now and then until it is longer than anything has to be
    Inserted, // tags, entities, quotes or a NUL stand where there were none
    Number    // one of its numbers is another, or none
};

class Damage
{
public:
    // Prints its seed.
    Damage();
    // How many texts a test harms.
    static int count();

    struct tagHarmed
    {
        QByteArray text;
        QList<Harm> harms;
        // That, and nothing besides.
        bool isOnly(Harm harm) const { return harms == QList<Harm>{harm}; }
    };
    // One harm, and now and then up to three. whole: well-formed, ends with its last tag, and has no numbers
    // but in its values.
    tagHarmed harmed(const QByteArray& whole);
    // Into a file that is there already, in the time that a hundred thousand of them have. False when it
    // fails.
    static bool write(const QString& file, const QByteArray& text);
    int draw(int below) { return int(m_random() % unsigned(below)); }

private:
    void cut(QByteArray& text);
    void flip(QByteArray& text);
    void leaveOut(QByteArray& text);
    void doublePart(QByteArray& text);
    void insert(QByteArray& text);
    void changeNumber(QByteArray& text);

    std::mt19937 m_random;
};

} // namespace kit
