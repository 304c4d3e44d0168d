#pragma once
// Mounting needs a world of its own: a test starts itself again in a mount namespace, where its folder
// becomes the whole device.
#include <QByteArray>

namespace ownWorld {

// This is the test that was started again.
bool isInside();
// True when it has been, and is done. Some machines allow nobody that.
bool hasRun();
// Inside, the folder is the whole device from now on.
void make(const QByteArray& folder);

} // namespace ownWorld
