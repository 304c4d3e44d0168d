#pragma once
// The menus that pages write: "doorphonedata.xml" and "ipcameradata.xml". User-interface thread.

class xmlElement;
class xmlFile;

// Draws the menu again from its file of "/rundata/data/".
void generatedMenuRefresh(const char* file);
// The list of that name in the file; null, and a trace line, when it cannot be read or has none.
const xmlElement* generatedMenuLoad(xmlFile& document, const char* file, const char* list);
