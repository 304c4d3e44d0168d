#pragma once
// Certificates by an authority of the test.
#include <QString>

// In the folder: "cafile.pem" of the authority and "agent.pem" of the phone, as the agent wants them, and
// "server.pem" with "server.key" of a server of that name; days: how long that one is good, -1: it was. False
// when that does not succeed.
bool makeCertificates(const QString& folder, const QString& name, int days = 2);
