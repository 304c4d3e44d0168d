#pragma once
// What every test of the phone stands on: a device root of its own, time that the test moves, and a
// hand that touches the screen and presses keys below the toolkit's widgets.
#include "tests/kit/logReader.h"
#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

class QTimer;
class QWidget;

// How a failed comparison prints a text.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toUtf8().constData() << '"';
}

class PhoneTest : public ::testing::Test
{
protected:
    PhoneTest();
    ~PhoneTest() override;

public:
    // Path of the device root on this machine, and of one device path below it.
    QString root() const { return m_dir.path(); }
    QString hostPath(const char* devicePath) const { return root() + QString::fromUtf8(devicePath); }
    QByteArray readFile(const char* devicePath) const;
    // Makes the folders on the way.
    void writeFile(const char* devicePath, const QByteArray& content) const;
    // A file of the device image, for this test alone.
    void replaceFirmwareFile(const char* devicePath, const QByteArray& content) const;

    // Texts of one kind of log entry since the test began, or since the last mark().
    QStringList logged(const QString& kind) const { return m_log.texts(kind); }
    QStringList loggedInOrder(const QStringList& kinds) const { return m_log.entries(kinds); }
    QStringList traces() const { return m_log.texts("trace"); }
    void mark() { m_log.mark(); }

private:
    kit::LogReader m_log;
    QTemporaryDir m_dir;
};

namespace kit {

// Moves all clocks on by ms and lets every timer that becomes due fire, in order.
void stepTime(int ms);
// Delivers everything that is posted, until nothing is left.
void settle();
// Real time: for other threads and processes. False when ms went by.
bool waitUntil(const std::function<bool()>& condition, int ms = 5000);

// A finger, in screen positions.
void press(QPoint screen);
void moveTo(QPoint screen);
void release(QPoint screen);
void tap(QPoint screen);
// The middle of the widget.
void tap(QWidget* widget);

void keyPress(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
void keyRelease(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
// A key of the phone's digit pad: 0 to 9, '*', '#'.
void padKey(char digit);
// Text typed on a PC keyboard.
void type(const QString& text);

// Visible top-level windows, topmost first, and the screen as a person sees it.
QList<QWidget*> windows();
QImage screen();
// Writes the screen to shots/NAME.png of the build folder, to be looked at.
void shot(const QString& name);

// Answers message boxes with real taps, in order: "yes", "no", "ok", or "keep" to leave one open. A box
// past the last answer is closed with its last button and counts as unexpected.
class BoxAnswers
{
public:
    explicit BoxAnswers(const QStringList& answers = {});
    ~BoxAnswers();
    const QStringList& texts() const { return m_texts; }
    const QStringList& titles() const { return m_titles; }
    int unexpected() const { return m_nUnexpected; }

private:
    void look();
    void answer(QWidget* box);
    QStringList m_answers;
    QStringList m_texts;
    QStringList m_titles;
    QList<QWidget*> m_kept;
    int m_nUnexpected = 0;
    std::unique_ptr<QTimer> m_timer;
};

// What a GUI test program does before and after the application object is made.
struct GuiHooks
{
    void (*beforeApplication)() = nullptr;
    void (*afterApplication)() = nullptr;
};
GuiHooks& guiHooks();

} // namespace kit
