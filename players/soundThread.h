#pragma once
// Sound that is late is a gap that is heard: on a busy machine its threads come before all others, where the
// system lets them.

// The calling thread, until it is told otherwise.
void soundThreadComesFirst();
// It goes on with something else.
void soundThreadIsAsOthers();
