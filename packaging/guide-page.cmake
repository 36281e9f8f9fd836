# Makes one page of the guide: cmake -D CMARK=... -D SOURCE=page.md -D MADE=page.html -P guide-page.cmake
# Links between pages keep their meaning; what lies beside the guide's folder comes to lie in it.
execute_process(COMMAND ${CMARK} --extension table ${SOURCE} OUTPUT_VARIABLE PAGE COMMAND_ERROR_IS_FATAL ANY)

string(REGEX REPLACE "(<a href=\")README\\.md" "\\1index.html" PAGE "${PAGE}")
string(REGEX REPLACE "(<a href=\"[^\":]+)\\.md([\"#])" "\\1.html\\2" PAGE "${PAGE}")
string(REGEX REPLACE "src=\"\\.\\./pictures/" "src=\"pictures/" PAGE "${PAGE}")

string(REGEX MATCH "<h1>([^\n]*)</h1>" heading "${PAGE}")
set(TITLE "${CMAKE_MATCH_1}")
set(BACK "<p><a href=\"index.html\">Guide</a></p>\n")
if(MADE MATCHES "/index\\.html$")
  set(BACK "")
endif()

configure_file(${CMAKE_CURRENT_LIST_DIR}/guide.html.in ${MADE} @ONLY)
file(TOUCH ${MADE})  # also where nothing has changed, for the build that asks for it
