# Read by cpack before it makes the package: the version, and the packages that the programs need.
# Each commit has a version of its own, by its time and name, because apt keeps what is installed when the version is the
# same. What is not committed adds the time at which the package was made.
function(ask_git answer)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env TZ=UTC git -C ${CPACK_QUILLMERE_SOURCE} ${ARGN}
                  OUTPUT_VARIABLE said ERROR_QUIET RESULT_VARIABLE status OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT status EQUAL 0)
    set(said "")
  endif()
  set(${answer} "${said}" PARENT_SCOPE)
endfunction()

string(TIMESTAMP now "%Y%m%d%H%M%S" UTC)
ask_git(commit log -1 --format=%cd.%h --date=format-local:%Y%m%d%H%M%S)
ask_git(changes status --porcelain --untracked-files=no)
if(DEFINED ENV{QUILLMERE_PACKAGE_REVISION})
  set(revision $ENV{QUILLMERE_PACKAGE_REVISION})
elseif(NOT commit)
  set(revision ${now})
elseif(changes)
  set(revision ${commit}.${now})
else()
  set(revision ${commit})
endif()
set(CPACK_DEBIAN_PACKAGE_VERSION ${CPACK_PACKAGE_VERSION}+${revision})
message("Version ${CPACK_DEBIAN_PACKAGE_VERSION}")
if(CMAKE_SCRIPT_MODE_FILE)
  return()  # only the version was asked for
endif()

# One package lies there, the newest: whoever installs it by a pattern gets this one.
file(GLOB older ${CPACK_PACKAGE_DIRECTORY}/quillmere_*.deb)
if(older)
  file(REMOVE ${older})
endif()

find_program(SHLIBDEPS_PROGRAM dpkg-shlibdeps)
if(NOT SHLIBDEPS_PROGRAM)
  message(FATAL_ERROR "dpkg-shlibdeps is missing, which finds the needed libraries: it is in the package dpkg-dev.")
endif()
set(scratch ${CPACK_QUILLMERE_BINARY}/shlibdeps)
file(WRITE ${scratch}/debian/control "Source: quillmere\n\nPackage: quillmere\nArchitecture: any\n")
execute_process(
  COMMAND ${SHLIBDEPS_PROGRAM} -O --warnings=0 ${CPACK_QUILLMERE_BINARY}/bin/quillmere ${CPACK_QUILLMERE_BINARY}/bin/quillmere-render
          ${CPACK_QUILLMERE_BINARY}/${CPACK_QUILLMERE_MODULES}/quillmere-engine.so
          ${CPACK_QUILLMERE_BINARY}/${CPACK_QUILLMERE_MODULES}/quillmere-network.so
  WORKING_DIRECTORY ${scratch} OUTPUT_VARIABLE libraries OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "^shlibs:Depends=" "" libraries "${libraries}")
set(CPACK_DEBIAN_PACKAGE_DEPENDS "${CPACK_DEBIAN_PACKAGE_DEPENDS}, ${libraries}")
