#pragma once
// What the pages that deal with the administrator's password agree upon. User-interface thread.
#include "support/text/chString.h"

class QLineEdit;

#define ADMIN_PASSWORD_FILE "/rundata/data/htpasswd"
#define ADMIN_USER "admin"

// The name of the input method that a password is typed with first: "123", "abc", "ABC" or "2aB".
chString adminInputMethod();
// Makes an edit of a password: hidden text, and the phone's input methods.
void adminSetupEdit(QLineEdit* edit);
