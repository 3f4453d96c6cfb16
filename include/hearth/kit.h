// The layer over the contract that backends are written with, in C++17: owners, a lock and a change
// that end by themselves, and an answer that says why not. Header-only: it adds nothing to the
// library, and a program may use both. Includes the contract too. docs/kit.md shows it by task.
#ifndef HEARTH_KIT_H
#define HEARTH_KIT_H

#include "hearth/hearth.h"
#include "hearth/kit/area.h"
#include "hearth/kit/area_lock.h"
#include "hearth/kit/change.h"
#include "hearth/kit/handle.h"
#include "hearth/kit/parse.h"
#include "hearth/kit/read.h"
#include "hearth/kit/render.h"
#include "hearth/kit/result.h"
#include "hearth/kit/secrets.h"
#include "hearth/kit/session.h"
#include "hearth/kit/text.h"
#include "hearth/kit/validate.h"
#include "hearth/kit/walk.h"
#include "hearth/kit/write.h"

#endif
