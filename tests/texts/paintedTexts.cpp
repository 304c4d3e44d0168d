#include "tests/texts/paintedTexts.h"
#include "host/look/look.h"
#include <QApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QRegularExpression>

using look::FittedText;

// The linker leads all calls here; whether also those of the file that defines them is the linker's choice.
extern "C" {
FittedText __real__ZN4look7fitTextERK7QStringRK5QFontRK5QSizeii(const QString& text, const QFont& font,
                                                                const QSize& size, int maxLines,
                                                                int smallest);
void __real__ZN4look11paintFittedER8QPainterRK5QRectiRKNS_10FittedTextE(QPainter& painter, const QRect& rect,
                                                                        int align, const FittedText& text);
void __real__ZN4look11paintFittedER8QPainterRK5QRectiRK7QStringRK5QFonti(QPainter& painter, const QRect& rect,
                                                                         int align, const QString& text,
                                                                         const QFont& font, int maxLines);
}

namespace {

QStringList g_cut;
QStringList g_mayShrink;
QStringList g_overflows;
int g_paintedPixels = 0;
bool g_isNoted = false; // the text that is laid out, by who paints it

// A word of another script than Chinese is not broken.
bool wordsFit(const QString& text, const QFont& font, int width)
{
    static const QRegularExpression gap("[\\s\\p{Han}]+", QRegularExpression::UseUnicodePropertiesOption);
    for (const QString& word : text.split(gap)) {
        if (QFontMetrics(font).horizontalAdvance(word) > width)
            return false;
    }
    return true;
}

// Knows the widget that is being painted: the painter itself only knows where the pixels go.
class PaintWatch : public QObject
{
public:
    PaintWatch() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted = watched->metaObject()->className();
        return false;
    }
    QByteArray painted;
};

PaintWatch& paintWatch()
{
    static PaintWatch watch;
    return watch;
}

// The left bar is narrow for one long word: its title may be made smaller, but is not broken.
int smallestHere(int pixels)
{
    return paintWatch().painted == "qLeftBar" ? pixels * 3 / 4 : pixels;
}

void note(const QString& text, const QFont& font, const QSize& size, int maxLines, int smallest)
{
    if (text.isEmpty() || g_mayShrink.contains(text))
        return;
    const FittedText full =
        __real__ZN4look7fitTextERK7QStringRK5QFontRK5QSizeii(text, font, size, maxLines, smallest);
    if (full.lines.size() <= maxLines && full.height() <= size.height() &&
        wordsFit(text, full.font, size.width()))
        return;
    g_cut.append(QString("\"%1\" needs %2 of %3 x %4 in %5 px, %6 lines")
                     .arg(text)
                     .arg(QFontMetrics(font).horizontalAdvance(text))
                     .arg(size.width())
                     .arg(size.height())
                     .arg(font.pixelSize())
                     .arg(maxLines));
}

} // namespace

extern "C" {

FittedText __wrap__ZN4look7fitTextERK7QStringRK5QFontRK5QSizeii(const QString& text, const QFont& font,
                                                                const QSize& size, int maxLines, int smallest)
{
    if (!g_isNoted)
        note(text, font, size, maxLines, font.pixelSize());
    return __real__ZN4look7fitTextERK7QStringRK5QFontRK5QSizeii(text, font, size, maxLines, smallest);
}

void __wrap__ZN4look11paintFittedER8QPainterRK5QRectiRKNS_10FittedTextE(QPainter& painter, const QRect& rect,
                                                                        int align, const FittedText& text)
{
    g_paintedPixels = text.font.pixelSize();
    for (const QString& line : text.lines) {
        if (QFontMetrics(text.font).horizontalAdvance(line) > rect.width() || text.height() > rect.height())
            g_overflows.append(line);
    }
    __real__ZN4look11paintFittedER8QPainterRK5QRectiRKNS_10FittedTextE(painter, rect, align, text);
}

void __wrap__ZN4look11paintFittedER8QPainterRK5QRectiRK7QStringRK5QFonti(QPainter& painter, const QRect& rect,
                                                                         int align, const QString& text,
                                                                         const QFont& font, int maxLines)
{
    note(text, font, rect.size(), maxLines, smallestHere(font.pixelSize()));
    g_isNoted = true;
    __real__ZN4look11paintFittedER8QPainterRK5QRectiRK7QStringRK5QFonti(painter, rect, align, text, font,
                                                                        maxLines);
    g_isNoted = false;
}
}

QStringList takeCutTexts()
{
    paintWatch();
    const QStringList cut = g_cut;
    g_cut.clear();
    return cut;
}

QStringList takeOverflows()
{
    const QStringList overflows = g_overflows;
    g_overflows.clear();
    return overflows;
}

int takePaintedPixels()
{
    const int pixels = g_paintedPixels;
    g_paintedPixels = 0;
    return pixels;
}

void mayShrink(const QString& text)
{
    g_mayShrink.append(text);
}
