// Everything that hearth offers. A program that uses one family only includes that family's header.
#ifndef HEARTH_HEARTH_H
#define HEARTH_HEARTH_H

#include "hearth/be_config.h"
#include "hearth/be_login_record.h"
#include "hearth/json_data.h"
#include "hearth/labels.h"
#include "hearth/local_db_ctrl.h"
#include "hearth/logger.h"
#include "hearth/tree_map_object.h"
#include "hearth/version.h"
#include "hearth/violations.h"

#endif
