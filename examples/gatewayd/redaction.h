// Secrets stay on the gateway: a client may set them and never reads them back.
#ifndef HEARTH_EXAMPLES_GATEWAYD_REDACTION_H
#define HEARTH_EXAMPLES_GATEWAYD_REDACTION_H

#include <json-c/json.h>

#include <string>

// True for the name of a member that holds a secret.
bool isSecret(const std::string& name);

// Takes every secret out of a value.
void removeSecrets(json_object* value);

#endif
