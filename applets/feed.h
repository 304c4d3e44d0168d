#pragma once
// What weather and stock do alike with their feeds: where one is, and what its answers may be. User-interface
// thread.
#include "support/host/http.h"
#include "support/text/chString.h"
#include "support/xml/xmlFile.h"
#include <QString>

// Bytes. A whole answer has about two thousand: one of the largest is read within a frame, a longer one fails
// as a transfer. A picture is at most an icon.
enum : long long { FEED_ANSWER_LIMIT = 64 * 1024, FEED_PICTURE_LIMIT = 1024 * 1024 };
enum : int { FEED_PICTURE_MS = 8000 }; // from the first byte sent to the last one received

enum FEED_SOURCE { FEED_SOURCE_FOUND, FEED_SOURCE_NO_FILE, FEED_SOURCE_NO_TITLE };

// The attribute "address" of the first child of the root whose "title" that is. element: the children's name;
// null for any. address: as it was unless found. FEED_SOURCE_NO_FILE also for another root.
FEED_SOURCE feedSourceAddress(const char* file, const char* root, const char* element, const char* title,
                              chString& address);

// The name of the public feed, in the files that name feeds and in the key files.
#define FEED_PUBLIC_TITLE "Google"

// The signage server while signage is enabled; else what "strSource" says in that section of the user's key
// file, where nothing is stored the public feed.
enum FEED_KIND { FEED_KIND_NONE, FEED_KIND_PUBLIC, FEED_KIND_SIGNAGE };
FEED_KIND feedKind(const char* section);

// What the signage server's service ("weather", "stock") is asked for. key: the name of the value in the
// request. Nothing is escaped.
chString feedServiceAddress(const char* service, const char* key, const chString& value);

// The template with each placeholder replaced by the value as it stands: what an address means by it is its
// server's business.
chString feedFillIn(const chString& address, const char* placeholder, const chString& value);

// Posts the action, whose local file is one of that folder ("/tmp/"), as an answer that may be lost with the
// power. A name that leads anywhere else, or that no file can have, is never shortened into one that fits:
// such a transfer fails as one from a server that does not answer. A link in the file's place goes.
void feedPost(HttpAction& action, const char* folder, long long limit);

// What a feed says, for one line of a label: at most so many letters, and blanks for what breaks a line, has
// no shape or turns the direction of what stands behind it.
QString feedShownText(const QString& text, qsizetype limit);

// Reads an answer; 0 as for a missing file when it is longer than an answer may be, and when it is a link.
int feedLoadAnswer(xmlFile& answer, const char* path);
// Whether the answer is there; takes it away. A name that feedPost() would refuse is never there and stays.
int feedAnswerIsThere(const chString& path, const char* folder);
void feedRemoveAnswer(const chString& path, const char* folder);
