// A short name for what a document says: 16 hexadecimal digits that tell whether a document is
// still the one that was seen before. They are 64-bit FNV-1a over the document's text on one line,
// so that blanks and line ends make no difference. They guard against accidents, not against an
// attacker.
#ifndef HEARTH_TOOLS_DOCUMENT_FINGERPRINT_H
#define HEARTH_TOOLS_DOCUMENT_FINGERPRINT_H

#include <string>
#include <string_view>

#include "hearth/kit/handle.h"

namespace hearth::tool {

[[nodiscard]] std::string fingerprintOf(View document);

// The same of a file's text; of its bytes where the text is no JSON.
[[nodiscard]] std::string fingerprintOfText(std::string_view text);

}  // namespace hearth::tool

#endif
