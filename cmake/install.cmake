# cmake --install: dcsim and its data, the library, the simulated phone, their headers in one include root, and a package
# whose targets an integrator's tests link (display_control::simulator, display_control::phone). It can be moved.
set(exported
    display_control
    display_control_alad
    display_control_calibration
    display_control_color
    display_control_interfaces
    display_control_library_settings
    display_control_phone
    display_control_platform
    display_control_settings
    display_control_simulator)
foreach(target IN LISTS exported)
    string(REPLACE "display_control_" "" name ${target})
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
endforeach()

set(headers include/display_control)
set(package lib/cmake/display_control)
install(TARGETS dcsim DESTINATION bin)
install(TARGETS ${exported} EXPORT display_control
    ARCHIVE DESTINATION lib LIBRARY DESTINATION lib INCLUDES DESTINATION ${headers})
install(DIRECTORY alad calibration color service simulator DESTINATION ${headers} FILES_MATCHING PATTERN "*.h")
install(FILES phone/DisplayControl.h DESTINATION ${headers}/phone)
install(DIRECTORY interfaces/ platform/include/ DESTINATION ${headers} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY data DESTINATION ${DISPLAY_CONTROL_SHARE})
install(FILES LICENSE DESTINATION ${DISPLAY_CONTROL_SHARE})

install(EXPORT display_control NAMESPACE display_control:: FILE targets.cmake DESTINATION ${package})
include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/display_control-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES cmake/display_control-config.cmake ${PROJECT_BINARY_DIR}/display_control-config-version.cmake
    DESTINATION ${package})
