# A room is a folder below src/ and one target, orbelcast_NAME ("/" becomes "_").
#
# A room's headers are reached as "room/header.h" through a folder of the build tree that holds nothing but that room, so
# a target finds exactly the rooms that it links: an include through a door that does not exist fails to compile.

# orbelcast_room(NAME [DOORS room...] [LIBRARIES target...])
#   DOORS      rooms whose headers this one may include
#   LIBRARIES  the outside libraries of an adapter; its users do not see them
function(orbelcast_room name)
  cmake_parse_arguments(ROOM "" "" "DOORS;LIBRARIES" ${ARGN})
  string(REPLACE "/" "_" suffix "${name}")
  set(target "orbelcast_${suffix}")
  set(folder "${PROJECT_SOURCE_DIR}/src/${name}")

  set(door "${PROJECT_BINARY_DIR}/doors/${suffix}")
  get_filename_component(door_parent "${door}/${name}" DIRECTORY)
  file(MAKE_DIRECTORY "${door_parent}")
  file(CREATE_LINK "${folder}" "${door}/${name}" SYMBOLIC)

  file(GLOB sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  if(sources)
    add_library(${target} STATIC ${sources})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE ${ROOM_LIBRARIES})
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
    target_link_libraries(${target} INTERFACE ${ROOM_LIBRARIES})
  endif()
  target_include_directories(${target} ${scope} "${door}")
  foreach(other IN LISTS ROOM_DOORS)
    string(REPLACE "/" "_" other_suffix "${other}")
    target_link_libraries(${target} ${scope} "orbelcast_${other_suffix}")
  endforeach()
  add_library(Orbelcast::${suffix} ALIAS ${target})
  list(JOIN ROOM_DOORS " " dependencies)
  set_property(GLOBAL APPEND PROPERTY ORBELCAST_MODULES "${name} ${dependencies}\n")
endfunction()

# orbelcast_write_modules(): writes each module with its dependencies, a line each, to modules.txt in the build.
function(orbelcast_write_modules)
  get_property(modules GLOBAL PROPERTY ORBELCAST_MODULES)
  list(JOIN modules "" text)
  file(WRITE "${PROJECT_BINARY_DIR}/modules.txt" "${text}")
endfunction()

# orbelcast_module(TARGET FOLDER room OUTPUT name [SUBFOLDER folder])
#   A library that is loaded while a program runs: the sources of the room's folder module/, and all that the room links.
#   It shows what module/exports.map names, and goes to the folder lib of the build.
function(orbelcast_module target)
  cmake_parse_arguments(MODULE "" "FOLDER;OUTPUT;SUBFOLDER" "" ${ARGN})
  set(folder "${PROJECT_SOURCE_DIR}/src/${MODULE_FOLDER}/module")
  file(GLOB sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  add_library(${target} MODULE ${sources})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${MODULE_OUTPUT} LINK_DEPENDS "${folder}/exports.map"
                        LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib/${MODULE_SUBFOLDER}")
  string(REPLACE "/" "_" suffix "${MODULE_FOLDER}")
  target_link_libraries(${target} PRIVATE "orbelcast_${suffix}")
  target_link_options(${target} PRIVATE "LINKER:--version-script=${folder}/exports.map")
endfunction()

# orbelcast_embed(TARGET FILE...)
#   Compiles each FILE into TARGET as bytes, reached by platform/resources.h.
function(orbelcast_embed target)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME)
    string(MAKE_C_IDENTIFIER "${name}" symbol)
    set(output "${PROJECT_BINARY_DIR}/resources/${symbol}.cpp")
    add_custom_command(
      OUTPUT "${output}"
      COMMAND "${CMAKE_COMMAND}" -DINPUT=${file} -DOUTPUT=${output} -DSYMBOL=${symbol}
              -P "${PROJECT_SOURCE_DIR}/cmake/EmbedFile.cmake"
      DEPENDS "${file}" "${PROJECT_SOURCE_DIR}/cmake/EmbedFile.cmake"
      VERBATIM)
    target_sources(${target} PRIVATE "${output}")
  endforeach()
endfunction()
