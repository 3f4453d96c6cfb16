SUMMARY = "Utility library of a gateway's management backend"
DESCRIPTION = "Log, JSON documents by path, a database of JSON files, settings and login records for \
the daemon behind a router's web interface."
SECTION = "libs"
# The source states no license; CLOSED is the value for that.
LICENSE = "CLOSED"

# The source tree that this recipe lies in.
inherit cmake pkgconfig externalsrc
EXTERNALSRC = "${THISDIR}/../.."
EXTERNALSRC_BUILD = "${WORKDIR}/build"

DEPENDS = "json-c libpcre2"

EXTRA_OECMAKE = "-DHEARTH_BUILD_TESTS=OFF -DHEARTH_BUILD_EXAMPLES=OFF"

PACKAGECONFIG ??= ""
PACKAGECONFIG[tools] = "-DHEARTH_BUILD_TOOLS=ON,-DHEARTH_BUILD_TOOLS=OFF,cli11"

PACKAGES =+ "${PN}-tools"
FILES:${PN}-tools = "${bindir}/hearth"
