#include "tests/kit/phoneTest.h"
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace kit {

namespace {

constexpr int kLookEveryMs = 1;

QString labelText(QWidget* box, const char* name)
{
    const QLabel* label = box->findChild<QLabel*>(name);
    return label ? label->text() : QString();
}

QPushButton* button(QWidget* box, const QString& answer)
{
    const QString name = "btn" + answer.left(1).toUpper() + answer.mid(1);
    return box->findChild<QPushButton*>(answer == "ok" ? QString("btnOK") : name);
}

} // namespace

BoxAnswers::BoxAnswers(const QStringList& answers) : m_answers(answers), m_timer(new QTimer)
{
    QObject::connect(m_timer.get(), &QTimer::timeout, m_timer.get(), [this] { look(); });
    m_timer->start(kLookEveryMs);
}

BoxAnswers::~BoxAnswers() = default;

void BoxAnswers::look()
{
    QWidget* box = QApplication::activeModalWidget();
    if (box && box->isVisible() && box->objectName() == "dlgMessageBox" && !m_kept.contains(box))
        answer(box);
}

void BoxAnswers::answer(QWidget* box)
{
    m_titles.append(labelText(box, "labTitle"));
    m_texts.append(labelText(box, "labText"));
    const QString answer = m_answers.isEmpty() ? QString() : m_answers.takeFirst();
    if (answer == "keep") {
        m_kept.append(box);
        return;
    }
    QPushButton* choice = answer.isEmpty() ? nullptr : button(box, answer);
    if (!choice) {
        ++m_nUnexpected;
        const QList<QPushButton*> all = box->findChildren<QPushButton*>();
        choice = all.isEmpty() ? nullptr : all.last();
    }
    if (choice)
        tap(choice);
}

} // namespace kit
