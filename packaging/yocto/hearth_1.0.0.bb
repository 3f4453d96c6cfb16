SUMMARY = "Utility library of a gateway's management backend"
DESCRIPTION = "Log, JSON documents by path, a database of JSON files, settings and login records for \
the daemon behind a router's web interface."
HOMEPAGE = "https://hearth.example.org/"
SECTION = "libs"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE;md5=2e3458d2d57ed596571e9dedf8e1cdc5"

# The source tree that this recipe lies in.
inherit cmake pkgconfig externalsrc bash-completion
EXTERNALSRC = "${THISDIR}/../.."
EXTERNALSRC_BUILD = "${WORKDIR}/build"

DEPENDS = "json-c libpcre2"

PACKAGECONFIG ??= ""
PACKAGECONFIG[tools] = "-DHEARTH_BUILD_TOOLS=ON,-DHEARTH_BUILD_TOOLS=OFF,cli11"

PACKAGES =+ "${PN}-tools"
FILES:${PN}-tools = "${bindir}/hearth ${datadir}/zsh ${datadir}/fish"
