#include "host/widgets/dlgMessageBox.h"
#include "host/screen/windowStack.h"
#include "host/services/system/hostLog.h"
#include "support/host/box.h"
#include "support/host/trace.h"
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

constexpr int kBoxesAtMost = 8; // upon each other: each keeps what has called it waiting

const char* pictureOf(int type)
{
    return type == BOX_QUESTION ? HX_THEME("msgbox/mb_question.png") : HX_THEME("msgbox/mb_info.png");
}

} // namespace

dlgMessageBox::dlgMessageBox(const QString& title, const QString& text, int type, QWidget* parent)
    : BoxDialog(title, text, pictureOf(type), 0, parent)
{
    setObjectName(QStringLiteral("dlgMessageBox"));
    if (type == BOX_QUESTION) {
        connect(addButton("btnYes", HX_TR("Yes"), 1), &QPushButton::clicked, this, &QDialog::accept);
        connect(addButton("btnNo", HX_TR("No"), 0), &QPushButton::clicked, this, &QDialog::reject);
    } else {
        connect(addButton("btnOK", HX_TR("OK"), 0), &QPushButton::clicked, this, &QDialog::accept);
    }
}

int xMessageBox(const char* title, const char* text, int type, QWidget* parent, int timeoutMs)
{
    const QString caption = QString::fromUtf8(title);
    const QString words = QString::fromUtf8(text);
    hostLog("box", caption + QLatin1Char('|') + words);
    static int open = 0;
    if (open >= kBoxesAtMost) {
        nuxTrace(TRACE_NOTE, "Too many boxes wait for an answer: \"%s\" is not shown", text ? text : "");
        return 0;
    }
    ++open;
    const QPointer<dlgMessageBox> box = new dlgMessageBox(caption, words, type, parent);
    if (timeoutMs >= 0)
        QTimer::singleShot(timeoutMs, Qt::PreciseTimer, box.data(), &QDialog::reject);
    const int answer = box->exec();
    delete box.data();
    if (--open == 0)
        windowStack::instance().boxesEnded();
    return answer == QDialog::Accepted ? 1 : 0;
}
