#pragma once
// What a qRegistryNotify watches: the sections, with the values they had when they were last told of. A
// child of the notifier, on its thread.
#include "host/services/system/folderWatch.h"
#include "support/host/registry.h"
#include <map>
#include <string>
#include <vector>

class RegistryWatch : public QObject
{
    Q_OBJECT
public:
    explicit RegistryWatch(qRegistryNotify* owner);
    static RegistryWatch* Of(qRegistryNotify* owner);
    void Monitor(const char* file, const char* section);
    // Compares every section with what it was, and tells the owner of those that changed.
    void Check();

private:
    using Values = std::map<std::string, std::string>;
    struct Section
    {
        HREGISTRY handle;
        Values values;
    };
    qRegistryNotify* m_pOwner;
    folderWatch m_folders;
    std::vector<Section> m_sections;
};
