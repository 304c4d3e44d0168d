#pragma once
// The pages of this room; see frame/pageClass.h.
void examplePages();
