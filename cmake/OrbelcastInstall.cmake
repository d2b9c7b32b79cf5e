# The installation, by component: "runtime" (the command line, the camera server, the library that hosts load), "qt" (the
# player, the widgets' library, the Designer plug-in), "qml" (the QML module), "python" (the Python package) and
# "development" (headers, CMake and pkg-config packages).
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Orbelcast")
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# A pkg-config file that is right wherever the files are put.
file(RELATIVE_PATH ORBELCAST_PREFIX_FROM_PC "/${pkgconfig_dir}" "/")
string(REGEX REPLACE "/$" "" ORBELCAST_PREFIX_FROM_PC "${ORBELCAST_PREFIX_FROM_PC}")
function(orbelcast_pkgconfig name)
  configure_file("${PROJECT_SOURCE_DIR}/packaging/${name}.pc.in" "${PROJECT_BINARY_DIR}/packaging/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/packaging/${name}.pc" DESTINATION "${pkgconfig_dir}" COMPONENT development)
endfunction()

# orbelcast_targets(COMPONENT): the CMake package's part for it, made of the targets that were installed for it.
function(orbelcast_targets component)
  install(EXPORT Orbelcast${component}Targets NAMESPACE Orbelcast:: DESTINATION "${package_dir}" COMPONENT development)
endfunction()

# ---- The control server: a header, and a library that hosts load without linking it -----------------------------------
add_library(orbelcast_host INTERFACE)
add_library(Orbelcast::Server ALIAS orbelcast_host)
set_target_properties(orbelcast_host PROPERTIES EXPORT_NAME Server)
target_include_directories(orbelcast_host INTERFACE "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
target_compile_features(orbelcast_host INTERFACE cxx_std_20)
target_link_libraries(orbelcast_host INTERFACE ${CMAKE_DL_LIBS})
install(TARGETS orbelcast_library orbelcast_host EXPORT OrbelcastServerTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
orbelcast_targets(Server)
orbelcast_pkgconfig(orbelcast)
install(FILES include/orbelcast/orbelcast.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orbelcast" COMPONENT development)
install(TARGETS orbelcast orbelcast-camera-server RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)

# Loaded from beside the other libraries, with the first clip.
install(TARGETS orbelcast_clips LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/orbelcast" COMPONENT runtime)

# Completion, of all programs: each shell looks a program's up by its name.
set(bash_dir "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install(FILES packaging/orbelcast.bash-completion RENAME orbelcast DESTINATION "${bash_dir}" COMPONENT runtime)
install(FILES packaging/orbelcast.bash-completion RENAME orbelcast-camera-server DESTINATION "${bash_dir}"
        COMPONENT runtime)
install(FILES packaging/_orbelcast DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" COMPONENT runtime)

# ---- C++ without a screen: a header over that one, and the library, linked ----------------------------------------------
add_library(orbelcast_headless INTERFACE)
add_library(Orbelcast::Headless ALIAS orbelcast_headless)
set_target_properties(orbelcast_headless PROPERTIES EXPORT_NAME Headless)
target_link_libraries(orbelcast_headless INTERFACE orbelcast_host "$<BUILD_INTERFACE:$<TARGET_FILE:orbelcast_library>>"
                      "$<INSTALL_INTERFACE:$<TARGET_FILE:Orbelcast::Library>>")
install(TARGETS orbelcast_headless EXPORT OrbelcastHeadlessTargets)
orbelcast_targets(Headless)
orbelcast_pkgconfig(orbelcast-headless)
install(FILES include/orbelcast/headless.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orbelcast" COMPONENT development)

# ---- The widgets -----------------------------------------------------------------------------------------------------
if(ORBELCAST_QT)
  install(TARGETS orbelcast_qt EXPORT OrbelcastQtTargets
          LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT qt NAMELINK_COMPONENT development
          INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
  orbelcast_targets(Qt)
  orbelcast_pkgconfig(orbelcast-qt)
  # Without the members that only programs built from the sources can use.
  foreach(header player_widget.h video_server_push_widget.h)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${host_headers}/orbelcast/${header}")
    file(READ "${host_headers}/orbelcast/${header}" text)
    string(REGEX REPLACE "  // ---- For programs that are built from the library's sources.*\n public Q_SLOTS:"
                         " public Q_SLOTS:" text "${text}")
    file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/packaging/include/${header}" CONTENT "${text}" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/packaging/include/${header}"
            DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orbelcast" COMPONENT development)
  endforeach()
  install(TARGETS orbelcast-player RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT qt)
  install(FILES packaging/orbelcast.bash-completion RENAME orbelcast-player DESTINATION "${bash_dir}" COMPONENT qt)
  install(FILES packaging/orbelcast-player.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT qt)
  orbelcast_install_icon(icons/orbelcast-player qt)
  if(TARGET orbelcast_designer)
    # Qt's own folder, for an installation below /usr; elsewhere QT_PLUGIN_PATH names the folder above it.
    install(TARGETS orbelcast_designer LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/qt6/plugins/designer" COMPONENT qt)
    if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
      set_target_properties(orbelcast_designer PROPERTIES INSTALL_RPATH "$ORIGIN/../../..")
    endif()
  endif()
endif()

# ---- The QML module --------------------------------------------------------------------------------------------------
if(TARGET orbelcast_qml)
  # Qt's own folder, for an installation below /usr; elsewhere QML_IMPORT_PATH names the folder above it.
  set(qml_dir "${CMAKE_INSTALL_LIBDIR}/qt6/qml/Orbelcast")
  install(TARGETS orbelcast_qml LIBRARY DESTINATION "${qml_dir}" COMPONENT qml)
  install(FILES "${PROJECT_BINARY_DIR}/qml/Orbelcast/qmldir" "${PROJECT_BINARY_DIR}/qml/Orbelcast/orbelcast_qml.qmltypes"
          DESTINATION "${qml_dir}" COMPONENT qml)
endif()

# ---- The Python package ----------------------------------------------------------------------------------------------
# The folder below /usr where Debian's Python looks; elsewhere PYTHONPATH names one, or pip installs the folder python/.
install(DIRECTORY python/orbelcast DESTINATION "lib/python3/dist-packages" COMPONENT python
        FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE)

# ---- The CMake package -----------------------------------------------------------------------------------------------
configure_package_config_file("${PROJECT_SOURCE_DIR}/packaging/OrbelcastConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/packaging/OrbelcastConfig.cmake"
                              INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/packaging/OrbelcastConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/packaging/OrbelcastConfig.cmake"
        "${PROJECT_BINARY_DIR}/packaging/OrbelcastConfigVersion.cmake"
        DESTINATION "${package_dir}" COMPONENT development)

# ---- Documents: in a package the licence is that of packaging/copyright ------------------------------------------------
set(doc_dir "${CMAKE_INSTALL_DATADIR}/doc/orbelcast")
install(FILES README.md CHANGELOG.md DESTINATION "${doc_dir}" COMPONENT development)
install(DIRECTORY docs examples DESTINATION "${doc_dir}" COMPONENT development)
if(NOT ORBELCAST_PACKAGES)
  install(FILES LICENSE DESTINATION "${doc_dir}" COMPONENT development)
endif()
