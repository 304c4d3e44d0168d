#pragma once
// Brings the page of this room into a program that is linked from single rooms; the module has it at once.
void calibrationPages();
