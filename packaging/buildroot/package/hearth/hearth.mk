################################################################################
#
# hearth
#
################################################################################

# The source tree that this recipe lies in; hence no download.
HEARTH_VERSION = 1.0.0
HEARTH_SITE = $(BR2_EXTERNAL_HEARTH_PATH)/../..
HEARTH_SITE_METHOD = local
HEARTH_OVERRIDE_SRCDIR_RSYNC_EXCLUSIONS = --exclude='/build*'
HEARTH_LICENSE = MIT
HEARTH_LICENSE_FILES = LICENSE
HEARTH_INSTALL_STAGING = YES
HEARTH_DEPENDENCIES = host-pkgconf json-c pcre2

ifeq ($(BR2_PACKAGE_HEARTH_COMMAND),y)
HEARTH_DEPENDENCIES += cli11
HEARTH_CONF_OPTS += -DHEARTH_BUILD_TOOLS=ON
else
HEARTH_CONF_OPTS += -DHEARTH_BUILD_TOOLS=OFF
endif

$(eval $(cmake-package))
