#pragma once
// Input methods of the phone's digit keys: "2aB" (first letter of the text upper case), "ABC", "abc",
// "123" and "123_IP" ("*" is the point). User-interface thread.
#include "support/host/api.h"
#include <QString>

class QDialog;
class QLineEdit;
class QWidget;
class qSoftKeyBar;

// list: names separated by commas; the first is the current one.
HX_HOST_API void qInstallIME(QWidget* edit, const char* list);
HX_HOST_API void qUninstallIME(QWidget* edit);
// 1 when the edit has the method.
HX_HOST_API int qSetCurrentIME(QWidget* edit, const char* name);
// Empty for null and for a widget without input methods.
HX_HOST_API QString qGetCurrentIME(QWidget* edit);
HX_HOST_API void qShift2NextIME(QWidget* edit);
// The soft-key actions: step the method of the dialog's focus widget and show its name on the key
// "IME"; delete the character before the cursor of the focus widget.
HX_HOST_API void qOnIMEButtonClicked(QDialog* dialog, qSoftKeyBar* bar);
HX_HOST_API void qOnBackspaceClicked(QDialog* dialog);
// Ends input in the edit (a letter that is being chosen is taken) and returns its text.
HX_HOST_API QString qReturnLineEdit(QLineEdit* edit);
