#pragma once
class QPushButton;

// Makes the button a small sign of one account: its identity and its state. index: 0 to 3.
// User-interface thread.
void setupAccountButton(QPushButton* button, int index);
