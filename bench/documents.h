// The documents that the cases work on, generated: the same text in every run.
#ifndef HEARTH_BENCH_DOCUMENTS_H
#define HEARTH_BENCH_DOCUMENTS_H

#include <string>

namespace bench {

// A gateway's configuration, about 20 KB as a file: system, two radios with four networks each,
// addresses, leases and rules.
std::string gatewayText();

// A configuration with this many firewall rules, each about 200 bytes as a file: 5,000 are 1 MB.
std::string firewallText(int rules);

// A schema of about 130 KB that gatewayText() conforms to, with the limits of every value and many
// areas that this gateway does not have.
std::string gatewaySchemaText();

// The file of login records with this many addresses, "10.0.x.y".
std::string loginRecordsText(int records);
std::string loginAddress(int record);

}  // namespace bench

#endif
