#pragma once
// Brings the pages of this room into a program that is linked from single rooms; the module has them at once.
void appletPages();
