// From a body to a value, and from what went wrong to a status.
#ifndef HEARTH_EXAMPLES_GATEWAYD_BODIES_H
#define HEARTH_EXAMPLES_GATEWAYD_BODIES_H

#include <hearth/kit.h>

#include <string>

// The JSON value of a body. Failure: also for a text with a NUL in it, even an escaped one: half of
// the programs behind a gateway would read half of it.
hearth::Result<hearth::Value> parseBody(const std::string& body);

// The status of HTTP that answers a failure of the kit.
int statusOf(hearth::Fault fault);

#endif
