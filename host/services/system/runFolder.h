#pragma once
// The folder of what lives as long as the phone's processes: their sockets and the number they share. It is
// "/rundata/run"; where that cannot be written, the phone makes one elsewhere and names it to its players by
// the environment variable "HX_RUN_FOLDER". For their user alone. Any thread, but for Replace.
#include <string>

namespace runFolder {

// Machine path.
std::string path();
// Makes the folder where it is missing, and closes one that is there to other users.
bool make();
// True when files can be made in it.
bool isWritable();
// Puts a temporary folder in its place. Before there are threads.
bool replace();
// Removes what replace() has made.
void removeReplacement();

} // namespace runFolder
