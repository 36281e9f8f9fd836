# Compiler cache, fast linker and warnings: used when they are there, never required.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  add_link_options(-fuse-ld=mold)
endif()

if(NOT MSVC)
  add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wno-missing-field-initializers)
  # Float comparisons and stepped rates are part of the behaviour: never let the compiler re-associate them.
  add_compile_options(-fno-fast-math -ffp-contract=off)
endif()

set(QUILLMERE_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")
if(QUILLMERE_SANITIZE)
  add_compile_options(-fsanitize=${QUILLMERE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUILLMERE_SANITIZE})
endif()
