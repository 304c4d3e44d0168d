#include "frame/wgtHelper.h"
#include "frame/configFiles.h"
#include "frame/rowHeightDelegate.h"
#include "frame/xmlUnderRoot.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "support/host/clock.h"
#include "support/host/combo.h"
#include "support/host/image.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimeEdit>

namespace {

enum { COMBO_ROW_HEIGHT = 35, EDIT_FONT = 18, LIST_FONT = 20, KEEP_WEIGHT = -1, VERSION_COLUMN = 325 };

void setupTable(QTableWidget* table)
{
    table->horizontalHeader()->setVisible(false);
    table->verticalHeader()->setVisible(false);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setShowGrid(false);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setAutoScroll(true);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void addFilesOfFolder(QComboBox* box, const char* shortName, const char* folder, const char* filter)
{
    chObjList_dynamic<chString, 16> files;
    nuxFindFile(folder, filter, files, 0);
    for (const chString& file : files) {
        const chString shown = chString(shortName) + pathGetFileNamePos(file.GetText());
        addFilenameComboBoxItem(box, shown.GetText(), file.GetText());
    }
}

} // namespace

void setupLineEdit(QLineEdit*) {}

void setupCheckbox(QCheckBox*) {}

void setupPasswordEdit(QLineEdit* edit)
{
    edit->setEchoMode(QLineEdit::Password);
    edit->setAttribute(Qt::WA_InputMethodEnabled, true);
}

void setupIconButton(QPushButton* button, const char* image)
{
    const QPixmap picture = GetImageManager()->GetImage(image);
    if (!picture.isNull()) {
        button->setIcon(QIcon(picture));
        button->setIconSize(picture.size());
    }
    button->setFocusPolicy(Qt::NoFocus);
}

void setupTextButton(QPushButton* button, const char* text)
{
    button->setText(QString::fromUtf8(text));
}

void setupComboBox(QComboBox* box)
{
    if (!box)
        return;
    nuxTrace(TRACE_DETAIL, "==change the row height");
    box->setItemDelegate(new RowHeightDelegate(COMBO_ROW_HEIGHT, box));
    setFontStyle(EDIT_FONT, KEEP_WEIGHT, box, false);
    nuxTrace(TRACE_DETAIL, "==change the row height");
}

void setupDataEdit(QDateEdit* edit)
{
    setFontStyle(EDIT_FONT, KEEP_WEIGHT, edit, false);
    const chTime now(netGetLocalTime());
    edit->setDate(QDate(now.GetYear(), now.GetMonth(), now.GetDay()));
}

// The seconds repeat the minute: the pages show none, and a change of the minute changes both.
void setupTimeEdit(QTimeEdit* edit)
{
    setFontStyle(EDIT_FONT, KEEP_WEIGHT, edit, false);
    const chTime now(netGetLocalTime());
    edit->setTime(QTime(now.GetHour(), now.GetMinute(), now.GetMinute(), 0));
}

void setWgtFontColor(QWidget* widget, bool enabled)
{
    QPalette colours = widget->palette();
    colours.setColor(QPalette::WindowText, enabled ? QColor(0, 0, 0, 255) : QColor(90, 90, 90, 190));
    widget->setPalette(colours);
}

int setupFilenameComboBox(QComboBox* box, const char* section)
{
    box->clear();
    xmlFile file(MEDIA_FILE_XML);
    xmlElement* family = xmlFindUnderRoot(file, section);
    if (!family)
        return 0;
    const char* filter = family->GetAttributeValue("filter");
    xmlElement* list = family->FindChildElement("filelist");
    for (xmlElement* item = list ? list->FindChildElement("item") : nullptr; item;
         item = xmlGetNextElement(item)) {
        if (strcmp(item->GetName(), "item") == 0)
            addFilesOfFolder(box, item->GetAttributeValue("shortname"), item->GetAttributeValue("path"),
                             filter);
    }
    return 1;
}

void addFilenameComboBoxItem(QComboBox* box, const char* shown, const char* path)
{
    if (box)
        qAddComboBoxItem(box, shown ? shown : "", path ? path : "");
}

chString getFilenameComboBoxFullPath(QComboBox* box, int index)
{
    return qGetExternValue(box, index);
}

void setupDialPlanList(QTableWidget* table)
{
    setupTable(table);
    table->setColumnCount(2);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

void setupPicDiaSettingList(QTableWidget* table)
{
    setupTable(table);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
}

void setupSpeedDialList(QTableWidget* table)
{
    setupTable(table);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

void setupVersionDetail(QTableWidget* table)
{
    setupTable(table);
    table->setColumnCount(2);
    table->setColumnWidth(0, VERSION_COLUMN);
    table->setColumnWidth(1, VERSION_COLUMN);
    setFontStyle(LIST_FONT, KEEP_WEIGHT, table, false);
}

void setupWeatherWidget(QTableWidget* table)
{
    setupTable(table);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    setFontStyle(LIST_FONT, KEEP_WEIGHT, table, false);
}
