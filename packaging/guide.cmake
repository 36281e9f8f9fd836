# The guide as web pages, beside the programs as they are built and as they are installed, where the program finds it.
find_program(CMARK_PROGRAM NAMES cmark-gfm REQUIRED)

set(GUIDE_FOLDER ${CMAKE_BINARY_DIR}/${QUILLMERE_GUIDE_FOLDER})
set(GUIDE_SOURCES ${CMAKE_SOURCE_DIR}/docs)
set(GUIDE_PAGE_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/guide-page.cmake)
set(GUIDE_FILES)

function(add_guide_file made source)
  cmake_parse_arguments(ARG "" "" "COMMAND;DEPENDS" ${ARGN})
  add_custom_command(OUTPUT ${GUIDE_FOLDER}/${made} COMMAND ${ARG_COMMAND} DEPENDS ${source} ${ARG_DEPENDS} VERBATIM)
  set(GUIDE_FILES ${GUIDE_FILES} ${GUIDE_FOLDER}/${made} PARENT_SCOPE)
endfunction()

file(GLOB pages CONFIGURE_DEPENDS ${GUIDE_SOURCES}/guide/*.md)
foreach(page ${pages})
  get_filename_component(name ${page} NAME_WE)
  string(REGEX REPLACE "^README$" "index" name ${name})
  add_guide_file(${name}.html ${page} DEPENDS ${GUIDE_PAGE_SCRIPT} ${CMAKE_CURRENT_LIST_DIR}/guide.html.in
    COMMAND ${CMAKE_COMMAND} -D CMARK=${CMARK_PROGRAM} -D SOURCE=${page} -D MADE=${GUIDE_FOLDER}/${name}.html
            -P ${GUIDE_PAGE_SCRIPT})
endforeach()

file(GLOB pictures CONFIGURE_DEPENDS ${GUIDE_SOURCES}/pictures/*.png)
foreach(picture ${pictures})
  get_filename_component(name ${picture} NAME)
  add_guide_file(pictures/${name} ${picture}
    COMMAND ${CMAKE_COMMAND} -E copy ${picture} ${GUIDE_FOLDER}/pictures/${name})
endforeach()

add_custom_target(guide ALL DEPENDS ${GUIDE_FILES})
