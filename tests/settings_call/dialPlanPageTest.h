#pragma once
// The page "Dial Plan" with two rules in its file.
#include "settings/call/dlgDialPlan.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/pageTest.h"
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <memory>

#define PLAN_FILE "/rundata/data/dialplan.xml"

inline const char* const kTwoRules =
    "<DialRule><Data Prefix=\"00\" Replace=\"+\"/><Data Prefix=\"9\" Replace=\"\"/></DialRule>";

inline QByteArray rules(int count)
{
    QByteArray file = "<DialRule>";
    for (int rule = 0; rule < count; ++rule)
        file += "<Data Prefix=\"7" + QByteArray::number(rule) + "\" Replace=\"5\"/>";
    return file + "</DialRule>";
}

class DialPlanPage : public PageTest
{
protected:
    DialPlanPage() { writeFile(PLAN_FILE, kTwoRules); }
    void openPage()
    {
        if (!m_pPage)
            m_pPage = std::make_unique<dlgDialPlan>(nullptr, nullptr);
        show(*m_pPage);
    }
    void openPage(const QByteArray& file)
    {
        writeFile(PLAN_FILE, file);
        openPage();
    }

    QTableWidget* list() const { return child<QTableWidget>("tabWgtList"); }
    QLineEdit* prefix() const { return child<QLineEdit>("editPrefix"); }
    QLineEdit* replace() const { return child<QLineEdit>("editReplace"); }
    QString edits() const { return prefix()->text() + "=" + replace()->text(); }
    bool areEnabled() const { return prefix()->isEnabled() && replace()->isEnabled(); }
    bool areDisabled() const { return !prefix()->isEnabled() && !replace()->isEnabled(); }
    bool isGrey(const QLineEdit* edit) const
    {
        return edit->palette().color(QPalette::WindowText) == QColor(90, 90, 90, 190);
    }
    QString notice() const { return child<QLabel>("labNote")->text(); }
    // "00=+" for each row, from the top.
    QStringList rows() const
    {
        QStringList all;
        for (int row = 0; row < list()->rowCount(); ++row)
            all.append(list()->item(row, 0)->text() + "=" + list()->item(row, 1)->text());
        return all;
    }
    // The same of the file.
    QStringList inFile() const
    {
        QStringList all;
        xmlFile file(PLAN_FILE);
        xmlElement* top = xmlFindElementFromRoot(&file, "DialRule");
        xmlElement* rule = top ? top->GetFirstChildElement() : nullptr;
        for (; rule; rule = xmlGetNextElement(rule))
            all.append(QString("%1=%2").arg(rule->GetAttributeValue("Prefix").GetText(),
                                            rule->GetAttributeValue("Replace").GetText()));
        return all;
    }
    // By finger.
    void choose(int row)
    {
        kit::tap(list()->viewport()->mapToGlobal(list()->visualItemRect(list()->item(row, 0)).center()));
    }
    void fill(const QString& newPrefix, const QString& newReplace)
    {
        enter("editPrefix", newPrefix);
        enter("editReplace", newReplace);
    }
    void ok() { kit::tap(child<QPushButton>("btnOK")); }
    void cancel() { kit::tap(child<QPushButton>("btnCancel")); }
    void add() { softKey(0); }
    void pressIme() { softKey(1); }
    void erase() { softKey(2); }

    std::unique_ptr<dlgDialPlan> m_pPage;
};
