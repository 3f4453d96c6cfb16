// PAIR makes the two rows of one API call, its request and its response, from one spelling of the
// name.
#ifndef HEARTH_LABELS_LABEL_PAIR_H
#define HEARTH_LABELS_LABEL_PAIR_H

#define PAIR(name) #name "_REQ", #name "_RESP"

#endif
