# The pictures that the controls and programs carry: PNG files of the sizes that are declared here and at each use, which the
# build makes of the SVG files in resources/.
find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
  message(FATAL_ERROR "rsvg-convert, which makes the pictures, is not installed (Debian: librsvg2-bin)")
endif()
set(ORBELCAST_PICTURE_FOLDER "${PROJECT_BINARY_DIR}/pictures")
file(MAKE_DIRECTORY "${ORBELCAST_PICTURE_FOLDER}")

# orbelcast_picture(FILES SVG WIDTH HEIGHT [NAME])
#   Appends to the list FILES the PNG file that is made of resources/SVG.svg, WIDTH × HEIGHT pixels large and called NAME.png
#   (as the SVG file without a NAME). A target of the same CMakeLists.txt has to need it.
function(orbelcast_picture files svg width height)
  set(input "${PROJECT_SOURCE_DIR}/resources/${svg}.svg")
  get_filename_component(name "${svg}" NAME)
  if(ARGC GREATER 4)
    set(name "${ARGV4}")
  endif()
  set(output "${ORBELCAST_PICTURE_FOLDER}/${name}.png")
  add_custom_command(OUTPUT "${output}"
                     COMMAND "${RSVG_CONVERT}" --width=${width} --height=${height} "--output=${output}" "${input}"
                     DEPENDS "${input}" VERBATIM)
  set(${files} ${${files}} "${output}" PARENT_SCOPE)
endfunction()

# The pictures embedded in the library.
orbelcast_picture(orbelcast_pictures test_card 454 340)
orbelcast_picture(orbelcast_pictures no_answer 100 100)
foreach(icon recording stop connect disconnect)
  orbelcast_picture(orbelcast_pictures ${icon} 16 16)
endforeach()
# The toolbar's are scaled down by the front end, from 128 pixels: eight for each unit of their drawings.
file(GLOB tools CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/resources" "${PROJECT_SOURCE_DIR}/resources/toolbar/*.svg")
foreach(tool IN LISTS tools)
  string(REGEX REPLACE "\\.svg$" "" tool "${tool}")
  orbelcast_picture(orbelcast_toolbar_pictures "${tool}" 128 128)
endforeach()

# orbelcast_icon(TARGET PREFIX SVG NAME SIZE): a program's icon as Qt resources below PREFIX, NAME.png and, for screens with
# two pixels where others have one, NAME@2x.png.
function(orbelcast_icon target prefix svg name size)
  math(EXPR double "2 * ${size}")
  orbelcast_picture(icons "${svg}" ${size} ${size} "${target}/${name}")
  orbelcast_picture(icons "${svg}" ${double} ${double} "${target}/${name}@2x")
  file(MAKE_DIRECTORY "${ORBELCAST_PICTURE_FOLDER}/${target}")
  qt_add_resources(${target} "${target}_${name}" PREFIX "${prefix}" BASE "${ORBELCAST_PICTURE_FOLDER}/${target}" FILES ${icons})
endfunction()

# orbelcast_install_icon(SVG COMPONENT): a program's icon where desktops look for it; those that draw no SVG take a PNG file.
function(orbelcast_install_icon svg component)
  get_filename_component(name "${svg}" NAME)
  set(folder "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
  install(FILES "${PROJECT_SOURCE_DIR}/resources/${svg}.svg" DESTINATION "${folder}/scalable/apps" COMPONENT ${component})
  foreach(size 32 48 64 128 256)
    orbelcast_picture(icons "${svg}" ${size} ${size} "${name}-${size}")
    install(FILES "${ORBELCAST_PICTURE_FOLDER}/${name}-${size}.png" RENAME "${name}.png"
            DESTINATION "${folder}/${size}x${size}/apps" COMPONENT ${component})
  endforeach()
  add_custom_target(${name}_icons ALL DEPENDS ${icons})
endfunction()
