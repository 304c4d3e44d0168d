#pragma once

// Tells the service manager that started the phone that it is up: "READY=1" to the socket that the
// environment variable "NOTIFY_SOCKET" names, as service managers expect it. Without one, nothing. Never
// waits.
void readyNoticeSend();
