# The installation, by component: "runtime" (the command line, the camera server, the library that hosts load), "qt" (the
# player, the widgets' library, the Designer plug-in) and "development" (headers, CMake and pkg-config packages).
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

# ---- The widgets -----------------------------------------------------------------------------------------------------
if(ORBELCAST_QT)
  install(TARGETS orbelcast_qt EXPORT OrbelcastQtTargets
          LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT qt NAMELINK_COMPONENT development
          INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
  orbelcast_targets(Qt)
  orbelcast_pkgconfig(orbelcast-qt)
  install(FILES include/orbelcast/player_widget.h include/orbelcast/video_server_push_widget.h
          DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orbelcast" COMPONENT development)
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
