#pragma once
// What host and module share of the signage client: where its frame shows. User-interface thread.

enum E_NDECKWINDOW_TYPE {
    NDECK_WINDOW_NONE = 0,
    NDECK_WINDOW_IDLE = 1, // any key release, or a press outside a button, ends the show
    NDECK_WINDOW_PAGE = 2, // opened by a person; holds the screen saver off
    NDECK_WINDOW_TALK = 3  // shown during a call
};
