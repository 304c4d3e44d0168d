#pragma once
// What the name of a file says. Any thread.
#include <initializer_list>

// "photo.jpg" is one of ".JPG". upperCase: extensions as pathGetFileExtensionPos would tell them.
bool hasExtension(const char* path, std::initializer_list<const char*> upperCase);
