#pragma once
// For programs that are linked with --wrap=statvfs.

namespace kit {

// From now on every disk has this many bytes free; -1: as many as it has. Main thread.
void limitDisk(long long freeBytes);

} // namespace kit
