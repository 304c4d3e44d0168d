#include "host/desktop/contactBook.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
#include <cstdlib>
#include <cstring>

namespace {

const char* const kFile = "/rundata/data/contactData.xml";

bool isNamed(const xmlElement* element, const char* name)
{
    return strcmp(element->GetName(), name) == 0;
}

QString valueOf(xmlElement* element, const char* attribute)
{
    return toQString(element->GetAttributeValue(attribute).GetString());
}

void appendGroup(xmlElement* group, QList<xmlElement*>& contacts)
{
    for (xmlElement* element = group->GetFirstChildElement(); element; element = xmlGetNextElement(element)) {
        if (isNamed(element, "contact"))
            contacts.append(element);
    }
}

QList<xmlElement*> contactsOf(const xmlFile& file)
{
    QList<xmlElement*> contacts;
    const xmlElement* root = xmlFindElementFromRoot(&file, "contactData");
    xmlElement* group = root ? root->GetFirstChildElement() : nullptr;
    for (; group; group = xmlGetNextElement(group)) {
        if (isNamed(group, "group"))
            appendGroup(group, contacts);
    }
    return contacts;
}

tagContact contactOf(xmlElement* element, int index)
{
    tagContact contact;
    contact.strName = valueOf(element, "name");
    contact.strNumber = valueOf(element, "number");
    contact.strPicture = valueOf(element, "sImagePath");
    const QString line = valueOf(element, "line");
    contact.nLine = line.isEmpty() ? -1 : line.toInt();
    contact.nIndex = index;
    return contact;
}

// Where it was, if it still says the same there; else wherever it says the same.
xmlElement* find(const QList<xmlElement*>& elements, const tagContact& contact)
{
    xmlElement* there = elements.value(contact.nIndex);
    if (there && contactOf(there, 0) == contact)
        return there;
    for (xmlElement* element : elements) {
        if (contact.nIndex >= 0 && contactOf(element, 0) == contact)
            return element;
    }
    return nullptr;
}

xmlElement* child(xmlBaseNode* parent, const char* name)
{
    xmlElement* found = parent->FindChildElement(name);
    return found ? found : parent->AddChildElement(name);
}

xmlElement* newContact(xmlFile& file)
{
    xmlElement* group = child(child(&file, "contactData"), "group");
    if (group->FindAttributeValue("name") == nullptr)
        group->SetAttributeValue("name", "Contacts");
    return group->AddChildElement("contact");
}

void write(xmlElement* element, const tagContact& contact)
{
    element->SetAttributeValue("name", fromQString(contact.strName));
    element->SetAttributeValue("number", fromQString(contact.strNumber));
    element->SetAttributeValue("line", QByteArray::number(contact.nLine).constData());
    element->SetAttributeValue("sImagePath", fromQString(contact.strPicture));
}

} // namespace

QList<tagContact> contactsRead()
{
    const xmlFile file(kFile);
    QList<tagContact> contacts;
    for (xmlElement* element : contactsOf(file))
        contacts.append(contactOf(element, int(contacts.size())));
    return contacts;
}

tagContact contactOfNumber(const QList<tagContact>& contacts, const QString& number)
{
    for (const tagContact& contact : contacts) {
        if (contact.strNumber == number)
            return contact;
    }
    return {};
}

int contactStore(const tagContact& old, const tagContact& contact)
{
    xmlFile file(kFile);
    xmlElement* element = find(contactsOf(file), old);
    write(element ? element : newContact(file), contact);
    return file.SaveToFile(kFile);
}

int contactRemove(const tagContact& contact)
{
    xmlFile file(kFile);
    xmlElement* element = find(contactsOf(file), contact);
    if (!element)
        return 1;
    return element->GetParent()->RemoveChild(element) && file.SaveToFile(kFile);
}
