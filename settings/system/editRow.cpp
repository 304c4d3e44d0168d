#include "settings/system/editRow.h"
#include "frame/configBindings.h"
#include "support/host/ime.h"
#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QTimer>

namespace {

constexpr int kGap = 8;
const char* const kDigits = "123"; // the input method

class SelectOnFocus : public QObject
{
public:
    explicit SelectOnFocus(QLineEdit* edit) : QObject(edit) { edit->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // Later: a finger's touch places the cursor behind the focus.
        if (event->type() == QEvent::FocusIn)
            QTimer::singleShot(0, watched, [watched] { static_cast<QLineEdit*>(watched)->selectAll(); });
        return false;
    }
};

} // namespace

void editRowSetUp(QFrame* frame, const char* separator, std::initializer_list<tagRowEdit> edits)
{
    QHBoxLayout* row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kGap);
    for (const tagRowEdit& entry : edits) {
        if (row->count() > 0)
            row->addWidget(new QLabel(QString::fromUtf8(separator), frame));
        QLineEdit* edit = entry.pEdit;
        edit->setObjectName(entry.szName);
        edit->setFixedWidth(entry.nWidth);
        edit->setAlignment(Qt::AlignCenter);
        edit->setValidator(
            new QRegularExpressionValidator(QRegularExpression(QString::fromUtf8(DIGITS_ONLY)), edit));
        qInstallIME(edit, kDigits);
        new SelectOnFocus(edit);
        row->addWidget(edit);
    }
    row->addStretch();
}

void editRowShow(QLineEdit* edit, int number)
{
    edit->setText(QString::asprintf("%.2d", number));
}
