#pragma once
// The items of a generated menu, read from their file when they are first asked for, and again when a page
// has told of a change. User-interface thread.
#include "host/managers/generatedMenu.h"
#include "support/host/message.h"
#include "support/xml/xmlFile.h"
#include <QList>
#include <memory>
#include <vector>

template <class Item>
class DeviceItems : public chMsgProcesser
{
public:
    // read: fills an item from its element, the index-th; false for an element that is none.
    using Read = bool (*)(Item& item, xmlElement* element, int index);
    // file: of "/rundata/data/"; change: what a page tells when it has written the file.
    DeviceItems(const char* file, const char* list, CONFIG_CHANGED change, Read read)
        : m_szFile(file), m_szList(list), m_eChange(change), m_read(read)
    {
    }

    const QList<Item*>& Items()
    {
        if (!m_bRead)
            readFile();
        return m_list;
    }
    void Refresh()
    {
        readFile();
        generatedMenuRefresh(m_szFile);
    }
    int TryThreadMessage(msgObject& msg) override
    {
        if (msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == m_eChange)
            Refresh();
        return 0;
    }

private:
    // A file that cannot be read leaves the items as they were.
    void readFile()
    {
        m_bRead = true;
        xmlFile file;
        const xmlElement* list = generatedMenuLoad(file, m_szFile, m_szList);
        if (!list)
            return;
        m_list.clear();
        m_items.clear();
        int index = 0;
        for (xmlElement* element = list->GetFirstChildElement(); element;
             element = xmlGetNextElement(element)) {
            auto item = std::make_unique<Item>();
            if (!m_read(*item, element, index))
                continue;
            ++index;
            m_list.append(item.get());
            m_items.push_back(std::move(item));
        }
    }

    const char* m_szFile;
    const char* m_szList;
    CONFIG_CHANGED m_eChange;
    Read m_read;
    bool m_bRead = false;
    QList<Item*> m_list;
    std::vector<std::unique_ptr<Item>> m_items;
};
