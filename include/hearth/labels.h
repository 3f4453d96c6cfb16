// The labels of every message of the API, one table per area.
//
// Each table is a sequence of pairs: an even row is a request ("..._REQ"), the next odd row its
// response ("..._RESP"). The row number is the message index that LocalDbCtrl and TreeMapObject
// take. The tables are constant: any thread may read them, and nobody frees anything.
#ifndef HEARTH_LABELS_H
#define HEARTH_LABELS_H

#include "hearth/export.h"

HEARTH_API extern const char* const GATEWAY_LBL[86];
HEARTH_API extern const char* const WIFI_LBL[80];
HEARTH_API extern const char* const NETWORK_LBL[88];
HEARTH_API extern const char* const SECURITY_LBL[112];
HEARTH_API extern const char* const SERVICE_LBL[174];
HEARTH_API extern const char* const MEDIASHARE_LBL[44];
HEARTH_API extern const char* const QOS_LBL[20];

// The label of message commT of area apiT (an API_TYPE_T).
// Failure: "unknown" for an area without a table and for an index past its table's end.
// Ownership: the text is constant and lives as long as the process.
// Threads: any.
HEARTH_API const char* COMM_LABEL(unsigned int apiT, unsigned int commT);

#endif
