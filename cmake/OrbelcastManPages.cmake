# The manual pages, made from the programs' --help as soon as those are built. Needs Debian's help2man; not made in a
# sanitizer's build.
find_program(HELP2MAN help2man)
if(NOT HELP2MAN OR ORBELCAST_SANITIZE)
  message(STATUS "The manual pages: help2man is not installed, or there is a sanitizer; left out")
  return()
endif()

set(programs orbelcast orbelcast-camera-server)
if(ORBELCAST_QT)
  list(APPEND programs orbelcast-player)
endif()
set(man_pages "${PROJECT_BINARY_DIR}/packaging/man")
file(GLOB texts CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/packaging/man/*")
list(TRANSFORM programs REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE program_files)
add_custom_command(OUTPUT "${man_pages}/orbelcast.1.gz"
                   COMMAND "${PROJECT_SOURCE_DIR}/packaging/make_man_pages" "${man_pages}" "${PROJECT_VERSION}"
                           ${program_files}
                   DEPENDS ${programs} ${texts} "${PROJECT_SOURCE_DIR}/packaging/make_man_pages" VERBATIM)
add_custom_target(man_pages ALL DEPENDS "${man_pages}/orbelcast.1.gz")

install(DIRECTORY "${man_pages}/" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT runtime
        FILES_MATCHING PATTERN "*.1.gz" PATTERN "orbelcast-player.1.gz" EXCLUDE)
install(FILES "${man_pages}/orbelcast.conf.5.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man5" COMPONENT runtime)
if(ORBELCAST_QT)
  install(FILES "${man_pages}/orbelcast-player.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT qt)
endif()
