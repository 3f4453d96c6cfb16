// JSON patches (RFC 6902): several changes of one document as one. Of its operations there are add,
// remove, replace, move and test; copy is left out.
//
// Secrets can be set and removed. They cannot be read by a detour: a test of one is refused, for
// its answers would tell the secret letter by letter, and so is moving one out of its name.
#ifndef HEARTH_EXAMPLES_GATEWAYD_JSON_PATCH_H
#define HEARTH_EXAMPLES_GATEWAYD_JSON_PATCH_H

#include <hearth/kit.h>

#include <string>

struct PatchResult {
  int status;  // 200; 400 no patch, 403 a secret, 409 a step that fails, 413 too many steps
  std::string problem;  // for a person, without values; empty for 200
};

// Applies the steps to the document, one after the other, and stops at the first that fails: the
// document is then half changed, and to be thrown away. Values of the patch become part of the
// document.
PatchResult applyPatch(hearth::Edit document, hearth::View patch);

#endif
