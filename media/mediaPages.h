#pragma once
// The pages of the media room. A program that links the room as an archive calls this so that the linker
// takes them.
void mediaPages();
