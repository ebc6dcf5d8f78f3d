# What `cmake --install` puts where, in three components that become one
# package each: "host" (the stand-in platform's libraries, headers, CMake
# package and pkg-config file, the host library and tarn-host), "module"
# (the content module, in the platform's module directory) and "cloudsim"
# (the simulated cloud; its catalogue is built into the program).
include(CMakePackageConfigHelpers)

set(TARN_PLATFORM_LIBRARIES tarn_api tarn_api_play tarn_http_client)
set(TARN_INCLUDE_INSTALL_DIR ${CMAKE_INSTALL_INCLUDEDIR}/tarn)
set(TARN_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/TarnPlatform)

# Installed binaries find the project's libraries relative to themselves, so
# that an installed tree runs wherever it is unpacked.
file(RELATIVE_PATH tarn_bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH tarn_module_to_lib ${TARN_MODULE_INSTALL_FULL_DIR} ${CMAKE_INSTALL_FULL_LIBDIR})
string(REGEX REPLACE "/$" "" tarn_module_to_lib "${tarn_module_to_lib}")
set_target_properties(${TARN_PLATFORM_LIBRARIES} tarn_host PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(tarn-host PROPERTIES INSTALL_RPATH "$ORIGIN/${tarn_bin_to_lib}")
set_target_properties(tarn_cb_airable PROPERTIES INSTALL_RPATH "$ORIGIN/${tarn_module_to_lib}")

install(TARGETS ${TARN_PLATFORM_LIBRARIES} EXPORT TarnPlatformTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT host
        INCLUDES DESTINATION ${TARN_INCLUDE_INSTALL_DIR})
install(TARGETS tarn_host LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT host)
install(TARGETS tarn-host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT host)
install(TARGETS tarn_cb_airable LIBRARY DESTINATION ${TARN_MODULE_INSTALL_DIR} COMPONENT module)
if(TARGET airable-cloudsim)
  install(TARGETS airable-cloudsim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cloudsim)
endif()

# The headers include each other by bare name, so they share one directory.
file(GLOB TARN_PLATFORM_HEADERS CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/src/api/core/*.h ${PROJECT_SOURCE_DIR}/src/api/core/model/*.h
     ${PROJECT_SOURCE_DIR}/src/api/play/*.h ${PROJECT_SOURCE_DIR}/src/api/http/*.h)
install(FILES ${TARN_PLATFORM_HEADERS} DESTINATION ${TARN_INCLUDE_INSTALL_DIR} COMPONENT host)

install(EXPORT TarnPlatformTargets NAMESPACE TarnPlatform:: DESTINATION ${TARN_CMAKE_INSTALL_DIR}
        COMPONENT host)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TarnPlatformConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/TarnPlatformConfig.cmake
                              INSTALL_DESTINATION ${TARN_CMAKE_INSTALL_DIR})
# Until the version reaches 1, a minor version may break modules built
# against an older one.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TarnPlatformConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TarnPlatformConfig.cmake ${PROJECT_BINARY_DIR}/TarnPlatformConfigVersion.cmake
        DESTINATION ${TARN_CMAKE_INSTALL_DIR} COMPONENT host)

# The pkg-config file finds its prefix from where it lies, as the rest of
# the installed tree does.
file(RELATIVE_PATH tarn_pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" tarn_pc_to_prefix "${tarn_pc_to_prefix}")
file(RELATIVE_PATH tarn_pc_libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH tarn_pc_includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR}/tarn)
file(RELATIVE_PATH tarn_pc_moduledir ${CMAKE_INSTALL_PREFIX} ${TARN_MODULE_INSTALL_FULL_DIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/tarn-platform.pc.in ${PROJECT_BINARY_DIR}/tarn-platform.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tarn-platform.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT host)

install(FILES ${PROJECT_SOURCE_DIR}/packaging/tarn-host.bash-completion
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME tarn-host COMPONENT host)
