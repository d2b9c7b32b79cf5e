# Warnings, sanitizers and the compiler cache, for every target of the project.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
# Not for packages: other flags and compilers than ours may give other warnings.
if(NOT ORBELCAST_PACKAGES)
  add_compile_options(-Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # gcc 12 sees overlapping copies in every `"text" + std::string` that it inlines at -O3 (its bug 105651).
  add_compile_options($<$<CONFIG:Release>:-Wno-restrict>)
endif()

if(ORBELCAST_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
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
