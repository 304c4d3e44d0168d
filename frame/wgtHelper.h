#pragma once
// Gives single widgets the look and content that pages share. User-interface thread. Widgets are not owned
// and must not be null unless stated.
#include "support/host/api.h"
#include "support/text/chString.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLineEdit;
class QPushButton;
class QTableWidget;
class QTimeEdit;
class QWidget;

void setupLineEdit(QLineEdit* edit);   // a hook that every edit passes
void setupCheckbox(QCheckBox* button); // a hook that every check box passes
// Hides what is typed; the phone's input methods stay, which a hidden text would do without.
void setupPasswordEdit(QLineEdit* edit);
// image: device path; a picture that cannot be loaded leaves the button without icon.
void setupIconButton(QPushButton* button, const char* image);
void setupTextButton(QPushButton* button, const char* text); // text as it stands
void setupComboBox(QComboBox* box);                          // rows of 35 pixels; ignores null
void setupDataEdit(QDateEdit* edit);                         // today
void setupTimeEdit(QTimeEdit* edit);                         // now; the seconds repeat the minute
void setWgtFontColor(QWidget* widget, bool enabled);         // black, or grey

// Fills the box with the files of one section of the media table; visible is the file's name behind the
// folder's short name, the extern value the device path. 0 when there is no such section.
int setupFilenameComboBox(QComboBox* box, const char* section);
// Null texts are empty; ignores a null box.
void addFilenameComboBoxItem(QComboBox* box, const char* shown, const char* path);
// Device path of an item; empty for an index out of range.
chString getFilenameComboBoxFullPath(QComboBox* box, int index);

// Tables without headers, grid, scroll bars and editing; one row at a time is selected.
void setupDialPlanList(QTableWidget* table);      // two columns over the whole width
void setupPicDiaSettingList(QTableWidget* table); // columns keep their widths
void setupSpeedDialList(QTableWidget* table);     // columns over the whole width
void setupVersionDetail(QTableWidget* table);     // two columns of 325 pixels
void setupWeatherWidget(QTableWidget* table);     // nothing can be selected
