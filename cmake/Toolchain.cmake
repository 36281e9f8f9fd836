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

# A fault ends the program instead of being used by whoever made the file. Every program and module is built so;
# tests/lint/hardening.sh reads it from the built files.
include(CheckPIESupported)
check_pie_supported()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  add_compile_options(-fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    add_compile_options(-fcf-protection=full)
    # Said outright, because the start files of Debian 12 do not say it, and the linker marks what all parts are marked
    # for. They keep to a shadow stack; the landing pads for indirect branches they do lack, so that mark is left to them.
    add_link_options(-Wl,-z,shstk)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
    add_compile_options(-mbranch-protection=standard)
  endif()
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  if(NOT QUILLMERE_SANITIZE)  # the sanitizers check the same calls themselves
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
  endif()
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()

if(QUILLMERE_SANITIZE)
  add_compile_options(-fsanitize=${QUILLMERE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUILLMERE_SANITIZE})
endif()
