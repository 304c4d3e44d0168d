#pragma once
// Fills a player with what "/phone/resource/screenview.xml" names. False when there is nothing, which the
// user is told with a message of non-zero, by a box that closes by itself. User-interface thread.

class photoAssistant;
class videoAssistant;

bool loadPhotos(photoAssistant& player, int bMessage);
// False also when there is no player process.
bool loadFilms(videoAssistant& player, int bMessage);
