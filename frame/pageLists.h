#pragma once
// Pages that exist once for each index. They live until the process ends. User-interface thread.
class QDialog;

// The page of one SIP account, or one door phone; made at the first call. bShow non-zero shows it.
// Null when no room brought that page.
QDialog* PopupAccountDialog(int index, int bShow);
QDialog* PopupDoorPhoneDialog(int index, int bShow);
