# Debian packages, made by CPack of what OrbelcastInstall.cmake installs: a component is a package. tools/make_packages
# does all of it.
set(ORBELCAST_MAINTAINER "The Orbelcast authors <orbelcast@packages.example.org>" CACHE STRING
    "Who maintains the packages: name and mail address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orbelcast)
set(CPACK_PACKAGE_VENDOR "The Orbelcast authors")
set(CPACK_PACKAGE_CONTACT "${ORBELCAST_MAINTAINER}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
    WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime qt python development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Files of a package besides its component's: its name's folder of documents, and overrides where lintian is wrong.
function(orbelcast_package component name)
  install(FILES "${PROJECT_SOURCE_DIR}/packaging/copyright" "${PROJECT_BINARY_DIR}/packaging/changelog.gz"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component})
  if(EXISTS "${PROJECT_SOURCE_DIR}/packaging/${name}.lintian-overrides")
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/${name}.lintian-overrides" RENAME "${name}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT ${component})
  endif()
endfunction()

# The changelog as Debian has it.
configure_file("${PROJECT_SOURCE_DIR}/packaging/changelog.in" "${PROJECT_BINARY_DIR}/packaging/changelog" @ONLY)
execute_process(COMMAND gzip -9nc "${PROJECT_BINARY_DIR}/packaging/changelog"
                OUTPUT_FILE "${PROJECT_BINARY_DIR}/packaging/changelog.gz" COMMAND_ERROR_IS_FATAL ANY)

file(WRITE "${PROJECT_BINARY_DIR}/packaging/triggers" "activate-noawait ldconfig\n")

# ---- orbelcast -------------------------------------------------------------------------------------------------------
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME orbelcast)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION video)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/packaging/triggers")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "orbelcast-qt (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Motion-JPEG cameras on the command line
Watches Motion-JPEG cameras without a screen: pictures, clips, events, motion,
and scripts that drive all of it; asks a camera server what it is.

Holds the command line orbelcast, a camera server to try things against, and
the library that host applications of any language load.")
orbelcast_package(runtime orbelcast)

# ---- orbelcast-qt ----------------------------------------------------------------------------------------------------
set(CPACK_DEBIAN_QT_PACKAGE_NAME orbelcast-qt)
set(CPACK_DEBIAN_QT_PACKAGE_SECTION video)
set(CPACK_DEBIAN_QT_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_QT_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_QT_DESCRIPTION "Motion-JPEG cameras on the desktop
A player for a camera server's cameras, live and from their archive, with
snapshots, clips, alerts, inputs and outputs, and several cameras together.

Holds the player, the library of widgets that Qt applications are built with,
and the plug-in by which Qt Designer and loaded forms know them.")
set(CPACK_DEBIAN_QT_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/packaging/shlibs"
    "${PROJECT_BINARY_DIR}/packaging/triggers")
file(WRITE "${PROJECT_BINARY_DIR}/packaging/shlibs"
     "liborbelcast-qt ${PROJECT_VERSION_MAJOR} orbelcast-qt (>= ${PROJECT_VERSION})\n")
orbelcast_package(qt orbelcast-qt)

# ---- orbelcast-qml ---------------------------------------------------------------------------------------------------
if(TARGET orbelcast_qml)
  list(APPEND CPACK_COMPONENTS_ALL qml)
  set(CPACK_DEBIAN_QML_PACKAGE_NAME orbelcast-qml)
  set(CPACK_DEBIAN_QML_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_QML_PACKAGE_SHLIBDEPS ON)
  # The modules that a scene imports with it, as Debian's own module does not say.
  set(CPACK_DEBIAN_QML_PACKAGE_DEPENDS
      "qml6-module-qtquick, qml6-module-qtqml, qml6-module-qtqml-models, qml6-module-qtqml-workerscript")
  set(CPACK_DEBIAN_QML_PACKAGE_SUGGESTS "qml-qt6, qml6-module-qtquick-window")
  set(CPACK_DEBIAN_QML_DESCRIPTION "Motion-JPEG cameras in QML scenes
The QML module Orbelcast: its type VideoServerPush shows one camera in a scene,
with motion detection and events, drawn by the scene graph. No widgets.")
  orbelcast_package(qml orbelcast-qml)
endif()

# ---- python3-orbelcast -----------------------------------------------------------------------------------------------
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-orbelcast)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "orbelcast (>= ${PROJECT_VERSION}), python3 (>= 3.9)")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-numpy, python3-pil")
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "Motion-JPEG cameras in Python
Frames of a camera server's cameras as bytes, numpy arrays and images, motion
and other events, alone and inside asyncio, with types for editors and mypy.")
orbelcast_package(python python3-orbelcast)

# ---- orbelcast-dev ---------------------------------------------------------------------------------------------------
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME orbelcast-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "orbelcast (= ${PROJECT_VERSION}), orbelcast-qt (= ${PROJECT_VERSION}), qt6-base-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, pkg-config, qt6-tools-dev-tools")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Motion-JPEG cameras in applications, development files
The headers of the control library and of the Qt widgets, and what CMake and
pkg-config need to find them.")
orbelcast_package(development orbelcast-dev)

include(CPack)
