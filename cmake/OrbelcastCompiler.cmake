# Warnings, sanitizers and the compiler cache, for every target of the project.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow
                    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
# Not for packages: other flags and compilers than ours may give other warnings.
if(NOT ORBELCAST_PACKAGES)
  add_compile_options(-Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # gcc 12 sees overlapping and overlong copies in `"text" + std::string` that it inlines at -O3 (its bug 105651), and
  # does not keep them to itself where the headers are precompiled. At -O2, in the preset dev, it still looks for them.
  add_compile_options($<$<CONFIG:Release>:-Wno-restrict> $<$<CONFIG:Release>:-Wno-stringop-overflow>
                      $<$<CONFIG:Release>:-Wno-array-bounds>)
endif()

if(ORBELCAST_SANITIZE STREQUAL "address")
  # Accesses beyond an object are the address sanitizer's to see: a second check is a seventh of the compiler's time.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=object-size -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  # The sanitizer as a library: programs that are made without it, such as Python, load it before ours.
  add_link_options(-fsanitize=address,undefined -shared-libasan)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so"
                  OUTPUT_VARIABLE ORBELCAST_ASAN_LIBRARY OUTPUT_STRIP_TRAILING_WHITESPACE)
  cmake_path(GET ORBELCAST_ASAN_LIBRARY PARENT_PATH CMAKE_BUILD_RPATH)
elseif(ORBELCAST_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
  # Boost.Context's own files rely on our annotations for the thread sanitizer; gcc warns about fences.
  add_compile_options(-Wno-tsan)
endif()

if(ORBELCAST_FUZZ)
  # The code under a fuzzer is instrumented too, so that the fuzzer sees which branches an input reaches.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(ORBELCAST_CCACHE ccache)
if(ORBELCAST_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${ORBELCAST_CCACHE}")
endif()

# The headers of the standard library are four fifths of what a compiler reads of most sources.
set(orbelcast_standard_headers
    <algorithm> <array> <charconv> <chrono> <cmath> <cstdint> <cstring> <filesystem> <functional> <map> <memory> <optional>
    <set> <span> <string> <string_view> <unordered_map> <utility> <variant> <vector>)

# orbelcast_precompile(TARGET [SAME_AS other] [ALSO header...])
#   Has TARGET read them once, or as another target does, whose compiler options are the same. ALSO are headers of outside
#   libraries that most of its sources include: read with them, where each source is compiled by itself. A header that a
#   source forgets to include shows where precompiled headers are off: in the presets dev and tidy.
function(orbelcast_precompile target)
  cmake_parse_arguments(PRECOMPILE "" "SAME_AS" "ALSO" ${ARGN})
  if(CMAKE_UNITY_BUILD)
    set(PRECOMPILE_ALSO)
  endif()
  if(PRECOMPILE_ALSO OR NOT PRECOMPILE_SAME_AS OR PRECOMPILE_SAME_AS STREQUAL target)
    target_precompile_headers(${target} PRIVATE ${orbelcast_standard_headers} ${PRECOMPILE_ALSO})
  else()
    target_precompile_headers(${target} REUSE_FROM ${PRECOMPILE_SAME_AS})
  endif()
endfunction()

# The headers that most windows are made of.
set(orbelcast_qt_headers
    <QApplication> <QDialog> <QFileDialog> <QImage> <QLabel> <QMenu> <QMouseEvent> <QPainter> <QPointer> <QPushButton>
    <QScreen> <QTimer> <QToolButton> <QVBoxLayout> <QWidget>)
