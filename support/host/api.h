#pragma once
// Marks what crosses the boundary between the module and its host.
#define HX_HOST_API __attribute__((visibility("default")))
#define HX_MODULE_API __attribute__((visibility("default")))

// Names a text that is translated later, where it stands in a table: the language files must hold it.
#define HX_TR(key) key
// Of a key with several meanings; note tells which one, as for Translate().
#define HX_TR_NOTE(key, note) key
// Full device path of a picture of the theme.
#define HX_THEME(name) "/phone/resource/theme/default/bmp/" name
