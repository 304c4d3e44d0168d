#pragma once
// Searches the phone's copy of the LDAP directory, "/rundata/data/ldap.xml", which provisioning brings.
#include "host/desktop/directorySearch.h"

class ldapCopySearch : public directorySearch
{
public:
    void search(const QString& text, Done done) override;
    void stop() override {}
};
