// The labels of the qos area.
#include "hearth/labels.h"
#include "labels/label_pair.h"

const char* const QOS_LBL[] = {
    PAIR(QOS_CONFIGURATION_LIST), PAIR(QOS_CONFIGURATION_UPDATE), PAIR(QOS_RULES_CREATE),
    PAIR(QOS_RULES_CHANGE),       PAIR(QOS_RULES_DELETE_ONE),     PAIR(QOS_RULES_DELETE_ALL),
    PAIR(QOS_SERVICE_LIST),       PAIR(QOS_SERVICE_INUSE),        PAIR(QOS_IPTV_GET),
    PAIR(QOS_IPTV_UPDATE),
};
