#include "tests/desktop/desktopTest.h"
#include "host/desktop/pressGuard.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/file/fileSystemCalls.h"
#include "support/host/bars.h"
#include "support/host/language.h"
#include "support/host/registry.h"
#include <QApplication>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <cerrno>

DesktopTest::DesktopTest()
{
    setLanguage("English");
    registerLines();
}

DesktopTest::~DesktopTest()
{
    hangUpAll();
    fileGetSystemCalls() = fileDefaultSystemCalls();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            window->hide();
    }
    kit::settle();
}

std::string DesktopTest::logged(const char* kind) const
{
    return PhoneTest::logged(kind).join("|").toStdString();
}

void DesktopTest::setLanguage(const char* name)
{
    ASSERT_EQ(GetLanguageHelper()->SetLanguage(name), 1);
}

void DesktopTest::registerLines()
{
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line) {
        tagLineSetting setting;
        setting.state = LINE_REGISTERED;
        setting.user = QString::number(1001 + line);
        ASSERT_TRUE(phoneSimulation::instance()->setLine(line, setting));
    }
    kit::settle();
}

void DesktopTest::letPressesCount()
{
    kit::stepTime(pressGuard::SETTLE_MS * 3 / 2);
}

void DesktopTest::hangUpAll()
{
    for (const tagCall& call : phoneService::instance().calls())
        phoneService::instance().hangUp(call.nId);
}

void DesktopTest::makeSavesFail()
{
    fileGetSystemCalls().rename = [](const char*, const char*) {
        errno = EIO;
        return -1;
    };
}

std::string softKeys(QWidget* page)
{
    qSoftKeyBar* bar = page->findChild<qSoftKeyBar*>();
    QStringList titles;
    for (int index = 0; index < SOFT_KEY_COUNT; ++index)
        titles.append(bar->GetButtonTitle(index));
    return titles.join("|").toStdString();
}

void tapSoftKey(QWidget* page, int index)
{
    kit::tap(page->findChild<qSoftKeyBar*>()->GetButton(index));
}

std::string pageTitle(QWidget* page)
{
    return page->findChild<qTopBar*>()->title().toStdString();
}

std::string labelText(QWidget* page, const char* name)
{
    const QLabel* label = page->findChild<QLabel*>(name);
    return label ? label->text().toStdString() : "no such label";
}

QTableWidget* listOf(QWidget* page)
{
    return page->findChild<QTableWidget*>("tabList");
}

std::string rowsOf(QWidget* page)
{
    QTableWidget* table = listOf(page);
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column)
            cells.append(table->item(row, column)->text());
        rows.append(cells.join(","));
    }
    return rows.join("|").toStdString();
}

std::string headingsOf(QWidget* page)
{
    QTableWidget* table = listOf(page);
    QStringList headings;
    for (int column = 0; column < table->columnCount(); ++column)
        headings.append(table->horizontalHeaderItem(column)->text());
    return headings.join(",").toStdString();
}

void tapRow(QWidget* page, int row)
{
    QTableWidget* table = listOf(page);
    const QRect cell = table->visualItemRect(table->item(row, 1));
    kit::tap(table->viewport()->mapToGlobal(cell.center()));
}

std::string noticeOf(QWidget* page)
{
    const QLabel* label = page->findChild<QLabel*>("labNotice");
    return label->isVisible() ? label->text().toStdString() : std::string();
}

std::string cutTexts(QWidget* page)
{
    QStringList cut;
    for (QLabel* label : page->findChildren<QLabel*>()) {
        const bool shrinks = label->inherits("fittedLabel");
        const QSize needed = label->wordWrap() ? QSize(0, label->heightForWidth(label->width()))
                                               : label->fontMetrics().size(0, label->text());
        if (label->isVisible() && !shrinks &&
            (needed.width() > label->width() || needed.height() > label->height()))
            cut.append(label->text());
    }
    const QTableWidget* table = listOf(page);
    for (int column = 0; table && column < table->columnCount(); ++column) {
        const QString heading = table->horizontalHeaderItem(column)->text();
        if (table->horizontalHeader()->fontMetrics().horizontalAdvance(heading) > table->columnWidth(column))
            cut.append(heading);
    }
    return cut.join("|").toStdString();
}
