# A module is a folder below src/ and one target, orbelcast_NAME ("/" becomes "_").
#
# A module's headers are reached as "module/header.h" through a folder of the build tree that holds nothing but that
# module, so a target finds exactly the modules that it links: an include of any other does not compile.

# orbelcast_add_module(NAME [DEPENDS module...] [LIBRARIES target...] [PRECOMPILE header...])
#   DEPENDS    modules whose headers this one may include
#   LIBRARIES  the outside libraries of an adapter; its users do not see them
#   PRECOMPILE headers of those libraries that most of its sources include
function(orbelcast_add_module name)
  cmake_parse_arguments(MODULE "" "" "DEPENDS;LIBRARIES;PRECOMPILE" ${ARGN})
  string(REPLACE "/" "_" suffix "${name}")
  set(target "orbelcast_${suffix}")
  set(folder "${PROJECT_SOURCE_DIR}/src/${name}")

  set(include_folder "${PROJECT_BINARY_DIR}/includes/${suffix}")
  get_filename_component(parent "${include_folder}/${name}" DIRECTORY)
  file(MAKE_DIRECTORY "${parent}")
  file(CREATE_LINK "${folder}" "${include_folder}/${name}" SYMBOLIC)

  file(GLOB sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  if(sources)
    add_library(${target} STATIC ${sources})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE ${MODULE_LIBRARIES})
    orbelcast_precompile(${target} SAME_AS orbelcast_platform ALSO ${MODULE_PRECOMPILE})
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
    target_link_libraries(${target} INTERFACE ${MODULE_LIBRARIES})
  endif()
  target_include_directories(${target} ${scope} "${include_folder}")
  foreach(dependency IN LISTS MODULE_DEPENDS)
    string(REPLACE "/" "_" dependency_suffix "${dependency}")
    target_link_libraries(${target} ${scope} "orbelcast_${dependency_suffix}")
  endforeach()
  add_library(Orbelcast::${suffix} ALIAS ${target})
  list(JOIN MODULE_DEPENDS " " dependencies)
  set_property(GLOBAL APPEND PROPERTY ORBELCAST_MODULES "${name} ${dependencies}\n")
endfunction()

# orbelcast_write_modules(): writes each module with its dependencies, a line each, to modules.txt in the build.
function(orbelcast_write_modules)
  get_property(modules GLOBAL PROPERTY ORBELCAST_MODULES)
  list(JOIN modules "" text)
  file(WRITE "${PROJECT_BINARY_DIR}/modules.txt" "${text}")
endfunction()

# orbelcast_add_plugin(TARGET MODULE name OUTPUT name [SUBFOLDER folder])
#   A library that is loaded while a program runs: the sources of the folder plugin/ of MODULE, and all that it links.
#   It exports what plugin/exports.map names, and goes to the folder lib of the build.
function(orbelcast_add_plugin target)
  cmake_parse_arguments(PLUGIN "" "MODULE;OUTPUT;SUBFOLDER" "" ${ARGN})
  set(folder "${PROJECT_SOURCE_DIR}/src/${PLUGIN_MODULE}/plugin")
  file(GLOB sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  add_library(${target} MODULE ${sources})
  orbelcast_precompile(${target} SAME_AS orbelcast_platform)
  # Without a macro of its own, with which the headers would be others.
  set_target_properties(${target} PROPERTIES DEFINE_SYMBOL "" OUTPUT_NAME ${PLUGIN_OUTPUT}
                        LINK_DEPENDS "${folder}/exports.map"
                        LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib/${PLUGIN_SUBFOLDER}")
  string(REPLACE "/" "_" suffix "${PLUGIN_MODULE}")
  target_link_libraries(${target} PRIVATE "orbelcast_${suffix}")
  target_link_options(${target} PRIVATE "LINKER:--version-script=${folder}/exports.map")
endfunction()

# orbelcast_embed(TARGET FILE...)
#   Compiles each FILE into TARGET as bytes: orbelcast::resources::NAME, the file's name as a C identifier. The source
#   that uses it declares it: extern const std::span<const std::uint8_t> NAME;
function(orbelcast_embed target)
  foreach(file IN LISTS ARGN)
    get_filename_component(name "${file}" NAME)
    string(MAKE_C_IDENTIFIER "${name}" symbol)
    set(output "${PROJECT_BINARY_DIR}/embedded/${symbol}.cpp")
    add_custom_command(
      OUTPUT "${output}"
      COMMAND "${CMAKE_COMMAND}" -DINPUT=${file} -DOUTPUT=${output} -DSYMBOL=${symbol}
              -P "${PROJECT_SOURCE_DIR}/cmake/EmbedFile.cmake"
      DEPENDS "${file}" "${PROJECT_SOURCE_DIR}/cmake/EmbedFile.cmake"
      VERBATIM)
    target_sources(${target} PRIVATE "${output}")
  endforeach()
endfunction()
