#pragma once
// The message key. User-interface thread.

// Dials the voice mail of the first account that is registered, has a number for it and new messages; without
// one it opens the page "Voice Mail". Always 0.
int DoVoiceMessageDialOut();
