# Debian packages, one per install component (cpack -G DEB in the build
# directory). Configure with -DCMAKE_INSTALL_PREFIX=/usr, as scripts/package.sh
# does, so that the libraries land in the multiarch library directory and the
# paths built into the host are those of the package.
set(TARN_PACKAGE_CONTACT "Tarn developers <tarn-dev@example.org>" CACHE STRING "Maintainer of the Debian packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarn)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${TARN_PACKAGE_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
# cpack asks dpkg for the architecture, which is the build machine's; a cross
# build's toolchain file names the device's.
if(TARN_DEBIAN_ARCH)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${TARN_DEBIAN_ARCH})
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL host module cloudsim)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Run-time dependencies come from the binaries. The module's need of the
# platform libraries is found in the build tree and answered by its
# dependency on the host package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_HOST_PACKAGE_NAME tarn-host)
set(CPACK_COMPONENT_HOST_DESCRIPTION "Stand-in device platform and command-line host
The platform's libraries with their headers, CMake package (TarnPlatform) and
pkg-config file (tarn-platform) for building content modules, and tarn-host,
which loads the content module and browses, sets and plays from a terminal.")
# tarn-host loads the module by default; building modules needs the
# platform's own dependencies as development packages.
set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS tarn-cb-airable)
set(CPACK_DEBIAN_HOST_PACKAGE_SUGGESTS "airable-cloudsim, qtbase5-dev, liblog4cplus-dev, pkg-config, bash-completion")

set(CPACK_DEBIAN_MODULE_PACKAGE_NAME tarn-cb-airable)
set(CPACK_COMPONENT_MODULE_DESCRIPTION "Cloud content module for the device platform
Shows the cloud's radios, podcasts and music services as one tree of
nodes, rows and values, installed in the platform's module directory.")
set(CPACK_COMPONENT_MODULE_DEPENDS host)

set(CPACK_DEBIAN_CLOUDSIM_PACKAGE_NAME airable-cloudsim)
set(CPACK_COMPONENT_CLOUDSIM_DESCRIPTION "Simulated cloud for the content module
Serves a sample catalogue on a local port, for user interface work and
tests without the real cloud.")

include(CPack)
