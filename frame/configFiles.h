#pragma once
// The phone's configuration and data files that more than one page knows.

#define SYSTEM_INI "/rundata/config/system.ini"
#define USER_INI "/rundata/config/user/user.ini"
#define VERSION_INI "/phone/resource/version.ini"
#define SIP_ACCOUNT_FILE "/rundata/config/user/voip/sipAccount" // then the index and ".cfg"
#define MEDIA_FILE_XML "/phone/resource/mediafile.xml"
#define REMOTE_BOOK_XML "/rundata/data/remotebook.xml"
#define STOCK_DATA_XML "/rundata/data/stockData.xml"

enum : unsigned { STOCK_DATA_LIMIT = 64 * 1024 }; // bytes of it; ten stocks have half a thousand
