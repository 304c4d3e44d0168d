# What "cmake --install" puts where, in components: runtime is the phone, devel what a port is built with, signage
# the demonstration server. ./run builds what the first two need.
include(CMakePackageConfigHelpers)

set(HX_DATA ${CMAKE_INSTALL_DATADIR}/hxPhone)
set(HX_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/hxSetting)
set(HX_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/hxSetting)

# A library that ports link: it carries the version of its interface in its name.
function(hx_install_library name)
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    install(TARGETS ${name} EXPORT hxSettingTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT devel)
endfunction()

function(hx_install_program name)
    install(TARGETS ${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endfunction()

# The headers that a host needs: all of support/, and the doors through which the phone's own main program goes.
function(hx_install_package)
    install(CODE "set(HX_SOURCE \"${CMAKE_SOURCE_DIR}\")\nset(HX_HEADERS \"\${CMAKE_INSTALL_PREFIX}/${HX_HEADERS}\")"
            COMPONENT devel)
    install(SCRIPT ${CMAKE_SOURCE_DIR}/cmake/installHeaders.cmake COMPONENT devel)
    install(EXPORT hxSettingTargets NAMESPACE hxSetting:: DESTINATION ${HX_PACKAGE} COMPONENT devel)
    set(HX_ROOTFS ${HX_DATA}/rootfs)
    configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/hxSettingConfig.cmake.in
                                  ${CMAKE_BINARY_DIR}/hxSettingConfig.cmake
                                  INSTALL_DESTINATION ${HX_PACKAGE} PATH_VARS HX_ROOTFS)
    write_basic_package_version_file(${CMAKE_BINARY_DIR}/hxSettingConfigVersion.cmake
                                     COMPATIBILITY SameMajorVersion)
    install(FILES ${CMAKE_BINARY_DIR}/hxSettingConfig.cmake ${CMAKE_BINARY_DIR}/hxSettingConfigVersion.cmake
            DESTINATION ${HX_PACKAGE} COMPONENT devel)
endfunction()
