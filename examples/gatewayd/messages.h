// Requests as the API's messages: which label a change goes by, the document that such a message
// is, and what its schema says about it.
#ifndef HEARTH_EXAMPLES_GATEWAYD_MESSAGES_H
#define HEARTH_EXAMPLES_GATEWAYD_MESSAGES_H

#include <string>

#include "areas.h"

// The stem of the label of a read or a change: "WIFI_SSID_GET", "WIFI_SSID_UPDATE". Empty where the
// API has no message for it.
std::string stemOfRead(API_TYPE_T area, const std::vector<std::string>& segments);
std::string stemOfChange(API_TYPE_T area, const Wanted& wanted);

// Why the message of the request does not conform to its schema, given the database as it would be.
// Nothing is checked unless BEConfig::VALIDATION_ON_REQUEST says so.
hearth::Result<void> validateRequest(API_TYPE_T area, const Wanted& wanted, hearth::View changed,
                                     const std::string& sessionKey);

#endif
