#pragma once

class QWidget;

// Puts the English texts of a form, its labels, buttons and choices, into the present language. A text that
// the page has set since stays as it is. User-interface thread.
void translateTexts(QWidget* form);
