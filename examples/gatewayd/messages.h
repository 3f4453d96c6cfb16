// Requests as the API's messages: which label a change goes by, the document that such a message
// is, and what the schemas say about it.
#ifndef HEARTH_EXAMPLES_GATEWAYD_MESSAGES_H
#define HEARTH_EXAMPLES_GATEWAYD_MESSAGES_H

#include <string>

#include "examples/gatewayd/areas.h"

// The stem of the label of a read or a change: "WIFI_SSID_GET", "WIFI_SSID_UPDATE". Empty where the
// API has no message for it.
std::string stemOfRead(API_TYPE_T area, const std::vector<std::string>& segments);
std::string stemOfChange(API_TYPE_T area, const Change& change);

// Why the changed database may not be: the message of the request does not conform to its schema,
// or the database does not to the area's. Empty when it may be. Nothing is checked unless
// BEConfig::VALIDATION_ON_REQUEST says so.
std::string findRefusal(API_TYPE_T area, const Change& change, const TreeMapObject& changed,
                        const std::string& sessionKey);

// True when the document conforms to the schema of the message with this label, or when the setting
// does not ask for the check.
bool conforms(int32_t setting, TreeMapObject& document, API_TYPE_T area, const char* label);

#endif
