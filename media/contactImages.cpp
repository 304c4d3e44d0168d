#include "media/contactImages.h"
#include "support/file/path.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"
#include <cstring>
#include <vector>

namespace {

const char* const kFile = "/rundata/data/contactData.xml";
const char* const kImage = "sImagePath";
const char* const kNoImage = "/phone/resource/contact-image/icon_contact.png";

bool loadContacts(xmlFile& file)
{
    if (pathFileExist(kFile) && file.LoadFromFile(kFile))
        return true;
    nuxTrace(TRACE_NOTE, "Fail to load xml file [%s]", kFile);
    return false;
}

// The contacts of a group, whatever their elements are called.
void appendContacts(xmlElement* group, const chString& path, std::vector<xmlElement*>& contacts)
{
    for (xmlElement* contact = group->GetFirstChildElement(); contact; contact = xmlGetNextElement(contact)) {
        if (contact->GetAttributeValue(kImage) == path.GetText())
            contacts.push_back(contact);
    }
}

std::vector<xmlElement*> contactsWith(const xmlFile& file, const chString& path)
{
    std::vector<xmlElement*> contacts;
    const xmlElement* root = xmlFindElementFromRoot(&file, "contactData");
    for (xmlElement* group = root ? root->FindChildElement("group") : nullptr; group;
         group = xmlGetNextElement(group)) {
        if (strcmp(group->GetName(), "group") == 0)
            appendContacts(group, path, contacts);
    }
    return contacts;
}

} // namespace

bool IsContactImageUse(const chString& path)
{
    xmlFile file;
    return loadContacts(file) && !contactsWith(file, path).empty();
}

int ClearUseImage(const chString& path)
{
    xmlFile file;
    if (!loadContacts(file))
        return 0;
    for (xmlElement* contact : contactsWith(file, path))
        contact->SetAttributeValue(kImage, kNoImage);
    return file.SaveToFile(kFile);
}
