#pragma once
// Somebody wants to call on that line: 0 to 3, -1 for the default one. The number is typed where numbers are
// typed. User-interface thread.
void lineSeize(int line);
