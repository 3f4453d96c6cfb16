################################################################################
#
# hearth
#
################################################################################

# The source tree that this recipe lies in; hence no download and no hash file.
HEARTH_VERSION = 1.0.0
HEARTH_SITE = $(BR2_EXTERNAL_HEARTH_PATH)/../..
HEARTH_SITE_METHOD = local
HEARTH_INSTALL_STAGING = YES
HEARTH_DEPENDENCIES = host-pkgconf json-c pcre2
HEARTH_CONF_OPTS = \
	-DHEARTH_BUILD_TESTS=OFF \
	-DHEARTH_BUILD_EXAMPLES=OFF

$(eval $(cmake-package))
